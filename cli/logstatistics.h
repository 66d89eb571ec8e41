#pragma once

#include "MDF4Conversion/rawlog/clocklimits.h"
#include "MDF4Conversion/rawlog/processorhealth.h"
#include "MDF4Conversion/rawlog/stdlogentry.h"
#include "cli/logclock.h"

#include <QVector>

#include <array>
#include <map>
#include <memory>
#include <optional>

// Longest stretch without an entry. Times in us on the extended clock of the log.
struct Silence
{
    qint64 start_us = 0;
    qint64 length_us = 0;
};

// The entries of one type and one number, that is of one bus, port or processor.
struct StreamStatistics
{
    quint64 entries = 0;
    quint64 bytes = 0;      // with their heads
    quint64 incomplete = 0; // too short for what their type or they themselves announce
    quint64 outOfOrder = 0; // older than one before them
    quint64 gaps = 0;       // silences longer than LogStatistics::gapLimit_us; not of sync stamps
    Silence longestSilence;
    // Of the complete entries with a plausible time; none for a type without a timestamp.
    std::optional<qint64> first_us;
    std::optional<qint64> newest_us;
};

// What the logger tells of one of its processors.
struct ProcessorStatistics : rawlog::ProcessorHealth
{
    quint64 equalSyncStamps = 0;    // same time as the stamp before
    qint64 longestSyncInterval = 0; // us
};

// Bytes of a log that are no entry.
struct SkippedStretch
{
    qint64 position = 0; // in the file
    quint64 length = 0;
};

// Counts what is in a raw log, entry by entry, in memory that does not grow with the log.
class LogStatistics
{
public:
    // A longer silence of a bus counts as a gap. Sources that speak once a second have none.
    static constexpr qint64 gapLimit_us = 1500000;
    // The processors write a sync stamp at least this often.
    static constexpr qint64 syncLimit_us = rawlog::syncCycleLimit_us;
    // No more stretches are listed, only counted.
    static constexpr int maxListedStretches = 1000;

    using StreamKey = std::pair<quint8, quint8>; // type, number

    // Takes the next entry of the log, valid or not.
    void take(const StdLogEntry &entry);
    void takeSkipped(qint64 position, quint64 length);
    // No entry follows.
    void finish();

    // By type, then number.
    [[nodiscard]] std::map<StreamKey, StreamStatistics> streams() const;
    // Null for a stream without entries.
    [[nodiscard]] const StreamStatistics *find(StreamKey key) const;
    [[nodiscard]] const std::map<quint8, ProcessorStatistics> &processors() const
    {
        return m_processors;
    }
    // Sum of all streams.
    [[nodiscard]] StreamStatistics total() const;
    // Of the whole log: between any two entries.
    [[nodiscard]] const Silence &longestSilence() const { return m_all.longestSilence; }
    [[nodiscard]] std::optional<qint64> first_us() const { return m_oldest; }
    [[nodiscard]] std::optional<qint64> last_us() const { return m_all.newest_us; }

    // Too short for an entry's head.
    [[nodiscard]] quint64 damagedEntries() const { return m_damaged; }
    // Of a type that isn't known.
    [[nodiscard]] quint64 unknownEntries() const;
    // Entries whose time leaps away from their neighbours; left out of all times.
    [[nodiscard]] quint64 implausibleTimes() const { return m_implausibleTimes; }

    // UTC at the start of the log in us since the Unix epoch.
    [[nodiscard]] std::optional<quint64> utcStart_us() const { return m_utcStart; }
    // One beyond rawlog::maxUtc_us, which was not taken.
    [[nodiscard]] std::optional<quint64> implausibleUtcStart_us() const
    {
        return m_implausibleUtcStart;
    }

    // The first ones, and the sum of all.
    [[nodiscard]] const QVector<SkippedStretch> &skippedStretches() const { return m_stretches; }
    [[nodiscard]] quint64 skippedStretchCount() const { return m_stretchCount; }
    [[nodiscard]] quint64 skippedBytes() const { return m_skippedBytes; }

private:
    struct OpenLeap
    {
        StreamStatistics *stream = nullptr;
        quint8 type = 0;
        quint8 number = 0;
        qint64 time_us = 0;
    };
    using Row = std::array<StreamStatistics, 256>; // of one type, by number

    [[nodiscard]] StreamStatistics &stream(quint8 type, quint8 number);
    void takeTime(const StdLogEntry &entry, StreamStatistics &stream);
    void place(const OpenLeap &entry);
    void placeSyncStamp(const OpenLeap &entry);
    void takeUtcStart(quint64 utc_us);

    std::array<std::unique_ptr<Row>, 256> m_rows;
    std::map<quint8, ProcessorStatistics> m_processors;
    StreamStatistics m_all; // times and silences of the whole log
    std::optional<qint64> m_oldest;
    LogClock m_clock;
    OpenLeap m_leap;
    quint64 m_damaged = 0;
    quint64 m_implausibleTimes = 0;
    std::optional<quint64> m_utcStart;
    std::optional<quint64> m_implausibleUtcStart;
    QVector<SkippedStretch> m_stretches;
    quint64 m_stretchCount = 0;
    quint64 m_skippedBytes = 0;
};
