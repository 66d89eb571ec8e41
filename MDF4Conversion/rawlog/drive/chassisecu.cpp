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

constexpr quint8 channel = 4;
constexpr quint32 extendedFlag = 0x80000000; // of an identifier in the A2L records
constexpr quint32 commandId = 0x18DA28F1;
constexpr quint32 dataId = 0x18DAF128;

const std::vector<NumberPair> padSensor = {{200, 620}, {900, 340}, {2100, 160}, {3900, 20}};

double padTemperature_degC(V v)
{
    return v.ambient_degC + 40 + v.speed_mps * 2 + v.brakePressure_bar * 2.2;
}

// Bit 0 stability control at work, bit 1 hold at standstill.
double controlByte(V v)
{
    const int active = std::abs(v.lateralAcceleration_mps2) > 2.5 ? 1 : 0;
    return active | (v.standing() ? 2 : 0);
}

// The converter delivers 14 bits, counted down from full scale: ~(x << 2) is left-aligned.
double brakeWord(V v)
{
    const double aligned = v.brakePressure_bar * 200;
    return std::floor((65535 - aligned) / 4);
}

std::vector<EcuValue> fastValues(StreamingClass_A2L_Module &m)
{
    const auto speed = [](V v) { return v.speed_mps; };
    const auto ahead = [](V v) { return v.acceleration_mps2 * 1000; };
    const auto lateral = [](V v) { return v.lateralAcceleration_mps2 * 1000; };
    const auto yaw = [](V v) { return v.yawRate_degps * 10'000; };
    const auto pulses = [](V v) { return std::floor(v.distance_m * 24); };
    const auto steering = [](V v) { return v.yawRate_degps / (v.speed_mps + 1) * 420; };
    const QString acceleration = addLinear(m, "Acceleration", "m/s²", 0.001, 0);
    return {ecuValue({"VehicleSpeed", Type::Float32, 0x80001000, {0, 100}}, addIdentical(m, "m/s"),
                     speed),
            ecuValue({"LongitudinalAcceleration", Type::SWord, 0x80001004, {-32, 32}}, acceleration,
                     ahead),
            ecuValue({"LateralAcceleration", Type::SWord, 0x80001006, {-32, 32}}, acceleration,
                     lateral),
            ecuValue({"YawRate", Type::SLong, 0x80001008, {-400, 400}},
                     addLinear(m, "Rate", "°/s", 0.0001, 0), yaw),
            ecuValue({"WheelPulses", Type::ULong, 0x8000100C, {0, 4294967295.0}},
                     addIdentical(m, "pulses"), pulses),
            ecuValue({"SteeringAngle", Type::SWord, 0x80001010, {-780, 780}},
                     addFormula(m, "Tenth", "°", "X1/10"), steering),
            ecuValue({"BrakePressure",
                      Type::UWord,
                      0x80001012,
                      {0, 327},
                      0x3FFF,
                      Operation::LeftShiftAndInvert,
                      2},
                     addLinear(m, "Pressure", "bar", 0.005, 0), brakeWord)};
}

std::vector<EcuValue> slowValues(StreamingClass_A2L_Module &m)
{
    constexpr int slowList = 1;
    const auto pad = [](V v) { return rawInFallingTable(padSensor, padTemperature_degC(v)); };
    const auto level = [](V v) { return 2048 + v.acceleration_mps2 * 60; };
    const auto damper = [](V v) { return v.speed_kmh() < 30 ? 0 : v.speed_kmh() < 70 ? 1 : 2; };
    // An inductive sensor: the farther the disc, the weaker the field.
    const auto gap = [](V v) {
        const double gap_mm = 2 + 0.02 * v.brakePressure_bar;
        return 90'000 / (gap_mm * gap_mm + 1);
    };
    const QString offOn = addVerbalTable(m, "OffOn", {{0, "off"}, {1, "on"}});
    std::vector<EcuValue> values = {
        ecuValue({"PadTemperature", Type::UWord, 0x80002000, {20, 620}},
                 addTable(m, "PadSensor", "°C", padSensor, TableSteps::Interpolated), pad),
        // Twelve bits, aligned to the left.
        ecuValue({"FrontLevel",
                  Type::UWord,
                  0x80002002,
                  {-65.536, 65.535},
                  0x0FFF,
                  Operation::LeftShift,
                  4},
                 addLinear(m, "Level", "mm", 0.002, -65.536), level),
        ecuValue({"DiscGap", Type::UWord, 0x80002004, {0, 100}},
                 addRational(m, "Gap", "mm", {0, 0, 90'000, 1, 0, 1}), gap),
        ecuValue({"DamperCurrent", Type::UByte, 0x80002006, {0, 2}},
                 addTable(m, "Damper", "A", {{0, 0.3}, {1, 0.85}, {2, 1.6}}, TableSteps::Held),
                 damper),
        ecuValue({"StabilityControl", Type::UByte, 0x80002007, {0, 1}, 0x01}, offOn, controlByte),
        ecuValue({"HoldAssist", Type::UByte, 0x80002007, {0, 1}, 0x02, Operation::RightShift, 1},
                 offOn, controlByte)};
    for (EcuValue &value : values)
        value.list = slowList;
    return values;
}

void describeTransport(StreamingClass_A2L_Module &module)
{
    module.a2l_file_name = QStringLiteral("chassis_ecu.a2l");
    module.config.enabled = 1;
    module.config.active_interface = ACTIVE_A2L_IF_CCP_XCP_O_CAN;
    StreamingClass_A2L_CFG &cfg = module.config.cfg;
    cfg.protocol_version = 0x0100;
    cfg.version_text = QStringLiteral("1.0");
    cfg.can_id_send = commandId | extendedFlag;
    cfg.can_id_recv = dataId | extendedFlag;
    cfg.baudrate = 500'000;
    cfg.sample_point = 75;
    cfg.sample_rate = 1;
    cfg.btl_cycles = 16;
    cfg.sjw = 1;
    cfg.consistency_flags = 10;
}

} // namespace

// XCP on CAN with 29-bit identifiers; least significant byte first, every value in single bytes.
void addChassisEcu(TerminalStruct &configuration, Schedule &schedule, const Vehicle &vehicle)
{
    describeTransport(configuration.can[channel].a2l);
    CanEcu ecu;
    ecu.channel = channel;
    ecu.dataId = dataId;
    ecu.extended = true;
    ecu.byteOrders = {A2lByteOrder::LittleEndian, A2lByteOrder::MsbLast};
    ecu.rasters = {{QStringLiteral("10ms"), 0, 10}, {QStringLiteral("50ms"), 1, 50}};
    ecu.splitting = Splitting::Always;
    ecu.numbering = PidNumbering::Running;
    addCanEcu(ecu, fastValues, slowValues, configuration, schedule, vehicle);
}

} // namespace drive
