#pragma once

#include <QtGlobal>

#include <cstddef>

// Takes values out of the bytes of a frame. Positions are bits from the first byte, lengths bits
// from 1 to 64 (a longer one counts as 64). Bytes beyond the frame read as zero; nothing outside
// of it is touched.
namespace can {

// How the bits of a value lie in the frame.
enum class BitOrder {
    Intel = 0,          // position of the least significant bit, rising
    WholeBigEndian = 1, // whole bytes, most significant first, from byte position / 8
    Motorola = 2        // DBC numbering of the most significant bit, falling
};

struct Bytes
{
    const quint8 *data = nullptr;
    std::size_t size = 0;
};

// The mask of `length` low bits; all ones from 64 up.
[[nodiscard]] constexpr quint64 lowBits(quint32 length)
{
    return length >= 64 ? ~quint64(0) : (quint64(1) << length) - 1;
}

// Fills all bits from `length` upwards with the bit at length - 1.
[[nodiscard]] constexpr quint64 signExtended(quint64 value, quint32 length)
{
    if (length == 0 || length >= 64 || ((value >> (length - 1)) & 1) == 0)
        return value;
    return value | ~lowBits(length);
}

[[nodiscard]] quint64 extractBits(Bytes frame, quint32 position, quint32 length, BitOrder order);

// The low 32 bits of an extraction as IEEE 754 single, all 64 as double.
[[nodiscard]] float floatFromBits(quint64 bits);
[[nodiscard]] double doubleFromBits(quint64 bits);

} // namespace can
