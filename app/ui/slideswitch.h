#pragma once

#include <QCheckBox>
#include <QVariantAnimation>

// A check box that looks like a sliding switch, for modes that act at once. Keyboard, focus and
// accessibility are those of the check box.
class SlideSwitch : public QCheckBox
{
    Q_OBJECT

public:
    explicit SlideSwitch(QWidget *parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent *event) override;
    [[nodiscard]] bool hitButton(const QPoint &position) const override;
    void changeEvent(QEvent *event) override;

private:
    void slide(bool on);
    [[nodiscard]] QRectF track() const;
    void paintTrack(QPainter &painter) const;
    void paintText(QPainter &painter) const;

    QVariantAnimation m_slide; // of the knob: 0 is off, 1 is on
};
