#include "MDF4Conversion/rawlog/drive/canecu.h"
#include "MDF4Conversion/rawlog/drive/compumethods.h"
#include "MDF4Conversion/rawlog/drive/schedule.h"
#include "MDF4Conversion/rawlog/drive/sources.h"
#include "a2l/records/a2lconstants.h"
#include "config/terminalstruct.h"

#include <cmath>

namespace drive {
namespace {

using V = const VehicleState &;
namespace Type = A2lDataType;
namespace Operation = A2lBitOperation;

constexpr quint8 channel = 3;
constexpr quint32 commandId = 0x6F0;
constexpr quint32 dataId = 0x6F1;

const std::vector<NumberPair> coolantSensor = {{130, 130}, {260, 105}, {410, 90}, {690, 70},
                                               {1120, 50}, {1800, 30}, {2900, 5}, {3800, -25}};

// The state word in the ECU's memory:
// bit 0 running, bits 2 to 3 fan stage, bits 4 to 7 gear, bit 8 brake pedal pressed.
double stateWord(V v)
{
    const int fan = v.coolant_degC > 80 ? 2 : v.coolant_degC > 60 ? 1 : 0;
    return 1 | fan << 2 | v.gear << 4 | (v.braking() ? 1 : 0) << 8;
}

double drivingState(V v)
{
    return v.standing() ? 0 : v.braking() ? 3 : v.engineTorque_Nm < 0 ? 2 : 1;
}

double airFlow_kgph(V v)
{
    return 9 + v.engineSpeed_rpm * (40 + std::max(0.0, v.engineTorque_Nm)) * 0.0006;
}

std::vector<EcuValue> fastValues(StreamingClass_A2L_Module &m)
{
    const auto rpm = [](V v) { return v.engineSpeed_rpm * 4; };
    const auto torque = [](V v) { return v.engineTorque_Nm * 10; };
    const auto clock = [](V v) { return std::floor(v.time_s * 1000); };
    const auto pedal = [](V v) { return 255 - std::floor(v.throttle_percent * 2.55); };
    const auto lambda = [](V v) { return v.braking() ? 1.9 : 1 - v.throttle_percent * 0.0012; };
    const auto airFlow = [](V v) { return airFlow_kgph(v) * 40; };
    const auto exhaust = [](V v) { return (420 + v.throttle_percent * 3 + 273.1) * 10; };
    const auto angle = [](V v) { return 24 - v.engineTorque_Nm / 12; };
    const QString state = addVerbalTable(m, "OffOn", {{0, "off"}, {1, "on"}});
    const QString pedalState =
        addVerbalTable(m, "PedalState", {{65534, "pressed"}, {65535, "released"}});
    return {
        ecuValue({"EngineSpeed", Type::UWord, 0x40001000, {0, 8000}},
                 addLinear(m, "Speed", "1/min", 0.25, 0), rpm),
        ecuValue({"IndicatedTorque", Type::SWord, 0x40001002, {-500, 1000}},
                 addLinear(m, "Torque", "Nm", 0.1, 0), torque),
        ecuValue({"RunTime", Type::ULong, 0x40001004, {0, 4294967295.0}}, addIdentical(m, "ms"),
                 clock),
        // The potentiometer is read against its supply.
        ecuValue({"PedalPosition", Type::UByte, 0x40001008, {0, 100}, 0xFF, Operation::Invert},
                 addLinear(m, "Percent", "%", 100.0 / 255, 0), pedal),
        ecuValue({"Lambda", Type::Float32, 0x4000100C, {0, 4}}, addIdentical(m, "1"), lambda),
        ecuValue({"AirMassFlow", Type::UWord, 0x40001010, {0, 1600}},
                 addRational(m, "AirFlow", "kg/h", {0, 40, 0, 0, 0, 1}), airFlow),
        ecuValue({"ExhaustTemperature", Type::UWord, 0x40001012, {-273.1, 1200}},
                 addFormula(m, "Kelvin10", "°C", "X1*0.1-273.1"), exhaust),
        ecuValue({"IgnitionAngle", Type::SByte, 0x40001014, {-64, 63.5}},
                 addLinear(m, "HalfDegree", "°CA", 0.5, 0), angle),
        ecuValue({"EngineRunning", Type::UWord, 0x40001016, {0, 1}, 0x0001}, state, stateWord),
        ecuValue({"FanStage", Type::UWord, 0x40001016, {0, 3}, 0x000C, Operation::RightShift, 2},
                 addIdentical(m, "stage"), stateWord),
        ecuValue({"GearRatio", Type::UWord, 0x40001016, {0, 5}, 0x00F0, Operation::RightShift, 4},
                 addTable(m, "Ratio", "",
                          {{1, 4.71}, {2, 2.71}, {3, 1.81}, {4, 1.39}, {5, 1.13}, {6, 0.94}},
                          TableSteps::Held),
                 stateWord),
        ecuValue({"BrakePedal",
                  Type::UWord,
                  0x40001016,
                  {65534, 65535},
                  0x0100,
                  Operation::RightShiftAndInvert,
                  8},
                 pedalState, stateWord)};
}

std::vector<EcuValue> slowValues(StreamingClass_A2L_Module &m)
{
    constexpr int slowList = 1;
    const auto coolant = [](V v) { return rawInFallingTable(coolantSensor, v.coolant_degC); };
    const auto oil = [](V v) { return v.oil_degC; };
    const auto battery = [](V v) { return v.battery_V * 12.5; };
    const auto fuel = [](V v) { return v.distance_m * 0.064; };
    const auto intake = [](V v) { return v.intake_degC * 16; };
    std::vector<EcuValue> values = {
        ecuValue({"CoolantTemperature", Type::UWord, 0x40002000, {-25, 130}},
                 addTable(m, "CoolantSensor", "°C", coolantSensor, TableSteps::Interpolated),
                 coolant),
        ecuValue({"OilTemperature", Type::SByte, 0x40002002, {-128, 127}}, addIdentical(m, "°C"),
                 oil),
        ecuValue({"BatteryVoltage", Type::UByte, 0x40002003, {0, 20.4}},
                 addLinear(m, "Battery", "V", 0.08, 0), battery),
        ecuValue({"FuelUsed", Type::ULong, 0x40002004, {0, 4294967.295}},
                 addFormula(m, "Milli", "l", "X1/1000"), fuel),
        ecuValue({"DrivingState", Type::UByte, 0x40002008, {0, 3}},
                 addVerbalTable(m, "DrivingState",
                                {{0, "standing"}, {1, "pulling"}, {2, "coasting"}, {3, "braking"}}),
                 drivingState),
        ecuValue({"IntakeTemperature", Type::SWord, 0x4000200A, {-2048, 2047}},
                 addLinear(m, "Sixteenth", "°C", 0.0625, 0), intake)};
    for (EcuValue &value : values)
        value.list = slowList;
    return values;
}

void describeTransport(StreamingClass_A2L_Module &module)
{
    module.a2l_file_name = QStringLiteral("engine_ecu.a2l");
    module.config.enabled = 1;
    module.config.active_interface = ACTIVE_A2L_IF_CCP_XCP_O_CAN;
    StreamingClass_A2L_CFG &cfg = module.config.cfg;
    cfg.protocol_version = 0x0201;
    cfg.blob_version = 0x0204;
    cfg.can_id_send = commandId;
    cfg.can_id_recv = dataId;
    cfg.station_address = 0x39;
    cfg.byte_order = 1;
    cfg.baudrate = 500'000;
    cfg.sample_point = 75;
    cfg.sample_rate = 1;
    cfg.btl_cycles = 16;
    cfg.sjw = 1;
    cfg.consistency_flags = 2;
}

} // namespace

// CCP on CAN with 11-bit identifiers; most significant byte first, values split to fill the ODTs.
void addEngineEcu(TerminalStruct &configuration, Schedule &schedule, const Vehicle &vehicle)
{
    describeTransport(configuration.can[channel].a2l);
    CanEcu ecu;
    ecu.channel = channel;
    ecu.dataId = dataId;
    ecu.byteOrders = {A2lByteOrder::MsbFirst, A2lByteOrder::BigEndian};
    ecu.rasters = {{QStringLiteral("10ms"), 1, 10}, {QStringLiteral("100ms"), 2, 100}};
    ecu.splitting = Splitting::ToFill;
    ecu.numbering = PidNumbering::PerList;
    addCanEcu(ecu, fastValues, slowValues, configuration, schedule, vehicle);
}

} // namespace drive
