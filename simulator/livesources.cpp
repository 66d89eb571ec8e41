#include "simulator/livesources.h"

#include "MDF4Conversion/rawlog/drive/schedule.h"
#include "MDF4Conversion/rawlog/drive/sources.h"
#include "MDF4Conversion/rawlog/drive/vehicle.h"
#include "simulator/loggerstate.h"

namespace simulator {
namespace {

// By the number in the record: 1000 Hz, 250 Hz, 125 Hz, 31.25 Hz.
qint64 agmPeriod_us(quint8 rate)
{
    constexpr qint64 periods_us[] = {1000, 4000, 8000, 32'000};
    return periods_us[qMin(rate, quint8(3))];
}

void addMeasuringSources(const TerminalStruct &configuration, drive::Schedule &schedule,
                         const drive::Vehicle &vehicle)
{
    TerminalStruct unused; // the drive's sources describe themselves
    if (configuration.gps.gps_enabled)
        drive::addGps(unused, schedule, vehicle);
    if (configuration.agm.enabled)
        drive::recordAgm(schedule, vehicle, agmPeriod_us(configuration.agm.rate));
    addCanSources(configuration, schedule, vehicle);
    addEthernetSources(configuration, schedule, vehicle);
    addD4ModSources(configuration, schedule, vehicle);
    addEtherCatSources(configuration, schedule, vehicle);
}

} // namespace

void addLiveSources(const LoggerState &state, drive::Schedule &schedule,
                    const drive::Vehicle &vehicle)
{
    TerminalStruct unused;
    drive::addLoggerStatus(unused, schedule);
    addMeasuringSources(state.configuration, schedule, vehicle);
    addStatusSources(state, schedule, vehicle);
}

// The lateness of an entry depends on its source's place in the schedule: what is added here only
// comes last.
void addLogSources(const LoggerState &state, drive::Schedule &schedule,
                   const drive::Vehicle &vehicle, const LogStart &start)
{
    drive::recordLoggerStatus(schedule, start.utc, start.start_us);
    addMeasuringSources(state.configuration, schedule, vehicle);
    drive::recordFirstSyncStamps(schedule, start.start_us);
}

} // namespace simulator
