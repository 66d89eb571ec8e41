#pragma once

#include "a2l/records/streamingclass_a2l_module.h"
#include "config/aimmsgmeta.h"
#include "config/canidfilterelement.h"
#include "config/record/record.h"
#include "config/streamingclass_dbc_signal.h"

#include <QString>

// One CAN channel.
struct TerminalCanCfg
{
    quint8 enabled = 0;
    quint8 can_mode = 0; // 0: classic, 1: FD, 2: FD with bit rate switching
    quint8 listen_only = 0;
    quint8 single_shot = 0;   // no automatic retransmission
    quint8 termination = 0;   // 120 ohm
    quint16 clk_div = 15;     // of the 120 MHz CAN clock, nominal phase
    quint8 tseg1 = 11;        // time quanta
    quint8 tseg2 = 4;         // time quanta
    quint8 sjw = 1;           // time quanta
    quint8 fast_clk_div = 15; // data phase of CAN FD
    quint8 fast_tseg1 = 11;
    quint8 fast_tseg2 = 4;
    quint8 fast_sjw = 1;
    quint8 remote_11 = 0; // 11-bit remote frames; 0: filtered, 1: rejected
    quint8 remote_29 = 0; // 29-bit remote frames
    OwnedList<CanIdFilterElement> filters;
    OwnedList<StreamingClass_DBC_Signal> dbc_signals;
    StreamingClass_A2L_Module a2l;
    QString export_custom_name;  // channel group name for export
    quint8 export_name_mode = 0; // how that name is merged with the one of the A2L file
    OwnedList<AimMsgMeta> aim_modules;

    static constexpr qint32 streamVersion = 4;
    static constexpr auto fields()
    {
        using record::field;
        using R = TerminalCanCfg;
        return std::make_tuple(
            field("enabled", &R::enabled), field("can_mode", &R::can_mode),
            field("listen_only", &R::listen_only), field("single_shot", &R::single_shot),
            field("termination", &R::termination), field("clk_div", &R::clk_div).clampedTo(512),
            field("tseg1", &R::tseg1), field("tseg2", &R::tseg2), field("sjw", &R::sjw),
            field("fast_clk_div", &R::fast_clk_div), field("fast_tseg1", &R::fast_tseg1),
            field("fast_tseg2", &R::fast_tseg2), field("fast_sjw", &R::fast_sjw),
            field("remote_11", &R::remote_11), field("remote_29", &R::remote_29),
            field("filters", &R::filters), field("dbc_signals", &R::dbc_signals),
            field("a2l", &R::a2l, 2), field("export_custom_name", &R::export_custom_name, 3),
            field("export_name_mode", &R::export_name_mode, 3),
            field("aim_modules", &R::aim_modules, 4));
    }
};

RECORD_CODE_ELSEWHERE(TerminalCanCfg)
