#include "MDF4Conversion/outputlines.h"

#include <utility>

QStringList OutputLines::feed(const QByteArray &bytes)
{
    QStringList lines;
    int from = 0;
    while (from < bytes.size()) {
        const int room = maxLineBytes - m_begun.size();
        const int end = bytes.indexOf('\n', from);
        const bool ends = end >= 0 && end - from <= room;
        const int length = ends ? end - from : qMin(room, bytes.size() - from);
        m_begun.append(bytes.constData() + from, length);
        from += ends ? length + 1 : length;
        if (ends || m_begun.size() == maxLineBytes)
            lines += QString::fromLocal8Bit(std::exchange(m_begun, {}));
    }
    return lines;
}

QStringList OutputLines::finish()
{
    if (m_begun.isEmpty())
        return {};
    return {QString::fromLocal8Bit(std::exchange(m_begun, {}))};
}
