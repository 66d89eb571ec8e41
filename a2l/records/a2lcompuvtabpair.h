#pragma once

#include "config/record/record.h"

#include <QString>

// One row of a conversion table of texts.
struct A2lCompuVTabPair
{
    qint32 value = 0; // raw value
    QString text;

    static constexpr qint32 streamVersion = 1;
    static constexpr auto fields()
    {
        using record::field;
        using R = A2lCompuVTabPair;
        return std::make_tuple(field("value", &R::value), field("text", &R::text));
    }
};

RECORD_CODE_ELSEWHERE(A2lCompuVTabPair)
