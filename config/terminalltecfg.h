#pragma once

#include "config/record/record.h"

// The LTE modem.
struct TerminalLteCfg
{
    quint8 lte_switch = 0;
    quint8 companion = 0;

    static constexpr qint32 streamVersion = 1;
    static constexpr auto fields()
    {
        using record::field;
        using R = TerminalLteCfg;
        return std::make_tuple(field("switch", &R::lte_switch), field("companion", &R::companion));
    }
};

RECORD_CODE_ELSEWHERE(TerminalLteCfg)
