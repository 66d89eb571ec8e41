#pragma once

#include "config/record/record.h"
#include "config/streamingclass_dbc_signal.h"

// What starts and stops logging. The two signals outlive a reset: they are only ever replaced.
struct LogTriggerCfg
{
    quint8 mode = 0; // 0: delayed start, else start by signal
    quint8 digital_option = 0;
    quint8 digital_number = 1; // 1 or 2
    qint32 delay = 0;          // seconds
    quint8 stop_if_lower = 0;  // starts a new log file
    double signal_value = 0.0;
    quint8 signal_can = 0; // CAN channel
    StreamingClass_DBC_Signal signal;
    StreamingClass_DBC_Signal multiplexor; // the signal's multiplexor, if it has one

    static constexpr qint32 streamVersion = 1;
    static constexpr auto fields()
    {
        using record::field;
        using R = LogTriggerCfg;
        return std::make_tuple(
            field("mode", &R::mode), field("digital_option", &R::digital_option),
            field("digital_number", &R::digital_number), field("delay", &R::delay),
            field("stop_if_lower", &R::stop_if_lower), field("signal_value", &R::signal_value),
            field("signal_can", &R::signal_can), field("signal", &R::signal).keptWhenMissing(),
            field("multiplexor", &R::multiplexor).keptWhenMissing());
    }
};

RECORD_CODE_ELSEWHERE(LogTriggerCfg)
