#include "MDF4Conversion/rawlog/drive/drivemath.h"
#include "MDF4Conversion/rawlog/drive/schedule.h"
#include "MDF4Conversion/rawlog/drive/sources.h"
#include "MDF4Conversion/rawlog/drive/vehicle.h"
#include "MDF4Conversion/rawlog/entrybuilder.h"
#include "config/terminalstruct.h"

#include <cmath>

namespace drive {
namespace {

constexpr double gravity_mps2 = 9.80665;
constexpr double perUnit = 1e6; // of the entry's words
constexpr quint32 noiseStream = 0x41474D;

qint32 micro(double value)
{
    return static_cast<qint32>(std::lround(value * perUnit));
}

double shake(const Moment &moment, quint32 axis, double amount)
{
    return amount * noise(noiseStream + axis, moment.tick);
}

rawlog::AgmSample sampleAt(const VehicleState &state, const Moment &moment)
{
    // The road shakes the block the more, the faster the vehicle is.
    const double road_g = 0.004 + 0.0015 * state.speed_mps;
    const double rates_degps = 0.05 + 0.04 * state.speed_mps;
    const double ahead_g = state.acceleration_mps2 / gravity_mps2;
    const double left_g = state.lateralAcceleration_mps2 / gravity_mps2;
    rawlog::AgmSample sample;
    sample.accel[0] = micro(ahead_g + state.slope + shake(moment, 0, road_g / 2));
    sample.accel[1] = micro(left_g + shake(moment, 1, road_g / 2));
    sample.accel[2] = micro(1 + shake(moment, 2, road_g));
    sample.gyro[0] = micro(-0.6 * left_g + shake(moment, 3, rates_degps));
    sample.gyro[1] = micro(-0.4 * ahead_g + shake(moment, 4, rates_degps));
    sample.gyro[2] = micro(state.yawRate_degps + shake(moment, 5, rates_degps / 3));
    sample.temperature = static_cast<qint8>(33 + int(state.time_s / (state.time_s + 300) * 12));
    return sample;
}

} // namespace

void recordAgm(Schedule &schedule, const Vehicle &vehicle, qint64 period_us)
{
    constexpr quint8 processor = 0;
    schedule.every(period_us, 900, 60, [&vehicle](const Moment &moment) {
        const rawlog::AgmSample sample = sampleAt(vehicle.at(moment.due_s()), moment);
        return rawlog::agmEntry(moment.timestamp_us, processor, sample);
    });
}

void addAgm(TerminalStruct &configuration, Schedule &schedule, const Vehicle &vehicle)
{
    constexpr quint8 rate1000Hz = 0;
    constexpr quint16 scale4g = 1;
    configuration.agm.enabled = 1;
    configuration.agm.rate = rate1000Hz;
    configuration.agm.acc_scale = scale4g;
    recordAgm(schedule, vehicle, 1000);
}

} // namespace drive
