#pragma once

#include "a2l/records/streamingclass_a2l_module.h"
#include "config/record/record.h"

// XCP on the ethernet port.
struct XcpRecord
{
    StreamingClass_A2L_Module module;

    static constexpr qint32 streamVersion = 0;
    static constexpr auto fields()
    {
        using record::field;
        using R = XcpRecord;
        return std::make_tuple(record::zeroByte(), field("module", &R::module));
    }
};

RECORD_CODE_ELSEWHERE(XcpRecord)
