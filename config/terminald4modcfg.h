#pragma once

#include "config/record/record.h"

// The D4MOD strain-gauge modules of one RS485 port.
struct TerminalD4ModCfg
{
    quint8 enabled = 0;
    quint8 mode = 0; // of valuenames::d4modModes
    quint8 rate = 0; // of valuenames::d4modRates
    qint32 mode_value = 1000;

    static constexpr qint32 streamVersion = 1;
    static constexpr auto fields()
    {
        using record::field;
        using R = TerminalD4ModCfg;
        return std::make_tuple(field("enabled", &R::enabled), field("mode", &R::mode),
                               field("rate", &R::rate), field("mode_value", &R::mode_value));
    }
};

RECORD_CODE_ELSEWHERE(TerminalD4ModCfg)
