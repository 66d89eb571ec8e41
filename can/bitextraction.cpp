#include "can/bitextraction.h"

#include <QtEndian>

#include <algorithm>
#include <cstring>

namespace can {
namespace {

constexpr std::size_t wordBytes = 8;
constexpr quint32 maxBits = 64;

quint64 byteAt(Bytes frame, quint64 index)
{
    return index < frame.size ? frame.data[index] : 0;
}

// Up to eight bytes from `first`, the first at the low end.
quint64 littleEndianWord(Bytes frame, quint64 first)
{
    if (first + wordBytes <= frame.size)
        return qFromLittleEndian<quint64>(frame.data + first);
    quint64 word = 0;
    for (std::size_t i = 0; i < wordBytes; ++i)
        word |= byteAt(frame, first + i) << (8 * i);
    return word;
}

quint64 intel(Bytes frame, quint32 position, quint32 length)
{
    const quint64 first = position / 8;
    const quint32 shift = position % 8;
    quint64 value = littleEndianWord(frame, first) >> shift;
    if (shift + length > 64)
        value |= byteAt(frame, first + wordBytes) << (64 - shift);
    return value & lowBits(length);
}

// The bits run from the most significant one downwards, byte by byte; at most nine bytes hold them.
quint64 motorola(Bytes frame, quint32 position, quint32 length)
{
    const quint64 first = position / 8;
    const quint32 bitsInFirst = position % 8 + 1;
    if (length <= bitsInFirst)
        return (byteAt(frame, first) >> (bitsInFirst - length)) & lowBits(length);

    const quint32 further = length - bitsInFirst;
    const quint32 furtherBytes = (further + 7) / 8;
    const quint32 unusedBits = furtherBytes * 8 - further;
    quint64 value = byteAt(frame, first) & lowBits(bitsInFirst);
    for (quint32 i = 1; i < furtherBytes; ++i)
        value = value << 8 | byteAt(frame, first + i);
    const quint64 last = byteAt(frame, first + furtherBytes) >> unusedBits;
    return (value << (8 - unusedBits) | last) & lowBits(length);
}

quint64 wholeBigEndian(Bytes frame, quint32 position, quint32 length)
{
    const quint64 first = position / 8;
    quint64 value = 0;
    for (quint32 i = 0; i < length / 8 && i < wordBytes; ++i)
        value = value << 8 | byteAt(frame, first + i);
    return value & lowBits(length);
}

} // namespace

quint64 extractBits(Bytes frame, quint32 position, quint32 length, BitOrder order)
{
    length = std::min(length, maxBits);
    switch (order) {
    case BitOrder::Intel:
        return intel(frame, position, length);
    case BitOrder::Motorola:
        return motorola(frame, position, length);
    case BitOrder::WholeBigEndian:
        return wholeBigEndian(frame, position, length);
    }
    return 0;
}

float floatFromBits(quint64 bits)
{
    const auto low = static_cast<quint32>(bits);
    float value = 0;
    std::memcpy(&value, &low, sizeof value);
    return value;
}

double doubleFromBits(quint64 bits)
{
    double value = 0;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

} // namespace can
