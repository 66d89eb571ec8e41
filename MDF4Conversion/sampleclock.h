#pragma once

#include "MDF4Conversion/conversioncontext.h"
#include "MDF4Conversion/logtime.h"
#include "MDF4Conversion/synctimeline.h"

#include <QtGlobal>

// The 64-bit time of the samples of a channel, made from the log's 32-bit one, and the intervals
// between them. All times are microseconds.
class SampleClock
{
public:
    // Low word from the log, high word from the corrections.
    [[nodiscard]] quint64 timestamp() const { return m_timestamp; }
    [[nodiscard]] quint64 sampleCount() const { return m_count; }
    // All 0 for fewer than two samples.
    [[nodiscard]] quint64 minInterval() const { return m_count > 1 ? m_minInterval : 0; }
    [[nodiscard]] quint64 maxInterval() const { return m_maxInterval; }
    [[nodiscard]] double averageInterval() const
    {
        return m_count > 1 ? double(m_intervalSum) / double(m_count - 1) : 0.0;
    }

    // Notes a sample at `now`, the low word of an entry, if its high word needs no correction.
    // Runs for every entry of a log.
    [[nodiscard]] bool noteUncorrected(quint32 now, const SyncTimeline &stamps)
    {
        const quint64 time = logtime::withLowWord(m_timestamp, now);
        const bool plausible = stamps.hasSources()
                                   ? !stamps.isImplausible(time)
                                   : m_count != 0 || stamps.firstTimestamps().empty();
        if (time < m_timestamp || !plausible)
            return false;
        noteSample(time);
        return true;
    }

    // Notes a sample at `now` and makes its time continuous: overflows of the logger's clock,
    // signals that begin on the other side of one, and long silence that the sync stamps reveal.
    // Each correction is a status that names the entry's type and number. True if the high word was
    // corrected.
    bool check(quint32 now, const MDF4_ConversionContext &context, quint8 type, quint8 number);

    // Notes a sample whose time is known already.
    void noteSample(quint64 time)
    {
        if (m_count != 0) {
            const quint64 interval = time - m_timestamp;
            m_minInterval = qMin(m_minInterval, interval);
            m_maxInterval = qMax(m_maxInterval, interval);
            m_intervalSum += interval;
        }
        ++m_count;
        m_timestamp = time;
    }

private:
    bool correct(quint32 now, const MDF4_ConversionContext &context, quint8 type, quint8 number);

    quint64 m_timestamp = 0;
    quint64 m_count = 0;
    quint64 m_minInterval = ~quint64(0);
    quint64 m_intervalSum = 0;
    quint64 m_maxInterval = 0;
};
