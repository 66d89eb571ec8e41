#include "can/bitextraction.h"

#include <QtEndian>

#include <algorithm>
#include <cstring>

namespace can {
namespace {

constexpr std::size_t wordBytes = 8;
constexpr quint32 maxBits = 64; // of a value

quint64 byteAt(Bytes frame, quint64 index)
{
    return index < frame.size ? frame.data[index] : 0;
}

// Eight bytes from `first`, the first at the low end. A frame of eight bytes or more is read at
// once, also where its end cuts the word.
quint64 littleEndianWord(Bytes frame, quint64 first)
{
    if (first + wordBytes <= frame.size)
        return qFromLittleEndian<quint64>(frame.data + first);
    quint64 word = 0;
    if (frame.size >= wordBytes && first < frame.size) {
        const quint64 beyond = first + wordBytes - frame.size;
        return qFromLittleEndian<quint64>(frame.data + frame.size - wordBytes) >> (8 * beyond);
    }
    for (std::size_t i = 0; i < wordBytes; ++i)
        word |= byteAt(frame, first + i) << (8 * i);
    return word;
}

// The same with the first byte at the high end.
quint64 bigEndianWord(Bytes frame, quint64 first)
{
    return qbswap(littleEndianWord(frame, first));
}

quint64 intel(Bytes frame, quint32 position, quint32 length)
{
    const quint64 first = position / 8;
    const quint32 shift = position % 8;
    quint64 value = littleEndianWord(frame, first) >> shift;
    if (shift + length > maxBits)
        value |= byteAt(frame, first + wordBytes) << (maxBits - shift);
    return value & lowBits(length);
}

// The bits run from the most significant one downwards, byte by byte; at most nine bytes hold them.
quint64 motorola(Bytes frame, quint32 position, quint32 length)
{
    const quint64 first = position / 8;
    const quint32 unusedHighBits = 7 - position % 8;
    const quint64 word = bigEndianWord(frame, first);
    const quint32 end = unusedHighBits + length;
    if (length == 0)
        return 0;
    if (end <= maxBits)
        return (word >> (maxBits - end)) & lowBits(length);
    const quint32 inNinthByte = end - maxBits;
    const quint64 rest = byteAt(frame, first + wordBytes) >> (8 - inNinthByte);
    return (word << inNinthByte | rest) & lowBits(length);
}

quint64 wholeBigEndian(Bytes frame, quint32 position, quint32 length)
{
    const quint32 bits = length / 8 * 8;
    return bits == 0 ? 0 : bigEndianWord(frame, position / 8) >> (maxBits - bits);
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
