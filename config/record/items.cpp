#include "config/record/items.h"

#include <QIODevice>
#include <QtEndian>

#include <limits>

namespace record {

namespace {
constexpr quint32 nullLength = 0xFFFFFFFF;
}

qint64 bytesLeft(const QDataStream &in)
{
    return in.device() ? in.device()->bytesAvailable() : 0;
}

QByteArray readBytes(QDataStream &in)
{
    // Without its length an item is missing, which is not the same as empty.
    quint32 length = nullLength;
    if (bytesLeft(in) >= qint64(sizeof length)) {
        in >> length;
    } else {
        in.skipRawData(int(bytesLeft(in)));
        in.setStatus(QDataStream::ReadPastEnd);
    }
    if (length == nullLength)
        return {};
    const qint64 left = bytesLeft(in);
    if (length > left || length > quint32(std::numeric_limits<int>::max())) {
        in.device()->skip(left);
        in.setStatus(QDataStream::ReadPastEnd);
        return {};
    }
    QByteArray bytes(int(length), Qt::Uninitialized);
    in.readRawData(bytes.data(), bytes.size());
    return bytes;
}

QString readString(QDataStream &in)
{
    const QByteArray bytes = readBytes(in);
    if (bytes.isNull() || bytes.size() % 2 != 0)
        return {};
    QString text(bytes.size() / 2, Qt::Uninitialized);
    qFromBigEndian<char16_t>(bytes.constData(), text.size(), text.data());
    return text;
}

bool frameIsWhole(const QByteArray &bytes)
{
    constexpr int wordSize = 4;
    if (bytes.size() < 2 * wordSize)
        return false;
    const auto length = qFromBigEndian<quint32>(bytes.constData());
    return length >= wordSize && length <= quint32(bytes.size() - wordSize);
}

} // namespace record
