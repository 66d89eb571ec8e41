#include "MDF4Conversion/rawlog/drive/drivemath.h"
#include "MDF4Conversion/rawlog/drive/schedule.h"
#include "MDF4Conversion/rawlog/drive/sources.h"
#include "MDF4Conversion/rawlog/drive/vehicle.h"
#include "MDF4Conversion/rawlog/entrybuilder.h"
#include "config/terminalstruct.h"

#include <cmath>
#include <vector>

namespace drive {
namespace {

using V = const VehicleState &;

struct Gauge
{
    double (*strain)(V); // um/m
    const char *ted;     // data sheet of the sensor, as stored in it
};

// The converters deliver 16 bits around the middle, half a um/m each.
constexpr double middle = 32768;
constexpr double perUnit = 2;
constexpr double roughness = 1.6; // um/m for each m/s

const std::vector<Gauge> axleGauges = {
    {[](V v) { return 210 - 38 * v.lateralAcceleration_mps2; },
     "#D405140001$LOCAT=Front axle left$PHYSU=um/m$SENEQ=0$SENSA=-16384.0$SENSB=0.5$STCHK=3A$$"},
    {[](V v) { return 205 + 38 * v.lateralAcceleration_mps2; },
     "#D405140002$LOCAT=Front axle right$PHYSU=um/m$SENEQ=0$SENSA=-16384.0$SENSB=0.5$STCHK=41$$"},
    {[](V v) { return 180 - 31 * v.lateralAcceleration_mps2; },
     "#D405140003$LOCAT=Rear  axle left$PHYSU=um/m$SENEQ=0$SENSA=-16384.0$SENSB=0.5$STCHK=2F$$"},
    // Without an equation the values stay as the converter gives them.
    {[](V v) { return 184 + 31 * v.lateralAcceleration_mps2; },
     "#D405140004$LOCAT=Rear axle right$PHYSU=digits$SENEQ=2$SENSA=1.5$SENSB=0.25$STCHK=77$$"}};

const std::vector<Gauge> towBarGauges = {
    {[](V v) { return 20 - 260 * v.acceleration_mps2; },
     "#D405140011$LOCAT=Tow bar$PHYSU=N$SENEQ=0$SENSA=-131072.0$SENSB=4.0$STCHK=0C$$"},
    // A new sensor without a place.
    {[](V v) { return 5 * v.speed_mps; },
     "#D405140012$PHYSU=um/m$SENEQ=0$SENSA=-16384.0$SENSB=0.5$STCHK=5D$$"}};

struct Port
{
    quint8 number;
    qint64 period_us;
    const std::vector<Gauge> &gauges;
};

QByteArray measuredEntry(const Port &port, const Moment &moment, V state)
{
    QVector<quint16> values;
    quint32 stream = 0x4434U << 8 | quint32(port.number) << 4;
    for (const Gauge &gauge : port.gauges) {
        const double road = roughness * state.speed_mps * noise(++stream, moment.tick);
        const double raw = middle + perUnit * (gauge.strain(state) + road);
        values += static_cast<quint16>(std::lround(qBound(0.0, raw, 65535.0)));
    }
    return rawlog::d4modEntry(moment.timestamp_us, port.number, values);
}

void addPort(TerminalStruct &configuration, Schedule &schedule, const Vehicle &vehicle,
             const Port &port)
{
    constexpr qint64 first_us = 2600;
    constexpr qint64 tedPeriod_us = 30'000'000;
    TerminalRs485Cfg &rs485 = configuration.rs485[port.number];
    rs485.supply_out = 1;
    rs485.d4mod.enabled = 1;
    rs485.d4mod.mode_value = qint32(1'000'000 / port.period_us);
    schedule.every(port.period_us, first_us, 50, [port, &vehicle](const Moment &moment) {
        return measuredEntry(port, moment, vehicle.at(moment.due_s()));
    });
    // Data sheets count from the first values on: only then the channels are known.
    quint8 channel = 0;
    for (const Gauge &gauge : port.gauges) {
        const QByteArray entry = rawlog::d4modTedEntry(port.number, channel, gauge.ted);
        ++channel;
        schedule.every(tedPeriod_us, first_us + 500 * channel, 0,
                       [entry](const Moment &) { return entry; });
    }
}

} // namespace

// Two RS485 ports with modules for strain gauges.
void addStrainGauges(TerminalStruct &configuration, Schedule &schedule, const Vehicle &vehicle)
{
    addPort(configuration, schedule, vehicle, {0, 5'000, axleGauges});
    addPort(configuration, schedule, vehicle, {3, 10'000, towBarGauges});
}

} // namespace drive
