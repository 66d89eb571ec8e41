#pragma once

namespace a2l {

// COEFFS of a RAT_FUNC: internal = (a p^2 + b p + c) / (d p^2 + e p + f) of the physical value p.
struct RationalFunction
{
    double a = 0;
    double b = 0;
    double c = 0;
    double d = 0;
    double e = 0;
    double f = 0;

    // The physical value of an internal one. Poles give an infinity, a negative discriminant a NaN.
    [[nodiscard]] double physical(double internal) const;
};

} // namespace a2l
