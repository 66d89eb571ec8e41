#pragma once

#include "MDF4Conversion/interface_extractdata.h"

// The times of the entries of a group whose channels don't take them one by one.
class EntryClock final : public Interface_ExtractData
{
public:
    // `type` and `number` are those of the entries.
    EntryClock(const MDF4_ConversionContext &handler, quint8 type, quint8 number)
    {
        setContext(&handler);
        ReqType = type;
        ReqNr = number;
    }

    bool extractData(const StdLogEntry &, RecordBuffer &) override { return false; }
};
