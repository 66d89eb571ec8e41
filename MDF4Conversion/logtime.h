#pragma once

#include <QtGlobal>

// The logger's clock counts us in 32 bits; the conversion adds a high word that counts its
// overflows.
namespace logtime {

// One overflow.
constexpr quint64 highStep = quint64(1) << 32;

[[nodiscard]] constexpr quint32 lowWord(quint64 time)
{
    return static_cast<quint32>(time);
}

[[nodiscard]] constexpr quint64 highPart(quint64 time)
{
    return time & ~(highStep - 1);
}

// `time` with another low word.
[[nodiscard]] constexpr quint64 withLowWord(quint64 time, quint32 low)
{
    return highPart(time) | low;
}

} // namespace logtime
