#pragma once

#include "config/record/record.h"

// One row of a conversion table of numbers.
struct A2lCompuTabPair
{
    double x = 0.0; // raw value
    double y = 0.0; // physical value

    static constexpr qint32 streamVersion = 1;
    static constexpr auto fields()
    {
        using record::field;
        using R = A2lCompuTabPair;
        return std::make_tuple(field("x", &R::x), field("y", &R::y));
    }
};

RECORD_CODE_ELSEWHERE(A2lCompuTabPair)
