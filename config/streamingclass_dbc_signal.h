#pragma once

#include "config/record/record.h"

#include <QString>

enum MuxKind : quint8 { PlainSignal = 0, MultiplexedSignal = 1, MultiplexorSignal = 2 };

// One signal of a CAN message, as a DBC file describes it.
struct StreamingClass_DBC_Signal
{
    // Bits of selection_flags; the others are never set.
    static constexpr quint8 recordFlag = 1; // the logger stores the signal
    static constexpr quint8 liveFlag = 2;   // the view shows it live

    QString name;
    QString unit;
    QString description;
    quint8 mux_kind = 0;   // MuxKind
    qint32 mux_value = 0;  // multiplexor value at which a multiplexed signal is valid
    quint16 start_bit = 0; // as in the DBC file
    quint16 bit_length = 0;
    quint8 little_endian = 0; // 1: Intel, 0: Motorola
    quint8 is_signed = 0;
    double factor = 0.0; // physical = raw * factor + offset
    double offset = 0.0;
    double minimum = 0.0;
    double maximum = 0.0;
    quint8 selection_flags = 0; // recordFlag, liveFlag
    quint8 dlc = 0;             // of the message
    quint32 msg_id = 0;         // without the flag of a 29-bit identifier
    quint8 extended_id = 0;     // 1: 29-bit identifier
    double live_value = 0.0;    // last decoded value, for views only
    bool live_seen = false;     // there is a last decoded value; not streamed

    static constexpr qint32 streamVersion = 1;
    static constexpr auto fields()
    {
        using record::field;
        using R = StreamingClass_DBC_Signal;
        return std::make_tuple(
            field("name", &R::name), field("unit", &R::unit), field("description", &R::description),
            field("mux_kind", &R::mux_kind), field("mux_value", &R::mux_value),
            field("start_bit", &R::start_bit), field("bit_length", &R::bit_length),
            field("little_endian", &R::little_endian), field("is_signed", &R::is_signed),
            field("factor", &R::factor), field("offset", &R::offset), field("minimum", &R::minimum),
            field("maximum", &R::maximum), field("selection_flags", &R::selection_flags),
            field("dlc", &R::dlc), field("msg_id", &R::msg_id),
            field("extended_id", &R::extended_id));
    }
};

RECORD_CODE_ELSEWHERE(StreamingClass_DBC_Signal)
