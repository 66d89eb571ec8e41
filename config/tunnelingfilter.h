#pragma once

#include "config/record/record.h"

// A range of identifiers that are tunneled. Stands in its list without a frame.
struct TunnelingFilter
{
    quint32 to_id = 0;   // last of the range
    quint32 from_id = 0; // first of the range
    quint8 channel = 0;  // tunneling channel
    quint8 reserved = 0; // always 0

    static constexpr auto fields()
    {
        using record::field;
        using R = TunnelingFilter;
        return std::make_tuple(field("to_id", &R::to_id), field("from_id", &R::from_id),
                               field("channel", &R::channel), field("reserved", &R::reserved));
    }
};

RECORD_CODE_ELSEWHERE(TunnelingFilter)
