#pragma once

#include "config/record/record.h"

// The GPS receiver.
struct TerminalGpsCfg
{
    quint8 gps_enabled = 0;

    static constexpr qint32 streamVersion = 1;
    static constexpr auto fields()
    {
        using record::field;
        using R = TerminalGpsCfg;
        return std::make_tuple(field("enabled", &R::gps_enabled));
    }
};

RECORD_CODE_ELSEWHERE(TerminalGpsCfg)
