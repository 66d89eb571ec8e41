#pragma once

#include "config/d4mod_channel.h"
#include "config/record/record.h"
#include "config/terminald4modcfg.h"

// One RS485 port.
struct TerminalRs485Cfg
{
    quint8 supply_out = 0;
    quint16 voltage = 5500; // supply level in mV
    TerminalD4ModCfg d4mod;
    OwnedList<D4Mod_Channel> channels; // found at run time, not streamed

    static constexpr qint32 streamVersion = 1;
    static constexpr auto fields()
    {
        using record::field;
        using R = TerminalRs485Cfg;
        return std::make_tuple(field("supply_out", &R::supply_out), field("voltage", &R::voltage),
                               field("d4mod", &R::d4mod));
    }

    void resetUnstreamed() { channels.clear(); }
};

RECORD_CODE_ELSEWHERE(TerminalRs485Cfg)
