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

} // namespace

void addLiveSources(const LoggerState &state, drive::Schedule &schedule,
                    const drive::Vehicle &vehicle)
{
    const TerminalStruct &configuration = state.configuration;
    TerminalStruct unused; // the drive's sources describe themselves
    drive::addLoggerStatus(unused, schedule);
    if (configuration.gps.gps_enabled)
        drive::addGps(unused, schedule, vehicle);
    if (configuration.agm.enabled)
        drive::recordAgm(schedule, vehicle, agmPeriod_us(configuration.agm.rate));
    addCanSources(configuration, schedule, vehicle);
    addEthernetSources(configuration, schedule, vehicle);
    addD4ModSources(configuration, schedule, vehicle);
    addEtherCatSources(configuration, schedule, vehicle);
    addStatusSources(state, schedule, vehicle);
}

} // namespace simulator
