#include "cli/logstatistics.h"

using namespace rawlog;

namespace {

bool hasTimestamp(quint8 type)
{
    const EntryKind *kind = entryKind(type);
    return kind
           && (kind->bodyHead == BodyHead::Timestamp || kind->bodyHead == BodyHead::TimestampAndId);
}

void noteTime(StreamStatistics &stream, qint64 time_us, bool hasGaps)
{
    if (!stream.newest_us) {
        stream.first_us = stream.newest_us = time_us;
        return;
    }
    const qint64 silence = time_us - *stream.newest_us;
    if (silence < 0) {
        ++stream.outOfOrder;
        return;
    }
    if (hasGaps && silence > LogStatistics::gapLimit_us)
        ++stream.gaps;
    if (silence > stream.longestSilence.length_us)
        stream.longestSilence = {*stream.newest_us, silence};
    stream.newest_us = time_us;
}

} // namespace

StreamStatistics &LogStatistics::stream(quint8 type, quint8 number)
{
    std::unique_ptr<Row> &row = m_rows[type];
    if (!row)
        row = std::make_unique<Row>();
    return (*row)[number];
}

void LogStatistics::take(const StdLogEntry &entry)
{
    if (!entry.valid) {
        ++m_damaged;
        return;
    }
    StreamStatistics &statistics = stream(entry.type, entry.number);
    ++statistics.entries;
    statistics.bytes += entry.length + lengthOverhead;
    noteHealth(entry, m_processors);
    if (const auto utc_us = rawlog::utcStart_us(entry))
        takeUtcStart(*utc_us);
    if (!entry.isComplete()) {
        ++statistics.incomplete;
        return;
    }
    if (hasTimestamp(entry.type))
        takeTime(entry, statistics);
}

void LogStatistics::takeTime(const StdLogEntry &entry, StreamStatistics &statistics)
{
    const LogClock::Reading reading = m_clock.read(entry.timestamp, statistics.newest_us);
    if (m_leap.stream) {
        if (reading.leapWasFalse)
            ++m_implausibleTimes;
        else
            place(m_leap);
        m_leap = {};
    }
    const OpenLeap placed{&statistics, entry.type, entry.number, reading.time_us};
    if (reading.verdict == LogClock::Verdict::Leap)
        m_leap = placed;
    else
        place(placed);
}

void LogStatistics::place(const OpenLeap &entry)
{
    const bool isSyncStamp = entry.type == RLD_CYCLIC_TS;
    if (isSyncStamp)
        placeSyncStamp(entry);
    noteTime(*entry.stream, entry.time_us, !isSyncStamp);
    noteTime(m_all, entry.time_us, true);
    m_oldest = qMin(m_oldest.value_or(entry.time_us), entry.time_us);
}

void LogStatistics::placeSyncStamp(const OpenLeap &entry)
{
    ProcessorStatistics &processor = m_processors[entry.number];
    if (!entry.stream->newest_us)
        return;
    const qint64 interval = entry.time_us - *entry.stream->newest_us;
    if (interval == 0)
        ++processor.equalSyncStamps;
    processor.longestSyncInterval = qMax(processor.longestSyncInterval, interval);
}

void LogStatistics::takeUtcStart(quint64 utc_us)
{
    (utc_us <= maxUtc_us ? m_utcStart : m_implausibleUtcStart) = utc_us;
}

void LogStatistics::takeSkipped(qint64 position, quint64 length)
{
    if (length == 0)
        return;
    ++m_stretchCount;
    m_skippedBytes += length;
    if (m_stretches.size() < maxListedStretches)
        m_stretches.append({position, length});
}

void LogStatistics::finish()
{
    if (m_leap.stream)
        place(m_leap);
    m_leap = {};
}

std::map<LogStatistics::StreamKey, StreamStatistics> LogStatistics::streams() const
{
    std::map<StreamKey, StreamStatistics> streams;
    for (std::size_t type = 0; type < m_rows.size(); ++type) {
        for (std::size_t number = 0; m_rows[type] && number < m_rows[type]->size(); ++number) {
            const StreamStatistics &statistics = (*m_rows[type])[number];
            if (statistics.entries != 0)
                streams[{quint8(type), quint8(number)}] = statistics;
        }
    }
    return streams;
}

const StreamStatistics *LogStatistics::find(StreamKey key) const
{
    const std::unique_ptr<Row> &row = m_rows[key.first];
    return row && (*row)[key.second].entries != 0 ? &(*row)[key.second] : nullptr;
}

StreamStatistics LogStatistics::total() const
{
    StreamStatistics sum = m_all;
    sum.outOfOrder = 0;
    for (const auto &[key, statistics] : streams()) {
        sum.entries += statistics.entries;
        sum.bytes += statistics.bytes;
        sum.incomplete += statistics.incomplete;
        sum.outOfOrder += statistics.outOfOrder;
    }
    return sum;
}

quint64 LogStatistics::unknownEntries() const
{
    quint64 count = 0;
    for (const auto &[key, statistics] : streams()) {
        if (!entryKind(key.first))
            count += statistics.entries;
    }
    return count;
}
