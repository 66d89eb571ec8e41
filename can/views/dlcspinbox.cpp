#include "can/views/dlcspinbox.h"

DlcSpinBox::DlcSpinBox(QWidget *parent)
    : QSpinBox(parent)
{
    setFormat(m_format);
}

void DlcSpinBox::setFormat(can::FrameFormat format)
{
    m_format = format;
    const int length = can::lengthThatHolds(value(), format);
    setRange(0, can::dataLengths(format).back());
    setValue(length);
}

void DlcSpinBox::stepBy(int steps)
{
    setValue(can::lengthOfDlc(can::dlcOfLength(value(), m_format) + steps, m_format));
}

QValidator::State DlcSpinBox::validate(QString &text, int &position) const
{
    const QValidator::State state = QSpinBox::validate(text, position);
    if (state != QValidator::Acceptable)
        return state;
    return can::isDataLength(valueFromText(text), m_format) ? QValidator::Acceptable
                                                            : QValidator::Intermediate;
}

void DlcSpinBox::fixup(QString &text) const
{
    text = QString::number(can::lengthThatHolds(text.toInt(), m_format));
}
