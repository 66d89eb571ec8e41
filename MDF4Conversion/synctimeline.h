#pragma once

#include "MDF4Conversion/rawlog/clocklimits.h"

#include <QtGlobal>

#include <vector>

// What is known of the logger's clock while a log is parsed. Every channel judges its timestamps by
// it; the sync stamps of the processors move it on. All times are microseconds.
class SyncTimeline
{
public:
    // A signal further behind the slowest or ahead of the fastest processor than this missed an
    // overflow of the clock.
    static constexpr quint64 backLimit = rawlog::clockBackLimit_us;
    static constexpr quint64 forwardLimit =
        rawlog::clockForwardLimit_us; // also for the start of a log

    SyncTimeline() = default;
    SyncTimeline(const SyncTimeline &) = delete;
    SyncTimeline &operator=(const SyncTimeline &) = delete;
    virtual ~SyncTimeline() = default;

    // A processor has shown a sync stamp; slowest() and fastest() are the smallest and the largest
    // of the last stamps of all processors.
    [[nodiscard]] bool hasSources() const { return m_hasSources; }
    [[nodiscard]] quint64 slowest() const { return m_slowest; }
    [[nodiscard]] quint64 fastest() const { return m_fastest; }

    // With at least one source: too far from the sync stamps to be of the same overflow period.
    [[nodiscard]] bool isImplausible(quint64 timestamp) const
    {
        return (m_slowest >= backLimit && m_slowest - backLimit > timestamp)
               || m_fastest + forwardLimit < timestamp;
    }

    // Holds the first sample of the whole log, once there is one.
    [[nodiscard]] const std::vector<quint64> &firstTimestamps() const { return m_firstTimestamps; }
    void addFirstTimestamp(quint64 timestamp) { m_firstTimestamps.push_back(timestamp); }

    // A channel's first sample was moved behind an overflow of the clock.
    virtual void noteInitialAdjustment() = 0;

protected:
    void setLimits(quint64 slowest, quint64 fastest)
    {
        m_hasSources = true;
        m_slowest = slowest;
        m_fastest = fastest;
    }

private:
    bool m_hasSources = false;
    quint64 m_slowest = 0;
    quint64 m_fastest = 0;
    std::vector<quint64> m_firstTimestamps;
};
