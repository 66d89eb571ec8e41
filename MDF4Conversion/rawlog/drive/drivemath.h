#pragma once

#include <QtGlobal>

// Arithmetic of the demonstration drive. It uses only operations whose result IEEE 754 fixes to the
// last bit, which those of <cmath> are not, so that a drive has the same bytes on every machine.
namespace drive {

constexpr double pi = 3.14159265358979323846;

// Sine of an angle in full turns, of any size.
[[nodiscard]] double sineOfTurns(double turns);
[[nodiscard]] inline double cosineOfTurns(double turns)
{
    return sineOfTurns(turns + 0.25);
}

// Rises from 0 to 1 for u from 0 to 1, without a kink at the ends.
[[nodiscard]] constexpr double smoothStep(double u)
{
    return u * u * (3 - 2 * u);
}
// Its derivative.
[[nodiscard]] constexpr double smoothSlope(double u)
{
    return 6 * u * (1 - u);
}
// Its integral from 0.
[[nodiscard]] constexpr double smoothArea(double u)
{
    return u * u * u * (1 - u / 2);
}

// Evenly spread over [0, 2^64); always the same for the same stream and index.
[[nodiscard]] quint64 randomBits(quint32 stream, quint64 index);

// Evenly spread over [-1, 1).
[[nodiscard]] double noise(quint32 stream, quint64 index);

} // namespace drive
