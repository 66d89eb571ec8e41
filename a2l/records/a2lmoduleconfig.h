#pragma once

#include "a2l/records/streamingclass_a2l_cfg.h"
#include "config/record/record.h"

// Whether and over which interface the logger runs CCP or XCP, and how.
struct A2lModuleConfig
{
    quint8 enabled = 0;
    quint8 active_interface = 0; // ActiveA2lInterface
    StreamingClass_A2L_CFG cfg;

    static constexpr qint32 streamVersion = 1;
    static constexpr auto fields()
    {
        using record::field;
        using R = A2lModuleConfig;
        return std::make_tuple(field("enabled", &R::enabled),
                               field("active_interface", &R::active_interface),
                               field("cfg", &R::cfg));
    }
};

RECORD_CODE_ELSEWHERE(A2lModuleConfig)
