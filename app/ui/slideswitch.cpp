#include "app/ui/slideswitch.h"

#include <QEvent>
#include <QPainter>
#include <QStyle>
#include <QtMath>

namespace {

constexpr int slide_ms = 120;
constexpr int textGap = 8;
constexpr qreal focusMargin = 3;

QColor mixed(const QColor &from, const QColor &to, qreal share)
{
    const auto mix = [share](int a, int b) { return qRound(a + (b - a) * share); };
    return {mix(from.red(), to.red()), mix(from.green(), to.green()), mix(from.blue(), to.blue())};
}

} // namespace

SlideSwitch::SlideSwitch(QWidget *parent)
    : QCheckBox(parent)
{
    setCursor(Qt::PointingHandCursor);
    m_slide.setDuration(slide_ms);
    m_slide.setStartValue(0.0);
    m_slide.setEndValue(0.0);
    connect(&m_slide, &QVariantAnimation::valueChanged, this, [this] { update(); });
    connect(this, &QCheckBox::toggled, this, &SlideSwitch::slide);
}

void SlideSwitch::slide(bool on)
{
    const bool moves = isVisible() && style()->styleHint(QStyle::SH_Widget_Animate, nullptr, this);
    const qreal position = m_slide.currentValue().toReal();
    m_slide.stop();
    m_slide.setDuration(moves ? slide_ms : 0);
    m_slide.setStartValue(moves ? position : on ? 1.0 : 0.0);
    m_slide.setEndValue(on ? 1.0 : 0.0);
    m_slide.start();
    update();
}

QRectF SlideSwitch::track() const
{
    const qreal trackHeight = qMax(16, fontMetrics().height());
    const qreal trackWidth = 1.9 * trackHeight;
    const qreal x =
        layoutDirection() == Qt::RightToLeft ? width() - trackWidth - focusMargin : focusMargin;
    return {x, (height() - trackHeight) / 2, trackWidth, trackHeight};
}

QSize SlideSwitch::sizeHint() const
{
    const QRectF rect = track();
    int wide = qCeil(rect.width() + 2 * focusMargin);
    if (!text().isEmpty())
        wide += textGap + fontMetrics().size(Qt::TextShowMnemonic, text()).width();
    return {wide, qCeil(rect.height() + 2 * focusMargin)};
}

bool SlideSwitch::hitButton(const QPoint &position) const
{
    return rect().contains(position);
}

void SlideSwitch::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::EnabledChange)
        setCursor(isEnabled() ? Qt::PointingHandCursor : Qt::ArrowCursor);
    QCheckBox::changeEvent(event);
}

void SlideSwitch::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    paintTrack(painter);
    paintText(painter);
}

void SlideSwitch::paintTrack(QPainter &painter) const
{
    const QPalette::ColorGroup group = isEnabled() ? QPalette::Active : QPalette::Disabled;
    const QColor off =
        mixed(palette().color(group, QPalette::Button),
              palette().color(group, QPalette::WindowText), isEnabled() ? 0.35 : 0.2);
    const QColor on = isEnabled() ? palette().color(group, QPalette::Highlight) : off.darker(115);
    const qreal position = m_slide.currentValue().toReal();
    const QRectF rect = track();
    const qreal radius = rect.height() / 2;

    painter.setPen(Qt::NoPen);
    painter.setBrush(mixed(off, on, position));
    painter.drawRoundedRect(rect, radius, radius);

    const qreal knob = rect.height() - 4;
    qreal travel = position * (rect.width() - rect.height());
    if (layoutDirection() == Qt::RightToLeft)
        travel = rect.width() - rect.height() - travel;
    painter.setBrush(palette().color(group, QPalette::Base));
    painter.drawEllipse(QRectF(rect.x() + 2 + travel, rect.y() + 2, knob, knob));

    if (hasFocus()) {
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(palette().color(QPalette::Highlight), 1.5));
        const QRectF ring = rect.adjusted(-2, -2, 2, 2);
        painter.drawRoundedRect(ring, radius + 2, radius + 2);
    }
}

void SlideSwitch::paintText(QPainter &painter) const
{
    const QRectF switchRect = track();
    QRectF textRect = rect();
    if (layoutDirection() == Qt::RightToLeft)
        textRect.setRight(switchRect.left() - textGap);
    else
        textRect.setLeft(switchRect.right() + textGap);
    style()->drawItemText(&painter, textRect.toRect(),
                          Qt::AlignVCenter | Qt::AlignLeading | Qt::TextShowMnemonic, palette(),
                          isEnabled(), text(), QPalette::WindowText);
}
