#include "app/ui/icons.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>
#include <QtMath>

#include <iterator>

namespace {

using icons::Symbol;

constexpr qreal grid = 24; // symbols are drawn on a square of this side
constexpr qreal stroke = 1.7;

// The strokes and areas of one symbol, in the colour of the painter's pen.
struct Pencil
{
    QPainter &painter;

    void line(std::initializer_list<QPointF> points) const
    {
        painter.setBrush(Qt::NoBrush);
        painter.drawPolyline(points.begin(), static_cast<int>(points.size()));
    }
    void box(const QRectF &rect, qreal radius = 1.5) const
    {
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(rect, radius, radius);
    }
    void circle(const QPointF &centre, qreal radius) const
    {
        painter.setBrush(Qt::NoBrush);
        painter.drawEllipse(centre, radius, radius);
    }
    void dot(const QPointF &centre, qreal radius = 1.4) const
    {
        painter.setBrush(painter.pen().color());
        painter.drawEllipse(centre, radius / 2, radius / 2);
    }
    void arc(const QPointF &centre, qreal radius, int from_deg, int span_deg) const
    {
        const QRectF rect(centre.x() - radius, centre.y() - radius, 2 * radius, 2 * radius);
        painter.drawArc(rect, from_deg * 16, span_deg * 16);
    }
    void spokes(const QPointF &centre, qreal from, qreal to, int count) const
    {
        for (int i = 0; i < count; ++i) {
            const qreal angle = 2 * M_PI * i / count;
            const QPointF direction(qCos(angle), qSin(angle));
            painter.drawLine(centre + from * direction, centre + to * direction);
        }
    }
    void page() const
    {
        line({{14, 3}, {6, 3}, {6, 21}, {18, 21}, {18, 7}, {14, 3}, {14, 7}, {18, 7}});
    }
    void disk() const
    {
        line({{4, 4}, {16.5, 4}, {20, 7.5}, {20, 20}, {4, 20}, {4, 4}});
        line({{8, 4}, {8, 9}, {15, 9}, {15, 4}});
        line({{7.5, 20}, {7.5, 13.5}, {16.5, 13.5}, {16.5, 20}});
    }
};

void drawConnect(const Pencil &p)
{
    p.line({{2.5, 12}, {6.5, 12}});
    p.line({{17.5, 12}, {21.5, 12}});
    p.box({6.5, 8, 5.5, 8});
    p.box({12, 8, 5.5, 8});
}

void drawDisconnect(const Pencil &p)
{
    p.line({{1.5, 12}, {4.5, 12}});
    p.line({{19.5, 12}, {22.5, 12}});
    p.box({4.5, 8, 4.5, 8});
    p.box({15, 8, 4.5, 8});
    p.line({{10.8, 14.8}, {13.2, 9.2}});
}

void drawNetwork(const Pencil &p)
{
    p.circle({12, 12}, 9);
    p.line({{3, 12}, {21, 12}});
    p.painter.drawEllipse(QPointF(12, 12), 4, 9);
}

void drawInfo(const Pencil &p)
{
    p.circle({12, 12}, 9);
    p.line({{12, 11}, {12, 16.5}});
    p.dot({12, 7.6});
}

void drawNewFile(const Pencil &p)
{
    p.page();
    p.line({{12, 11}, {12, 17}});
    p.line({{9, 14}, {15, 14}});
}

void drawOpenFile(const Pencil &p)
{
    p.line({{3, 19}, {3, 5}, {9, 5}, {11, 7.5}, {19, 7.5}, {19, 11}});
    p.line({{3, 19}, {6.5, 11}, {22, 11}, {18.5, 19}, {3, 19}});
}

void drawSaveFile(const Pencil &p)
{
    p.disk();
}

void drawSaveFileAs(const Pencil &p)
{
    p.line({{13, 20}, {4, 20}, {4, 4}, {16.5, 4}, {20, 7.5}, {20, 11}});
    p.line({{8, 4}, {8, 9}, {15, 9}, {15, 4}});
    p.line({{14.5, 21}, {15.2, 18}, {20.5, 12.7}, {22.6, 14.8}, {17.4, 20.2}, {14.5, 21}});
}

void drawConvert(const Pencil &p)
{
    p.line({{4, 8.5}, {19.5, 8.5}, {15.5, 4.5}});
    p.line({{20, 15.5}, {4.5, 15.5}, {8.5, 19.5}});
}

void drawConsole(const Pencil &p)
{
    p.box({3, 4.5, 18, 15});
    p.line({{7, 9}, {10, 12}, {7, 15}});
    p.line({{12, 15}, {17, 15}});
}

void drawLogger(const Pencil &p)
{
    p.box({3, 7, 18, 10}, 2);
    p.line({{6.5, 12}, {12, 12}});
    p.dot({16, 12}, 2);
    p.line({{7, 17}, {7, 20}});
    p.line({{17, 17}, {17, 20}});
}

void drawSettings(const Pencil &p)
{
    p.circle({12, 12}, 6);
    p.circle({12, 12}, 2.2);
    p.spokes({12, 12}, 6, 9, 8);
}

void drawMotion(const Pencil &p)
{
    p.line({{10, 14}, {10, 3}});
    p.line({{10, 14}, {21, 14}});
    p.line({{10, 14}, {3.5, 20.5}});
    p.line({{7.5, 5.5}, {10, 3}, {12.5, 5.5}});
    p.line({{18.5, 11.5}, {21, 14}, {18.5, 16.5}});
    p.line({{3.5, 17}, {3.5, 20.5}, {7, 20.5}});
}

void drawPosition(const Pencil &p)
{
    QPainterPath drop(QPointF(12, 21.5));
    drop.cubicTo(8, 16, 5, 13, 5, 9.5);
    drop.cubicTo(5, 5.5, 8, 2.7, 12, 2.7);
    drop.cubicTo(16, 2.7, 19, 5.5, 19, 9.5);
    drop.cubicTo(19, 13, 16, 16, 12, 21.5);
    p.painter.setBrush(Qt::NoBrush);
    p.painter.drawPath(drop);
    p.circle({12, 9.5}, 2.6);
}

void drawMobile(const Pencil &p)
{
    p.line({{12, 21}, {12, 10}});
    p.dot({12, 9}, 2.4);
    p.arc({12, 9}, 4, -45, 90);
    p.arc({12, 9}, 4, 135, 90);
    p.arc({12, 9}, 7.5, -45, 90);
    p.arc({12, 9}, 7.5, 135, 90);
}

void drawBus(const Pencil &p)
{
    p.line({{2.5, 9.5}, {21.5, 9.5}});
    p.line({{2.5, 14.5}, {21.5, 14.5}});
    p.line({{7, 9.5}, {7, 4}});
    p.line({{17, 14.5}, {17, 20}});
    p.dot({7, 9.5}, 2.2);
    p.dot({17, 14.5}, 2.2);
}

void drawEthernet(const Pencil &p)
{
    p.line(
        {{3.5, 20}, {3.5, 9}, {8, 9}, {8, 5}, {16, 5}, {16, 9}, {20.5, 9}, {20.5, 20}, {3.5, 20}});
    for (const qreal x : {8.0, 10.7, 13.3, 16.0})
        p.line({{x, 20}, {x, 16}});
}

void drawRing(const Pencil &p)
{
    p.box({9, 2.5, 6, 5});
    p.box({2.5, 16, 6, 5});
    p.box({15.5, 16, 6, 5});
    p.line({{10, 7.5}, {6.5, 16}});
    p.line({{14, 7.5}, {17.5, 16}});
    p.line({{8.5, 18.5}, {15.5, 18.5}});
}

void drawSerial(const Pencil &p)
{
    p.line({{2, 7.5}, {22, 7.5}, {19.3, 17}, {4.7, 17}, {2, 7.5}});
    for (const qreal x : {7.0, 10.3, 13.7, 17.0})
        p.dot({x, 10.7});
    for (const qreal x : {8.7, 12.0, 15.3})
        p.dot({x, 13.9});
}

void drawGroup(const Pencil &p)
{
    p.box({3.5, 3.5, 7, 7});
    p.box({13.5, 3.5, 7, 7});
    p.box({3.5, 13.5, 7, 7});
    p.box({13.5, 13.5, 7, 7});
}

void drawModule(const Pencil &p)
{
    p.box({6, 6, 12, 12});
    for (const qreal at : {9.0, 15.0}) {
        p.line({{at, 6}, {at, 3}});
        p.line({{at, 18}, {at, 21}});
        p.line({{6, at}, {3, at}});
        p.line({{18, at}, {21, at}});
    }
}

void drawWheel(const Pencil &p)
{
    p.circle({12, 12}, 9);
    p.circle({12, 12}, 4.8);
    p.circle({12, 12}, 1.2);
    p.spokes({12, 12}, 1.2, 4.8, 5);
}

void drawQuestion(const Pencil &p)
{
    p.circle({12, 12}, 9);
    QPainterPath hook(QPointF(9.2, 9.6));
    hook.cubicTo(9.2, 5.6, 14.8, 5.6, 14.8, 9.4);
    hook.cubicTo(14.8, 11.8, 12, 11.8, 12, 14);
    p.painter.setBrush(Qt::NoBrush);
    p.painter.drawPath(hook);
    p.dot({12, 17});
}

void drawWarning(const Pencil &p)
{
    p.line({{12, 3}, {22, 20.5}, {2, 20.5}, {12, 3}});
    p.line({{12, 9.5}, {12, 14.5}});
    p.dot({12, 17.5});
}

using Drawing = void (*)(const Pencil &);

// In the order of Symbol.
constexpr Drawing drawings[] = {
    drawConnect,  drawDisconnect, drawNetwork, drawInfo,    drawNewFile,  drawOpenFile,
    drawSaveFile, drawSaveFileAs, drawConvert, drawConsole, drawLogger,   drawSettings,
    drawMotion,   drawPosition,   drawMobile,  drawBus,     drawEthernet, drawRing,
    drawSerial,   drawGroup,      drawModule,  drawWheel,   drawQuestion, drawWarning,
};
static_assert(std::size(drawings) == static_cast<std::size_t>(Symbol::Warning) + 1);

class DrawnIcon : public QIconEngine
{
public:
    explicit DrawnIcon(Symbol symbol, const QColor &colour = {})
        : m_symbol(symbol)
        , m_colour(colour)
    {}

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State) override
    {
        const qreal side = qMin(rect.width(), rect.height());
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->translate(rect.x() + (rect.width() - side) / 2,
                           rect.y() + (rect.height() - side) / 2);
        painter->scale(side / grid, side / grid);
        painter->setPen(QPen(colourOf(mode), stroke, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        drawings[static_cast<std::size_t>(m_symbol)](Pencil{*painter});
        painter->restore();
    }

    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, {{0, 0}, size}, mode, state);
        return pixmap;
    }

    QIconEngine *clone() const override { return new DrawnIcon(m_symbol, m_colour); }

private:
    [[nodiscard]] QColor colourOf(QIcon::Mode mode) const
    {
        if (m_colour.isValid())
            return m_colour;
        const QPalette palette = QGuiApplication::palette();
        switch (mode) {
        case QIcon::Disabled:
            return palette.color(QPalette::Disabled, QPalette::ButtonText);
        case QIcon::Selected:
            return palette.color(QPalette::HighlightedText);
        case QIcon::Normal:
        case QIcon::Active:
            break;
        }
        return palette.color(QPalette::ButtonText);
    }

    const Symbol m_symbol;
    const QColor m_colour; // not valid: that of the palette
};

} // namespace

QIcon icons::icon(Symbol symbol)
{
    return QIcon(new DrawnIcon(symbol)); // the icon owns its engine
}

QIcon icons::icon(Symbol symbol, const QColor &colour)
{
    return QIcon(new DrawnIcon(symbol, colour));
}
