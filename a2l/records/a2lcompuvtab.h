#pragma once

#include "a2l/records/a2lcompuvtabpair.h"
#include "config/record/record.h"

#include <QString>

// A conversion table of texts.
struct A2lCompuVTab
{
    QString name;
    QString long_identifier;
    quint8 conversion_type = 0; // A2lConversionType
    quint16 pair_count = 0;     // as the A2L file states it; the list's own count holds
    OwnedList<A2lCompuVTabPair> pairs;

    static constexpr qint32 streamVersion = 1;
    static constexpr auto fields()
    {
        using record::field;
        using R = A2lCompuVTab;
        return std::make_tuple(field("name", &R::name),
                               field("long_identifier", &R::long_identifier),
                               field("conversion_type", &R::conversion_type),
                               field("pair_count", &R::pair_count), field("pairs", &R::pairs));
    }
};

RECORD_CODE_ELSEWHERE(A2lCompuVTab)
