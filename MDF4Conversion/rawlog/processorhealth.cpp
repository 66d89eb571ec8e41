#include "MDF4Conversion/rawlog/processorhealth.h"

#include <QtEndian>

#include <algorithm>
#include <array>

namespace rawlog {
namespace {

constexpr std::size_t overflowsSize = 4;
constexpr std::size_t countersSize = 6;

template <class T>
void raise(std::optional<T> &largest, T value)
{
    largest = qMax(largest.value_or(value), value);
}

} // namespace

std::optional<DebugCounters> debugCounters(const StdLogEntry &entry)
{
    if (entry.type != RLD_DBG_COUNTERS || entry.data.size() < overflowsSize)
        return std::nullopt;
    std::array<quint8, countersSize> bytes{};
    std::copy_n(entry.data.begin(), std::min(entry.data.size(), countersSize), bytes.begin());
    return DebugCounters{qFromLittleEndian<quint32>(bytes.data()),
                         qFromLittleEndian<quint16>(bytes.data() + overflowsSize)};
}

std::optional<qint8> temperature(const StdLogEntry &entry)
{
    return entry.type == RLD_AGM ? std::optional(static_cast<qint8>(entry.info)) : std::nullopt;
}

std::optional<quint64> utcStart_us(const StdLogEntry &entry)
{
    if (entry.type != RLD_UTC_START || entry.data.size() < sizeof(quint64))
        return std::nullopt;
    return qFromLittleEndian<quint64>(entry.data.data());
}

void ProcessorHealth::note(const DebugCounters &counters)
{
    raise(ringBufferOverflows, counters.ringBufferOverflows);
    raise(restarts, counters.restarts);
}

void ProcessorHealth::note(qint8 temperature)
{
    minTemperature = qMin(minTemperature.value_or(temperature), temperature);
    raise(maxTemperature, temperature);
}

} // namespace rawlog
