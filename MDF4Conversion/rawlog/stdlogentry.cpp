#include "MDF4Conversion/rawlog/stdlogentry.h"

#include <QDebug>
#include <QtEndian>

#include <algorithm>

using namespace rawlog;

namespace {

constexpr EntryKind unknownKind = {0, nullptr, BodyHead::None};

// A 32-bit field that may lie partly or wholly beyond the end; missing bytes are zero.
quint32 fieldAt(const uint8_t *data, std::size_t available, std::size_t offset)
{
    if (offset + 4 <= available)
        return qFromLittleEndian<quint32>(data + offset);
    quint32 value = 0;
    for (std::size_t i = 0; i < 4 && offset + i < available; ++i)
        value |= quint32(data[offset + i]) << (8 * i);
    return value;
}

const EntryKind &kindOrUnknown(quint8 type)
{
    if (const EntryKind *kind = entryKind(type))
        return *kind;
    qCritical("StdLogEntry::rebuild( uint8_t * data, size_t maxLen ) Landed in Default...");
    return unknownKind;
}

} // namespace

StdLogEntry::StdLogEntry(const StdLogEntry &other)
{
    *this = other;
}

StdLogEntry &StdLogEntry::operator=(const StdLogEntry &other)
{
    valid = other.valid;
    sync = other.sync;
    length = other.length;
    type = other.type;
    number = other.number;
    sub = other.sub;
    info = other.info;
    timestamp = other.timestamp;
    id = canIdentifier(other.id);
    data = other.data;
    complete = other.complete;
    return *this;
}

void StdLogEntry::clear()
{
    valid = false;
    complete = false;
    sync = length = 0;
    type = number = sub = info = 0;
    timestamp = id = 0;
    data.clear();
}

void StdLogEntry::rebuild(const uint8_t *bytes, std::size_t maxLen)
{
    valid = false;
    complete = false;
    if (maxLen < entryHeadSize)
        return;
    sync = qFromLittleEndian<quint16>(bytes);
    if (sync != syncWord)
        return;
    length = qFromLittleEndian<quint16>(bytes + 2);
    if (quint16(length + lengthOverhead) > maxLen)
        return;
    type = bytes[4];
    number = bytes[5];
    sub = bytes[6];
    info = bytes[7];

    const std::size_t entrySize = std::size_t(length) + lengthOverhead;
    const std::size_t available = std::min(entrySize, maxLen);
    const BodyHead bodyHead = kindOrUnknown(type).bodyHead;
    const bool timestamped =
        bodyHead == BodyHead::Timestamp || bodyHead == BodyHead::TimestampAndId;
    timestamp = timestamped ? fieldAt(bytes, available, entryHeadSize) : 0;
    id = bodyHead == BodyHead::TimestampAndId ? fieldAt(bytes, available, entryHeadSize + 4) : 0;

    const quint32 start = entryHeadSize + bodyHeadSize(bodyHead);
    complete = available >= start;
    if (entrySize > start)
        takePayload(bytes, available, start, quint32(entrySize) - start);
    if (type == RLD_CAN && available < std::size_t(start) + info)
        complete = false;
    valid = true;
}

void StdLogEntry::takePayload(const uint8_t *bytes, std::size_t available, quint32 start,
                              quint32 size)
{
    if (available <= start)
        return;
    const std::size_t held = std::min<std::size_t>(size, available - start);
    data.assign(bytes + start, bytes + start + held);
}
