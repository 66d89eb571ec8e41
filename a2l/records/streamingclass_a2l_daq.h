#pragma once

#include "a2l/records/streamingclass_a2l_odt.h"
#include "config/record/record.h"

#include <QString>

// One DAQ list: ODTs that are sampled together.
struct StreamingClass_A2L_DAQ
{
    QString name;
    quint16 period_cse = 0; // DAQ_rperiod_CSE of the A2L file: the unit of period_rate
    quint32 period_rate = 0;
    quint16 daq_number = 0; // index of the list
    quint16 max_odt = 0;    // LENGTH or MAX_ODT of the A2L file
    quint32 can_id = 0;     // bit 31: 29-bit identifier; 0: none
    quint8 event_channel = 0;
    quint8 first_pid = 0;
    OwnedList<StreamingClass_A2L_ODT> odts;
    quint16 odt_capacity = 0; // payload bytes of one ODT

    static constexpr qint32 streamVersion = 2;
    static constexpr auto fields()
    {
        using record::field;
        using R = StreamingClass_A2L_DAQ;
        return std::make_tuple(
            field("name", &R::name), field("period_cse", &R::period_cse),
            field("period_rate", &R::period_rate), field("daq_number", &R::daq_number),
            field("max_odt", &R::max_odt), field("can_id", &R::can_id),
            field("event_channel", &R::event_channel), field("first_pid", &R::first_pid),
            field("odts", &R::odts), field("odt_capacity", &R::odt_capacity, 2));
    }
};

RECORD_CODE_ELSEWHERE(StreamingClass_A2L_DAQ)
