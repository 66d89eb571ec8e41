#pragma once

#include "config/record/record.h"

// What a filter compares an identifier with; texts are valuenames::canFilterTypes.
enum CanFilterType : quint8 {
    RangeFilter = 0,   // from id1 to id2
    DualFilter = 1,    // id1 or id2
    ClassicFilter = 2, // id1 under the mask id2
    RangeT2Filter = 3  // known to the logger only
};

// One row of a CAN channel's hardware identifier filter.
struct CanIdFilterElement
{
    quint8 extended = 0;    // 0: 11-bit, else 29-bit
    quint8 filter_type = 0; // CanFilterType
    quint8 reject = 0;      // 0: accept on match, 1: reject on match
    quint32 id1 = 0;
    quint32 id2 = 0; // second identifier, or the mask

    static constexpr qint32 streamVersion = 1;
    static constexpr auto fields()
    {
        using record::field;
        using R = CanIdFilterElement;
        return std::make_tuple(field("extended", &R::extended),
                               field("filter_type", &R::filter_type), field("reject", &R::reject),
                               field("id1", &R::id1), field("id2", &R::id2));
    }
};

RECORD_CODE_ELSEWHERE(CanIdFilterElement)
