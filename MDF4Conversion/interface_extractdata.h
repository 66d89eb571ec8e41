#pragma once

#include "MDF4Conversion/conversioncontext.h"
#include "MDF4Conversion/rawlog/stdlogentry.h"
#include "MDF4Conversion/recordbuffer.h"
#include "MDF4Conversion/sampleclock.h"

#include <QtGlobal>

#include <cassert>

// Base of everything that extracts values from log entries. Keeps the time of its samples.
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

    // Time and intervals of the samples in us, see SampleClock.
    [[nodiscard]] quint64 timestamp() const { return m_clock->timestamp(); }
    [[nodiscard]] quint64 sampleCount() const { return m_clock->sampleCount(); }
    [[nodiscard]] quint64 minInterval() const { return m_clock->minInterval(); }
    [[nodiscard]] quint64 maxInterval() const { return m_clock->maxInterval(); }
    [[nodiscard]] double averageInterval() const { return m_clock->averageInterval(); }

    // Takes `now`, the low word from an entry, as the time of a sample. True if its high word was
    // corrected.
    bool checkTimestamp(quint32 now)
    {
        assert(m_context && "No handler for timestamp-checks set.");
        return m_clock->check(now, *m_context, ReqType, ReqNr);
    }

    // Notes a sample whose time is known already.
    void noteSample(quint64 timestamp_us) { m_clock->noteSample(timestamp_us); }

    // From now on the samples are those of `shared`, whose owner notes them and outlives this.
    void shareClock(SampleClock &shared) { m_clock = &shared; }
    void useOwnClock() { m_clock = &m_ownClock; }

protected:
    [[nodiscard]] const MDF4_ConversionContext &context() const { return *m_context; }

private:
    const MDF4_ConversionContext *m_context = nullptr;
    SampleClock m_ownClock;
    SampleClock *m_clock = &m_ownClock;
};
