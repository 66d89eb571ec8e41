#include "MDF4Conversion/rawlog/drive/drivemath.h"
#include "MDF4Conversion/rawlog/drive/framebits.h"
#include "MDF4Conversion/rawlog/drive/schedule.h"
#include "MDF4Conversion/rawlog/drive/sources.h"
#include "MDF4Conversion/rawlog/drive/vehicle.h"
#include "MDF4Conversion/rawlog/entrybuilder.h"
#include "config/terminalstruct.h"
#include "simulator/d4modmodules.h"
#include "simulator/livesources.h"
#include "simulator/livestatusentries.h"
#include "simulator/plausiblevalues.h"

#include <cmath>
#include <cstring>

namespace simulator {
namespace {

using drive::Moment;
using drive::Schedule;
using drive::Vehicle;

constexpr qint64 fastestPeriod_us = 1000; // of the simulated modules
constexpr qint64 second_us = 1'000'000;

// Frame mode has its own rate; the faster modes are thinned to the simulator's fastest.
qint64 d4modPeriod_us(const TerminalD4ModCfg &d4mod)
{
    constexpr quint8 frameMode = 1;
    if (d4mod.mode != frameMode || d4mod.mode_value <= 0)
        return fastestPeriod_us;
    return qMax(fastestPeriod_us, second_us / d4mod.mode_value);
}

QVector<quint16> strains(int channels, const Moment &moment, const drive::VehicleState &state)
{
    constexpr double middle = 32768;
    constexpr double perUnit = 2; // of um/m
    QVector<quint16> values;
    for (int i = 0; i < channels; ++i) {
        const double side = i % 2 == 0 ? -1 : 1;
        const double load =
            200 + side * 38 * state.lateralAcceleration_mps2 - 30 * state.acceleration_mps2;
        const double road = 1.6 * state.speed_mps * drive::noise(quint32(i), moment.tick);
        values += quint16(qBound(0.0, middle + perUnit * (load + road), 65535.0));
    }
    return values;
}

void addD4ModPort(quint8 port, const TerminalD4ModCfg &d4mod, int channels, Schedule &schedule,
                  const Vehicle &vehicle)
{
    constexpr qint64 tedPeriod_us = 5 * second_us;
    schedule.every(d4modPeriod_us(d4mod), 2600, 50, [port, channels, &vehicle](const Moment &m) {
        const auto values = strains(channels, m, vehicle.at(m.due_s()));
        return rawlog::d4modEntry(m.timestamp_us, port, values);
    });
    for (int channel = 0; channel < channels; ++channel) {
        const QByteArray entry =
            rawlog::d4modTedEntry(port, quint8(channel), d4modTed(port, channel));
        schedule.every(tedPeriod_us, 20'000 + 500 * channel, 0,
                       [entry](const Moment &) { return entry; });
    }
    schedule.every(second_us, 30'000, 0, [port, channels](const Moment &moment) {
        QVector<quint16> voltages;
        for (int i = 0; i < channels; ++i)
            voltages += quint16(4980 + 7 * i + int(moment.tick % 3));
        return d4modInfoEntry(port, voltages);
    });
}

// CANopen data types that are no integers (CiA 301).
enum DataType : quint8 { Real32 = 8, Real64 = 17 };

struct ImageValue
{
    int startBit;
    int bits;
    quint8 type;
    double multiplier;
    ValueOverTime physical;
};

constexpr int maxImageBytes = 1024;

ImageValue imageValue(const EtherCatSignal &signal, quint32 seed)
{
    constexpr double largest = 1e9;
    constexpr double smallest = 1e-9;
    const double size = std::abs(signal.multiplier);
    const bool isUsable = std::isfinite(size) && size >= smallest && size <= largest;
    const double multiplier = isUsable ? signal.multiplier : 1;
    const double highest = std::ldexp(1.0, qMin(int(signal.bit_length), 31) - 1);
    return {signal.start_bit, signal.bit_length, signal.data_type, multiplier,
            plausibleValue(signal.unit, 0, highest * std::abs(multiplier), seed)};
}

quint64 imageBits(const ImageValue &value, const drive::VehicleState &state)
{
    const double raw = value.physical(state) / value.multiplier;
    quint64 bits = 0;
    if (value.type == Real32) {
        const auto single = float(raw);
        quint32 word = 0;
        std::memcpy(&word, &single, sizeof word);
        bits = word;
    } else if (value.type == Real64) {
        std::memcpy(&bits, &raw, sizeof bits);
    } else {
        bits = quint64(qint64(std::llround(raw)));
    }
    return bits;
}

void addImage(quint8 master, const TerminalEtherCatCfg &cfg, qint64 period_us, Schedule &schedule,
              const Vehicle &vehicle)
{
    constexpr int leastBytes = 8;
    std::vector<ImageValue> values;
    int imageBytes = leastBytes;
    for (const EtherCatSlave *slave : cfg.slaves) {
        for (const EtherCatSignal *signal : slave->slave_signals) {
            const int end = signal->start_bit + signal->bit_length;
            const bool fits =
                signal->bit_length >= 1 && signal->bit_length <= 64 && end <= maxImageBytes * 8;
            if (!fits)
                continue;
            imageBytes = qMax(imageBytes, (end + 7) / 8);
            values.push_back(imageValue(*signal, quint32(values.size())));
        }
    }
    schedule.every(period_us, 3300, 40, [=, &vehicle](const Moment &moment) {
        const drive::VehicleState state = vehicle.at(moment.due_s());
        QByteArray image(imageBytes, '\0');
        for (const ImageValue &value : values)
            drive::putBits(image, value.startBit, value.bits, drive::BitOrder::Intel,
                           imageBits(value, state));
        return rawlog::etherCatEntry(moment.timestamp_us, master, image);
    });
}

void addMaster(quint8 number, const TerminalEtherCatCfg &cfg, Schedule &schedule,
               const Vehicle &vehicle)
{
    constexpr quint8 operational = 2;
    TerminalStruct described;
    Schedule unused;
    drive::addEtherCat(described, unused, vehicle);
    if (number == 0 && record::equal(described.ethercat[0], cfg)) {
        drive::addEtherCat(described, schedule, vehicle);
    } else {
        const qint64 rate_Hz = qBound(1, int(cfg.sample_rate), 1000);
        addImage(number, cfg, second_us / rate_Hz, schedule, vehicle);
    }
    const auto slaves = quint16(qMin(cfg.slaves.size(), 80));
    schedule.every(second_us / 2, 40'000, 0, [number, slaves](const Moment &) {
        return etherCatInfoEntry(number, operational, quint16(3 * slaves));
    });
}

} // namespace

