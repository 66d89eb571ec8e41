#include "config/shorttext.h"

QString shortText(const QString &text, int maxLength)
{
    if (text.size() <= maxLength)
        return text;
    int end = maxLength - 1;
    if (text.at(end).isLowSurrogate() && text.at(end - 1).isHighSurrogate())
        --end;                             // half a character is none
    return text.left(end) + QChar(0x2026); // ellipsis
}
