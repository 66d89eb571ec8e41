#pragma once

#include "config/record/record.h"

#include <QString>

// One CCP raster or XCP event of the ECU.
struct StreamingClass_A2L_RASTER_EVENT
{
    QString name;
    QString short_name;
    quint8 channel_no = 0;
    quint16 period_cse = 0; // unit of period_rate
    quint32 period_rate = 0;

    static constexpr qint32 streamVersion = 1;
    static constexpr auto fields()
    {
        using record::field;
        using R = StreamingClass_A2L_RASTER_EVENT;
        return std::make_tuple(field("name", &R::name), field("short_name", &R::short_name),
                               field("channel_no", &R::channel_no),
                               field("period_cse", &R::period_cse),
                               field("period_rate", &R::period_rate));
    }
};

RECORD_CODE_ELSEWHERE(StreamingClass_A2L_RASTER_EVENT)
