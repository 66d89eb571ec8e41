#include "MDF4Conversion/rawlog/drive/drivemath.h"
#include "MDF4Conversion/rawlog/drive/framebits.h"
#include "MDF4Conversion/rawlog/drive/schedule.h"
#include "MDF4Conversion/rawlog/drive/sources.h"
#include "MDF4Conversion/rawlog/drive/vehicle.h"
#include "MDF4Conversion/rawlog/entrybuilder.h"
#include "config/terminalstruct.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

namespace drive {
namespace {

using V = const VehicleState &;

constexpr quint8 bus = 0;
constexpr int imageBytes = 40;

// CANopen data types (CiA 301), and those of single bits, which name the bit of their byte.
enum DataType : quint8 {
    Boolean = 1,
    Integer8 = 2,
    Integer16 = 3,
    Integer32 = 4,
    Unsigned8 = 5,
    Unsigned16 = 6,
    Unsigned32 = 7,
    Real32 = 8,
    OctetString = 10,
    Real64 = 17,
    Bit1 = 0x30,
    Bit8 = 0x37
};

struct Variable
{
    const char *name;
    const char *unit;
    quint8 type;
    int startBit; // in the process image of the bus
    int bits;
    double multiplier; // of the raw value
    double (*physical)(V);
};

double boxTemperature(V v)
{
    return v.ambient_degC + 14;
}

const std::vector<Variable> analogueVariables = {
    {"Force front", "N", Integer16, 0, 16, 0.5,
     [](V v) { return 3900 - 300 * v.acceleration_mps2; }},
    {"Force rear", "N", Integer16, 16, 16, 0.5,
     [](V v) { return 3600 + 300 * v.acceleration_mps2; }},
    {"Trim", "°", Integer8, 32, 8, 0.1, [](V v) { return -1.2 * v.acceleration_mps2; }},
    {"Status", "", Unsigned8, 40, 8, 1, [](V v) { return v.standing() ? 1.0 : 3.0; }},
    {"Supply", "mV", Unsigned16, 48, 16, 1, [](V v) { return v.battery_V * 1000; }},
    {"Position", "mm", Integer32, 64, 32, 0.001, [](V v) { return -40 * v.slope * 100; }},
    {"Revolutions", "", Unsigned32, 96, 32, 0.01, [](V v) { return v.distance_m / 2.01; }},
    {"Box temperature", "°C", Real32, 128, 32, 1, boxTemperature},
    {"Distance", "m", Real64, 160, 64, 1, [](V v) { return v.distance_m; }}};

const std::vector<Variable> digitalVariables = {
    {"Moving", "", Boolean, 224, 1, 1, [](V v) { return v.standing() ? 0.0 : 1.0; }},
    {"Brake light", "", Boolean, 229, 1, 1, [](V v) { return v.braking() ? 1.0 : 0.0; }},
    {"Bend left", "", Bit1, 232, 1, 1, [](V v) { return v.yawRate_degps > 1 ? 1.0 : 0.0; }},
    {"Bend right", "", Bit8, 232, 1, 1, [](V v) { return v.yawRate_degps < -1 ? 1.0 : 0.0; }},
    {"Marker", "", OctetString, 240, 24, 1, [](V v) { return std::floor(v.time_s); }}};

quint64 rawBits(const Variable &variable, V state)
{
    const double raw = variable.physical(state) / variable.multiplier;
    quint64 bits = 0;
    if (variable.type == Real32) {
        const auto single = static_cast<float>(raw);
        quint32 word = 0;
        std::memcpy(&word, &single, sizeof word);
        bits = word;
    } else if (variable.type == Real64) {
        std::memcpy(&bits, &raw, sizeof bits);
    } else {
        bits = static_cast<quint64>(std::llround(raw));
    }
    return bits;
}

// A bit of type Bit1 + n is bit n of the byte at its start.
int bitPosition(const Variable &variable)
{
    const bool namedBit = variable.type >= Bit1 && variable.type <= Bit8;
    return namedBit ? variable.startBit + variable.type - Bit1 : variable.startBit;
}

void putVariables(QByteArray &image, const std::vector<Variable> &variables, V state)
{
    for (const Variable &variable : variables)
        putBits(image, bitPosition(variable), variable.bits, BitOrder::Intel,
                rawBits(variable, state));
}

void describeSlave(TerminalEtherCatCfg &master, const QString &name, quint32 id,
                   const std::vector<Variable> &variables)
{
    EtherCatSlave &slave = master.slaves.add();
    slave.slave_number = static_cast<quint16>(master.slaves.size());
    slave.name = name;
    slave.manufacturer = 0x5A44;
    slave.id = id;
    slave.revision = 0x00100000;
    for (const Variable &variable : variables) {
        EtherCatSignal &signal = slave.slave_signals.add();
        signal.name = QString::fromUtf8(variable.name);
        signal.unit = QString::fromUtf8(variable.unit);
        signal.start_bit = static_cast<quint16>(variable.startBit);
        signal.bit_length = static_cast<quint16>(variable.bits);
        signal.data_type = variable.type;
        signal.multiplier = variable.multiplier;
        signal.mdf4_flags = 1;
    }
}

} // namespace

// One master with an analogue and a digital slave.
void addEtherCat(TerminalStruct &configuration, Schedule &schedule, const Vehicle &vehicle)
{
    constexpr quint16 rate_Hz = 200;
    TerminalEtherCatCfg &master = configuration.ethercat[bus];
    master.enabled = 1;
    master.sample_rate = rate_Hz;
    describeSlave(master, QStringLiteral("Analogue inputs"), 0x0C1E, analogueVariables);
    describeSlave(master, QStringLiteral("Digital inputs"), 0x03F2, digitalVariables);
    schedule.every(1'000'000 / rate_Hz, 3300, 40, [&vehicle](const Moment &moment) {
        const VehicleState state = vehicle.at(moment.due_s());
        QByteArray image(imageBytes, '\0');
        putVariables(image, analogueVariables, state);
        putVariables(image, digitalVariables, state);
        return rawlog::etherCatEntry(moment.timestamp_us, bus, image);
    });
}

} // namespace drive
