#pragma once

#include "config/record/record.h"

#include <QString>

// Event measurement and auxiliary supply.
struct AuxSupplyCfg
{
    QString event_name;  // added to the log file
    quint8 aux_mode = 0; // of valuenames::auxModes

    static constexpr qint32 streamVersion = 2;
    static constexpr auto fields()
    {
        using record::field;
        using R = AuxSupplyCfg;
        return std::make_tuple(field("event_name", &R::event_name),
                               field("aux_mode", &R::aux_mode, 2));
    }
};

RECORD_CODE_ELSEWHERE(AuxSupplyCfg)
