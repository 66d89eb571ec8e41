#pragma once

#include "MDF4Conversion/rawlog/stdlogentry.h"

#include <optional>

// What entries of a raw log tell about the logger itself.
namespace rawlog {

// Payload of RLD_DBG_COUNTERS. Of an entry that ends behind the first counter, what is missing of
// the second reads as zero.
struct DebugCounters
{
    quint32 ringBufferOverflows = 0; // of the protection against them: data was lost
    quint16 restarts = 0;            // timestamp syncs or restarts
};

// From here on the logger itself started anew within a log.
constexpr quint16 manyRestarts = 2;

// The counters of an entry of their type; none in one that ends inside the first.
[[nodiscard]] std::optional<DebugCounters> debugCounters(const StdLogEntry &entry);

// Of an RLD_AGM entry, in °C.
[[nodiscard]] std::optional<qint8> temperature(const StdLogEntry &entry);

// Of an RLD_UTC_START entry: UTC at the start of the log in us since the Unix epoch. It may lie
// behind maxUtc_us in a damaged log.
[[nodiscard]] std::optional<quint64> utcStart_us(const StdLogEntry &entry);

// How one processor of the logger fared in a log.
struct ProcessorHealth
{
    std::optional<quint32> ringBufferOverflows; // the largest counter seen
    std::optional<quint16> restarts;            // the largest seen
    std::optional<qint8> minTemperature;        // °C
    std::optional<qint8> maxTemperature;

    void note(const DebugCounters &counters);
    void note(qint8 temperature);
};

// Notes what an entry tells about its processor. `processors` maps numbers to ProcessorHealth, or to
// what is derived from it.
template <class Processors>
void noteHealth(const StdLogEntry &entry, Processors &processors)
{
    if (const auto counters = debugCounters(entry))
        processors[entry.number].note(*counters);
    if (const auto degrees = temperature(entry))
        processors[entry.number].note(*degrees);
}

} // namespace rawlog