// Every port tells about its bus, whether modules answer there or not.
void addD4ModSources(const TerminalStruct &configuration, Schedule &schedule,
                     const Vehicle &vehicle)
{
    constexpr quint8 inactive = 0;
    constexpr quint8 sessionRunning = 8;
    for (quint8 port = 0; port < configuration.rs485.size(); ++port) {
        const TerminalRs485Cfg &rs485 = configuration.rs485[port];
        const int channels = d4modChannelCount(configuration, port);
        const quint8 status = channels > 0 ? sessionRunning : inactive;
        const quint16 voltage_mV = rs485.supply_out ? rs485.voltage : quint16(0);
        schedule.every(second_us / 2, 10'000 + 300 * port, 0, [=](const Moment &moment) {
            const auto ripple = quint16(voltage_mV > 0 ? moment.tick % 5 : 0);
            return rs485InfoEntry(port, status, quint16(voltage_mV + ripple));
        });
        if (channels > 0)
            addD4ModPort(port, rs485.d4mod, channels, schedule, vehicle);
    }
}

void addEtherCatSources(const TerminalStruct &configuration, Schedule &schedule,
                        const Vehicle &vehicle)
{
    for (quint8 i = 0; i < configuration.ethercat.size(); ++i) {
        if (configuration.ethercat[i].enabled)
            addMaster(i, configuration.ethercat[i], schedule, vehicle);
    }
}

} // namespace simulator
