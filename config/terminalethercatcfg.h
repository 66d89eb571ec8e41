#pragma once

#include "config/ethercatslave.h"
#include "config/record/record.h"

// One EtherCAT master.
struct TerminalEtherCatCfg
{
    quint8 enabled = 0;
    quint16 sample_rate = 100;
    OwnedList<EtherCatSlave> slaves;

    static constexpr qint32 streamVersion = 1;
    static constexpr auto fields()
    {
        using record::field;
        using R = TerminalEtherCatCfg;
        return std::make_tuple(field("enabled", &R::enabled), field("sample_rate", &R::sample_rate),
                               field("slaves", &R::slaves));
    }
};

RECORD_CODE_ELSEWHERE(TerminalEtherCatCfg)
