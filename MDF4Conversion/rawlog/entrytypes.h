#pragma once

#include <QtGlobal>

// Kinds of entries of a raw log and of the live stream, and where their fields lie. All integers
// are little-endian; offsets count from the start of the entry.
namespace rawlog {

enum EntryType : quint8 {
    RLD_CAN = 1,
    RLD_AGM = 2,
    RLD_TS_4 = 4,
    RLD_D4MOD = 5,
    RLD_TS_8 = 8,
    RLD_GPS = 9,
    RLD_ETHERCAT = 10,
    RLD_CYCLIC_TS = 11,
    RLD_ETH = 12,
    RLD_ETH_INFO = 13,
    TYPE_TRANSPARENT_DATA = 14,
    RLD_UTC_START = 239,
    RLD_LIVE_240 = 240,
    RLD_DBG_COUNTERS = 248,
    RLD_ETHERCAT_INFO = 249,
    RLD_D4MOD_INFO = 250,
    RLD_D4MOD_TED = 251,
    RLD_RS485_INFO = 252,
    RLD_CCP_XCP_INFO = 253,
    RLD_LTE = 254,
    RLD_SYSTEM_INFO = 255
};

// What stands between the eight bytes of head and the payload.
enum class BodyHead : quint8 {
    None,           // payload at 8
    Timestamp,      // 32-bit microseconds at 8, payload at 12
    TimestampAndId, // timestamp at 8, identifier word at 12, payload at 16
    Ignored         // four bytes without meaning at 8, payload at 12
};

struct EntryKind
{
    quint8 type;
    const char *name;
    BodyHead bodyHead;
};

// The kind of a type value; null for a value outside the table.
[[nodiscard]] const EntryKind *entryKind(quint8 type);

// Bytes between head and payload.
[[nodiscard]] constexpr quint32 bodyHeadSize(BodyHead head)
{
    return head == BodyHead::None ? 0 : head == BodyHead::TimestampAndId ? 8 : 4;
}

constexpr quint16 syncWord = 0x55AA;  // the bytes AA 55
constexpr quint32 entryHeadSize = 8;  // sync, length, type, number, sub, info
constexpr quint32 lengthOverhead = 4; // an entry occupies its length value + 4 bytes
constexpr quint32 maxEntrySize = 0xFFFF + lengthOverhead;

// Identifier word of RLD_CAN.
constexpr quint32 extendedIdFlag = 1U << 30;
constexpr quint32 extendedIdMask = 0x1FFFFFFF;
constexpr quint32 standardIdMask = 0x7FF;

// RLD_ETH: one XCP frame.
constexpr quint8 ethSubXcp = 1;

// RLD_ETHERCAT: bytes of head before the process image in the payload.
constexpr quint32 etherCatHeadSize = 12;

// The identifier without flags: 29 bits when the word carries the flag, else 11.
[[nodiscard]] constexpr quint32 canIdentifier(quint32 idWord)
{
    return idWord & (idWord & extendedIdFlag ? extendedIdMask : standardIdMask);
}

} // namespace rawlog
