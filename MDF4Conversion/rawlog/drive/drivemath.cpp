#include "MDF4Conversion/rawlog/drive/drivemath.h"

#include <cmath>

namespace drive {

double sineOfTurns(double turns)
{
    double part = turns - std::floor(turns);
    const bool negative = part >= 0.5;
    if (negative)
        part -= 0.5;
    if (part > 0.25)
        part = 0.5 - part;
    // Taylor series on the quarter turn; the first term left out is below 1e-7.
    const double x = 2 * pi * part;
    const double x2 = x * x;
    const double sine =
        x * (1 - x2 / 6 * (1 - x2 / 20 * (1 - x2 / 42 * (1 - x2 / 72 * (1 - x2 / 110)))));
    return negative ? -sine : sine;
}

// SplitMix64: a counter, mixed until every bit depends on every other.
quint64 randomBits(quint32 stream, quint64 index)
{
    quint64 z = (quint64(stream) << 40) + index * 0x9E3779B97F4A7C15ULL + 0x9E3779B97F4A7C15ULL;
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ULL;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBULL;
    return z ^ (z >> 31);
}

double noise(quint32 stream, quint64 index)
{
    const auto bits = static_cast<qint64>(randomBits(stream, index)) / 2048; // 53 bits and a sign
    return double(bits) / 4503599627370496.0;                                // 2^52
}

} // namespace drive
