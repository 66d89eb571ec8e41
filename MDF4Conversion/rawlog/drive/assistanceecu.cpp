#include "MDF4Conversion/rawlog/drive/compumethods.h"
#include "MDF4Conversion/rawlog/drive/drivemath.h"
#include "MDF4Conversion/rawlog/drive/ecu.h"
#include "MDF4Conversion/rawlog/drive/schedule.h"
#include "MDF4Conversion/rawlog/drive/sources.h"
#include "MDF4Conversion/rawlog/entrybuilder.h"
#include "a2l/records/a2lconstants.h"
#include "config/terminalstruct.h"

#include <cmath>

namespace drive {
namespace {

using V = const VehicleState &;
namespace Type = A2lDataType;
namespace Operation = A2lBitOperation;

const std::vector<NumberPair> boardSensor = {
    {300, 120}, {700, 85}, {1500, 50}, {2800, 20}, {3900, -40}};

double distanceAhead_m(V v)
{
    return 9 + v.speed_mps * 1.5 + 3 * sineOfTurns(v.time_s / 21);
}

// Bit 7 lane found, bits 4 to 5 lanes to the right, bits 0 to 1 warning level.
double laneByte(V v)
{
    const int found = v.speed_mps > 5 ? 0x80 : 0;
    const int lanes = v.speed_kmh() > 70 ? 2 : 1;
    const int warning = distanceAhead_m(v) < v.speed_mps * 1.42 + 9 ? 1 : 0;
    return found | lanes << 4 | warning;
}

std::vector<EcuValue> fastValues(StreamingClass_A2L_Module &m)
{
    const auto ahead = [](V v) { return distanceAhead_m(v); };
    const auto curvature = [](V v) {
        return v.speed_mps < 1 ? 0 : v.yawRate_degps / v.speed_mps / 57.3;
    };
    const auto lane = [](V v) { return 0.2 * sineOfTurns(v.time_s / 9); };
    const auto echo = [](V v) {
        const double d = distanceAhead_m(v);
        return 4'000'000 / (d * d + 100);
    };
    const auto brightness = [](V v) { return 1200 + 500 * sineOfTurns(v.distance_m / 700); };
    const auto distance = [](V v) { return v.distance_m * 1000; };
    const QString metres = addIdentical(m, "m");
    return {ecuValue({"DistanceAhead", Type::Float32, 0x20001000, {0, 250}}, metres, ahead),
            ecuValue({"LaneCurvature", Type::Float32, 0x20001004, {-0.2, 0.2}},
                     addIdentical(m, "1/m"), curvature),
            ecuValue({"LaneOffset", Type::Float32, 0x20001008, {-2, 2}}, metres, lane),
            ecuValue({"EchoStrength", Type::UWord, 0x2000100C, {0, 250}},
                     addRational(m, "Echo", "m", {0, 0, 4'000'000, 1, 0, 100}), echo),
            ecuValue({"Brightness", Type::UWord, 0x2000100E, {0, 65535}}, addIdentical(m, "lx"),
                     brightness),
            ecuValue({"TravelledDistance", Type::SLong, 0x20001010, {-2147483.0, 2147483.0}},
                     addLinear(m, "Millimetre", "m", 0.001, 0), distance)};
}

std::vector<EcuValue> slowValues(StreamingClass_A2L_Module &m)
{
    constexpr int slowList = 1;
    const auto board = [](V v) { return rawInFallingTable(boardSensor, v.ambient_degC + 22); };
    const auto load = [](V v) { return 96 + v.speed_mps * 2; };
    std::vector<EcuValue> values = {
        ecuValue({"BoardTemperature", Type::UWord, 0x20002000, {-40, 120}},
                 addTable(m, "BoardSensor", "°C", boardSensor, TableSteps::Interpolated), board),
        ecuValue({"ProcessorLoad", Type::UByte, 0x20002002, {0, 100}},
                 addFormula(m, "Load", "%", "100*X1/255"), load),
        ecuValue({"LaneFound", Type::UByte, 0x20002003, {0, 1}, 0x80, Operation::RightShift, 7},
                 addVerbalTable(m, "NoYes", {{0, "no"}, {1, "yes"}}), laneByte),
        ecuValue(
            {"RoadWidth", Type::UByte, 0x20002003, {0, 20}, 0x30, Operation::RightShift, 4},
            addTable(m, "Width", "m", {{0, 2.8}, {1, 5.6}, {2, 10.5}, {3, 14}}, TableSteps::Held),
            laneByte),
        ecuValue(
            {"WarningLevel", Type::UByte, 0x20002003, {0, 3}, 0x03},
            addVerbalTable(m, "Warning", {{0, "none"}, {1, "early"}, {2, "late"}, {3, "brake"}}),
            laneByte)};
    for (EcuValue &value : values)
        value.list = slowList;
    return values;
}

void describeTransport(StreamingClass_Cfg_Ethernet &eth)
{
    constexpr quint8 xcpSelected = 1;
    eth.module_selection = xcpSelected;
    StreamingClass_A2L_Module &module = eth.xcp.module;
    module.a2l_file_name = QStringLiteral("assistance_ecu.a2l");
    module.config.enabled = 1;
    module.config.active_interface = ACTIVE_A2L_IF_XCP_O_UDP;
    StreamingClass_A2L_CFG &cfg = module.config.cfg;
    cfg.protocol_version = 0x0100;
    cfg.version_text = QStringLiteral("1.0");
    cfg.port = 5555;
    cfg.ip_address = QStringLiteral("192.168.10.20");
    cfg.consistency_flags = 10;
}

} // namespace

// XCP on UDP; floats and integers of both byte orders, no value split.
void addAssistanceEcu(TerminalStruct &configuration, Schedule &schedule, const Vehicle &vehicle)
{
    StreamingClass_A2L_Module &module = configuration.eth.xcp.module;
    describeTransport(configuration.eth);
    std::vector<EcuValue> values = fastValues(module);
    const std::vector<EcuValue> slow = slowValues(module);
    values.insert(values.end(), slow.begin(), slow.end());
    for (EcuValue &value : values) {
        const bool even = value.measurement.ecu_address % 8 == 0;
        value.measurement.byte_order = even ? A2lByteOrder::MsbFirst : A2lByteOrder::MsbLast;
    }
    const std::vector<EcuRaster> rasters = {{QStringLiteral("10ms"), 0, 10},
                                            {QStringLiteral("200ms"), 1, 200}};
    describeEcu(module, rasters, values, Splitting::Never, PidNumbering::Running);
    recordEcu(module, rasters, values, schedule, vehicle,
              [](const Moment &moment, const QByteArray &dto) {
                  return rawlog::ethXcpEntry(moment.timestamp_us, dto);
              });
}

} // namespace drive
