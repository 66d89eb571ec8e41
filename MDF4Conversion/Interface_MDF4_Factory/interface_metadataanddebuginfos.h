#pragma once

#include "MDF4Conversion/mdf4_channelgroup.h"

#include <map>
#include <optional>

// What a log tells about itself: counters and temperatures of the logger's processors, and the wall
// clock at its start. Takes no entry from others.
class Interface_MetaDataAndDebugInfos : public MDF4_ChannelGroup
{
public:
    struct Processor
    {
        quint32 ringBufferCounter = 0;       // overflow protection, the largest seen
        quint16 syncCounter = 0;             // timestamp syncs or restarts, the largest seen
        std::optional<qint8> minTemperature; // °C
        std::optional<qint8> maxTemperature;
    };

    explicit Interface_MetaDataAndDebugInfos(const MDF4_ConversionContext &context);

    // Always false.
    bool takeEntry(const StdLogEntry &entry) override;

    // By the number of the processor.
    [[nodiscard]] const std::map<quint8, Processor> &processors() const { return m_processors; }
    // UTC at the start of the log in us since the Unix epoch.
    [[nodiscard]] std::optional<quint64> startTime() const { return m_startTime; }

private:
    void takeCounters(const StdLogEntry &entry);
    void takeTemperature(const StdLogEntry &entry);

    std::map<quint8, Processor> m_processors;
    std::optional<quint64> m_startTime;
};
