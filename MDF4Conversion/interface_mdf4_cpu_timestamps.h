#pragma once

#include "MDF4Conversion/interface_extractdata.h"
#include "MDF4Conversion/mdf4_channelgroup.h"
#include "MDF4Conversion/rawlog/clocklimits.h"
#include "MDF4Conversion/synctimeline.h"

#include <memory>
#include <vector>

// The sync stamps of one processor of the logger. It writes one at a fixed cycle, so that a signal
// that fell silent for longer than the clock's overflow period can still be placed in time.
class Interface_Data_CPU_Timestamps : public virtual Interface_ExtractData
{
public:
    // A processor shows a stamp at least this often.
    static constexpr quint64 longestCycle_us = rawlog::syncCycleLimit_us;

    Interface_Data_CPU_Timestamps(quint8 processor, const MDF4_ConversionContext &context);

    // Takes the stamp of an entry of this processor; false for any other entry. Yields no bytes.
    bool extractData(const StdLogEntry &entry, RecordBuffer &record) override;

    // The first sample of the log lies behind an overflow that this processor hasn't shown yet:
    // its first stamp gets a high word of 1. Not allowed once there is a stamp.
    void compensateOffset();

    // No two stamps in a row lie further apart than longestCycle_us. True with fewer than two.
    [[nodiscard]] bool isComplete() const { return maxInterval() <= longestCycle_us; }

private:
    bool m_offsetCompensation = false;
};

// The sync stamps of all processors, made on demand.
class Interface_MDF4_CPU_Timestamps : public MDF4_ChannelGroup, public SyncTimeline
{
public:
    explicit Interface_MDF4_CPU_Timestamps(const MDF4_ConversionContext &context);

    // True for a sync stamp; no other entry is taken.
    bool takeEntry(const StdLogEntry &entry) override;

    [[nodiscard]] bool allComplete() const;

    // The processors start behind the overflow, too. None of them may have shown a stamp.
    void noteInitialAdjustment() override;

private:
    void updateLimits();

    std::vector<std::unique_ptr<Interface_Data_CPU_Timestamps>> m_sources;
    bool m_initialAdjustmentMade = false;
};
