#include "can/views/dlcspinbox.h"

#include <algorithm>

DlcSpinBox::DlcSpinBox(QWidget *parent)
    : QSpinBox(parent)
{
    setFormat(m_format);
}

void DlcSpinBox::setFormat(can::FrameFormat format)
{
    m_format = format;
    const int length = can::lengthOfDlc(can::dlcOfLength(value(), format), format);
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
    const std::vector<int> &lengths = can::dataLengths(m_format);
    const bool isLength = std::binary_search(lengths.begin(), lengths.end(), valueFromText(text));
    return isLength ? QValidator::Acceptable : QValidator::Intermediate;
}

void DlcSpinBox::fixup(QString &text) const
{
    const int length = can::lengthOfDlc(can::dlcOfLength(text.toInt(), m_format), m_format);
    text = QString::number(length);
}
