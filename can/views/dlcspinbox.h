#pragma once

#include "can/framelengths.h"

#include <QSpinBox>

// The length of a frame in bytes; steps through the lengths that its format has.
class DlcSpinBox : public QSpinBox
{
    Q_OBJECT

public:
    explicit DlcSpinBox(QWidget *parent = nullptr);

    // A length that the format doesn't have becomes the next one.
    void setFormat(can::FrameFormat format);
    void stepBy(int steps) override;

protected:
    [[nodiscard]] QValidator::State validate(QString &text, int &position) const override;
    void fixup(QString &text) const override;

private:
    can::FrameFormat m_format = can::FrameFormat::Classic;
};
