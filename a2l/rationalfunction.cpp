#include "a2l/rationalfunction.h"

#include <cmath>

namespace a2l {

double RationalFunction::physical(double x) const
{
    if (a == 0 && d == 0)
        return (c - f * x) / (e * x - b);
    const double p = d * x - a;
    const double q = b - e * x;
    const double r = f * x - c;
    return (std::sqrt(q * q - 4 * r * p) + q) / (2 * p);
}

} // namespace a2l
