#pragma once

#include "MDF4Conversion/mdf4_channelgroup.h"
#include "MDF4Conversion/rawlog/processorhealth.h"

#include <map>
#include <optional>

// What a log tells about itself: counters and temperatures of the logger's processors, and the wall
// clock at its start. Takes no entry from others.
class Interface_MetaDataAndDebugInfos : public MDF4_ChannelGroup
{
public:
    explicit Interface_MetaDataAndDebugInfos(const MDF4_ConversionContext &context);

    // Always false.
    bool takeEntry(const StdLogEntry &entry) override;

    // By the number of the processor.
    [[nodiscard]] const std::map<quint8, rawlog::ProcessorHealth> &processors() const
    {
        return m_processors;
    }
    // UTC at the start of the log in us since the Unix epoch.
    [[nodiscard]] std::optional<quint64> startTime() const { return m_startTime; }

private:
    std::map<quint8, rawlog::ProcessorHealth> m_processors;
    std::optional<quint64> m_startTime;
};
