#pragma once

#include "MDF4Conversion/conversioncontext.h"
#include "MDF4Conversion/rawlog/stdlogentry.h"
#include "MDF4Conversion/recordbuffer.h"
#include "MDF4Conversion/synctimeline.h"

#include <QtGlobal>

#include <cassert>

// Base of everything that extracts values from log entries. Keeps the 64-bit timestamp that is made
// from the log's 32-bit one, and the statistics of its samples.
class Interface_ExtractData
{
public:
    Interface_ExtractData() = default;
    Interface_ExtractData(const Interface_ExtractData &) = delete;
    Interface_ExtractData &operator=(const Interface_ExtractData &) = delete;
    virtual ~Interface_ExtractData() = default;

    // Appends the bytes that the entry yields; true if it yielded any.
    virtual bool extractData(const StdLogEntry &entry, RecordBuffer &record) = 0;

    void setContext(const MDF4_ConversionContext *handler) { m_context = handler; }

    quint8 ReqType = 0;
    quint8 ReqNr = 0;

    // Last timestamp in us: low word from the log, high word from the corrections.
    [[nodiscard]] quint64 timestamp() const { return m_timestamp; }
    [[nodiscard]] quint64 sampleCount() const { return m_count; }
    // Intervals between samples in us; all 0 for fewer than two samples.
    [[nodiscard]] quint64 minInterval() const { return m_count > 1 ? m_minInterval : 0; }
    [[nodiscard]] quint64 maxInterval() const { return m_maxInterval; }
    [[nodiscard]] double averageInterval() const;

    // Takes `now`, the low word from an entry, and makes the timestamps continuous: overflows of
    // the logger's clock, signals that begin on the other side of one, and long silence that the
    // sync stamps reveal. True if the high word was corrected.
    bool checkTimestamp(quint32 now);

    // Notes a sample whose time is known already.
    void noteSample(quint64 timestamp_us);

protected:
    [[nodiscard]] const MDF4_ConversionContext &context() const { return *m_context; }

private:
    bool correctTimestamp(quint32 now);
    void raiseToSyncStamps(quint64 &timestamp);

    const MDF4_ConversionContext *m_context = nullptr;
    quint64 m_timestamp = 0;
    quint64 m_count = 0;
    quint64 m_minInterval = ~quint64(0);
    quint64 m_intervalSum = 0;
    quint64 m_maxInterval = 0;
};

inline void Interface_ExtractData::noteSample(quint64 timestamp_us)
{
    if (m_count != 0) {
        const quint64 interval = timestamp_us - m_timestamp;
        m_minInterval = qMin(m_minInterval, interval);
        m_maxInterval = qMax(m_maxInterval, interval);
        m_intervalSum += interval;
    }
    ++m_count;
    m_timestamp = timestamp_us;
}

// The usual case needs no correction; it is decided here, since it runs for every value of a log.
inline bool Interface_ExtractData::checkTimestamp(quint32 now)
{
    assert(m_context && "No handler for timestamp-checks set.");
    const SyncTimeline &stamps = *m_context->cpuTimestamps;
    const quint64 timestamp = (m_timestamp & ~quint64(0xFFFFFFFF)) | now;
    const bool plausible = stamps.hasSources() ? !stamps.isImplausible(timestamp)
                                               : m_count != 0 || stamps.firstTimestamps().empty();
    if (timestamp >= m_timestamp && plausible) {
        noteSample(timestamp);
        return false;
    }
    return correctTimestamp(now);
}
