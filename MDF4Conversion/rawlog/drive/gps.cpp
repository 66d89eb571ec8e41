#include "MDF4Conversion/rawlog/drive/drivestart.h"
#include "MDF4Conversion/rawlog/drive/schedule.h"
#include "MDF4Conversion/rawlog/drive/sources.h"
#include "MDF4Conversion/rawlog/drive/vehicle.h"
#include "MDF4Conversion/rawlog/entrybuilder.h"
#include "config/terminalstruct.h"

#include <cmath>

namespace drive {
namespace {

constexpr qint64 period_us = 100'000;

rawlog::GpsFix fixAt(const Vehicle &vehicle, double time_s)
{
    const VehicleState state = vehicle.at(time_s);
    const Position position = vehicle.positionAt(time_s);
    rawlog::GpsFix fix;
    fix.utc = driveStart().addMSecs(qint64(time_s * 1000));
    fix.course_deg = (state.heading_turns - std::floor(state.heading_turns)) * 360;
    fix.speed_kmh = state.speed_kmh();
    fix.latitude_deg = position.latitude_deg;
    fix.longitude_deg = position.longitude_deg;
    fix.altitude_m = position.altitude_m;
    return fix;
}

} // namespace

// The receiver has its first fix after two seconds.
void addGps(TerminalStruct &configuration, Schedule &schedule, const Vehicle &vehicle)
{
    constexpr double firstFix_s = 2;
    configuration.gps.gps_enabled = 1;
    schedule.every(period_us, 40'000, 300, [&vehicle](const Moment &moment) {
        rawlog::GpsFix fix = fixAt(vehicle, moment.due_s());
        fix.valid = moment.due_s() >= firstFix_s;
        return rawlog::gpsEntry(moment.timestamp_us, fix);
    });
}

} // namespace drive
