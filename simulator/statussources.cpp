#include "MDF4Conversion/rawlog/drive/schedule.h"
#include "MDF4Conversion/rawlog/drive/vehicle.h"
#include "simulator/livesources.h"
#include "simulator/livestatusentries.h"
#include "simulator/loggerstate.h"

namespace simulator {
namespace {

using drive::Moment;

constexpr qint64 period_us = 500'000;

SystemInfo systemInfo(const LoggerState &state, const drive::VehicleState &vehicle)
{
    SystemInfo info;
    info.supply_mV = quint16(qBound(0.0, vehicle.battery_V * 1000, 65535.0));
    info.clockBattery_mV = 3020;
    info.flags = auxSupplyOn;
    if (!state.isLoggingStopped)
        info.flags |= loggingRuns;
    if (state.hasVbatError)
        info.flags |= auxSupplyFault;
    info.uptime_s = quint32(vehicle.time_s);
    return info;
}

// Registered at home on LTE band 3, in changing reception.
QByteArray lteEntryAt(const Moment &moment)
{
    LteStatus status;
    status.registration = 1;
    status.networkKind = 7;
    status.signal = quint8(45 + moment.tick % 12);
    status.band = 0x1000;
    return lteEntry(status);
}

} // namespace

// The state is looked at each time and outlives the schedule.
void addStatusSources(const LoggerState &state, drive::Schedule &schedule,
                      const drive::Vehicle &vehicle)
{
    constexpr quint8 canDisabled = 1;
    constexpr quint8 sessionRunning = 18;
    constexpr quint8 noResponse = 0;
    schedule.every(period_us, 15'000, 0, [&state, &vehicle](const Moment &moment) {
        return systemInfoEntry(systemInfo(state, vehicle.at(moment.due_s())));
    });
    schedule.every(2 * period_us, 25'000, 0, lteEntryAt);
    for (quint8 i = 0; i < state.configuration.can.size(); ++i) {
        const TerminalCanCfg &can = state.configuration.can[i];
        if (!can.a2l.config.enabled)
            continue;
        const quint8 status = can.enabled ? sessionRunning : canDisabled;
        schedule.every(period_us, 35'000 + 200 * i, 0, [i, status](const Moment &) {
            return ccpXcpInfoEntry(i, status, noResponse);
        });
    }
}

} // namespace simulator
