#pragma once

#include "config/ethtunnelingcfg.h"
#include "config/record/record.h"
#include "config/xcprecord.h"

#include <QString>

// The automotive ethernet port.
struct StreamingClass_Cfg_Ethernet
{
    quint8 module_selection = 0; // bit 0: XCP, bit 1: HSFZ
    XcpRecord xcp;
    EthTunnelingCfg tunneling;
    QString custom_name;     // the user's name of the port
    quint8 further_byte = 0; // how that name is merged on export; handed through to the logger

    static constexpr qint32 streamVersion = 3;
    static constexpr auto fields()
    {
        using record::field;
        using R = StreamingClass_Cfg_Ethernet;
        return std::make_tuple(field("module_selection", &R::module_selection),
                               field("xcp", &R::xcp), field("tunneling", &R::tunneling, 1),
                               field("custom_name", &R::custom_name, 2),
                               field("further_byte", &R::further_byte, 2));
    }
};

RECORD_CODE_ELSEWHERE(StreamingClass_Cfg_Ethernet)
