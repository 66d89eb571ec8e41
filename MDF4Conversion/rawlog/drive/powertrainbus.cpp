#include "MDF4Conversion/rawlog/drive/canbus.h"
#include "MDF4Conversion/rawlog/drive/schedule.h"
#include "MDF4Conversion/rawlog/drive/sources.h"
#include "config/terminalstruct.h"

namespace drive {
namespace {

using V = const VehicleState &;

constexpr auto motorola = BitOrder::Motorola;
constexpr auto intel = BitOrder::Intel;
constexpr auto isSigned = Sign::Signed;

CanMessage engine()
{
    const auto rpm = [](V v) { return v.engineSpeed_rpm; };
    const auto torque = [](V v) { return v.engineTorque_Nm; };
    const auto throttle = [](V v) { return v.throttle_percent; };
    const auto idle = [](V v) { return v.standing() ? 1.0 : 0.0; };
    return {0x0A5,
            false,
            8,
            10'000,
            {{QStringLiteral("EngineSpeed"), QStringLiteral("1/min"), {0, 16}, {0.25}, rpm, 6},
             {QStringLiteral("EngineTorque"),
              QStringLiteral("Nm"),
              {16, 12, intel, isSigned},
              {0.5},
              torque,
              2},
             {QStringLiteral("ThrottlePosition"), QStringLiteral("%"), {28, 10}, {0.1}, throttle},
             {QStringLiteral("EngineIdle"), {}, {38, 1}, {}, idle},
             aliveCounter({40, 4}, 0.01, 16)}};
}

// The wheel on the left (side 1) or right (side -1): in a bend the outer one is faster.
double wheelSpeed_kmh(V v, int side)
{
    constexpr double halfTrack_m = 0.78;
    constexpr double radiansPerDegree = 0.0174533;
    return v.speed_kmh() - side * halfTrack_m * v.yawRate_degps * radiansPerDegree * 3.6;
}

CanMessage wheels()
{
    const auto wheel = [](const QString &name, int start, int side) {
        return CanSignal{name,
                         QStringLiteral("km/h"),
                         {start, 16, motorola},
                         {0.01},
                         [side](V v) { return wheelSpeed_kmh(v, side); },
                         0.04};
    };
    return {0x1A0,
            false,
            8,
            10'000,
            {wheel(QStringLiteral("WheelSpeed_FL"), 7, 1),
             wheel(QStringLiteral("WheelSpeed_FR"), 23, -1),
             wheel(QStringLiteral("WheelSpeed_RL"), 39, 1),
             wheel(QStringLiteral("WheelSpeed_RR"), 55, -1)}};
}

CanMessage dynamics()
{
    const auto steering = [](V v) {
        return v.standing() ? 0.0 : v.yawRate_degps / (v.speed_mps + 1) * 42;
    };
    const auto lateral = [](V v) { return v.lateralAcceleration_mps2; };
    const auto yaw = [](V v) { return v.yawRate_degps; };
    const auto ahead = [](V v) { return v.acceleration_mps2; };
    const auto slope = [](V v) { return v.slope * 100; };
    return {0x1B0,
            false,
            8,
            10'000,
            {{QStringLiteral("SteeringAngle"),
              QStringLiteral("°"),
              {7, 16, motorola, isSigned},
              {0.1},
              steering,
              0.2},
             {QStringLiteral("LateralAcceleration"),
              QStringLiteral("m/s²"),
              {23, 12, motorola, isSigned},
              {0.01},
              lateral,
              0.05},
             {QStringLiteral("YawRate"),
              QStringLiteral("°/s"),
              {27, 12, motorola, isSigned},
              {0.05},
              yaw,
              0.1},
             {QStringLiteral("LongitudinalAcceleration"),
              QStringLiteral("m/s²"),
              {47, 10, motorola, isSigned},
              {0.02},
              ahead,
              0.04},
             {QStringLiteral("RoadSlope"),
              QStringLiteral("%"),
              {56, 7, intel, isSigned},
              {0.25},
              slope},
             aliveCounter({51, 4, motorola}, 0.01, 15)}};
}

CanMessage brake()
{
    const auto pressure = [](V v) { return v.brakePressure_bar; };
    const auto light = [](V v) { return v.braking() ? 1.0 : 0.0; };
    return {
        0x1F1,
        false,
        4,
        20'000,
        {{QStringLiteral("BrakePressure"), QStringLiteral("bar"), {0, 12}, {0.1}, pressure, 0.1},
         {QStringLiteral("BrakeLight"), {}, {12, 1}, {}, light},
         aliveCounter({16, 8}, 0.02, 256)}};
}

CanMessage transmission()
{
    const auto gear = [](V v) { return double(v.gear); };
    const auto oil = [](V v) { return v.oil_degC - 6; };
    return {0x2C4,
            false,
            6,
            20'000,
            {{QStringLiteral("Gear"), {}, {0, 4}, {}, gear},
             {QStringLiteral("TransmissionOil"), QStringLiteral("°C"), {8, 8}, {1, -40}, oil}}};
}

CanMessage slowValues()
{
    const auto battery = [](V v) { return v.battery_V; };
    const auto coolant = [](V v) { return v.coolant_degC; };
    const auto oil = [](V v) { return v.oil_degC; };
    const auto intake = [](V v) { return v.intake_degC; };
    const auto ambient = [](V v) { return v.ambient_degC; };
    const auto fuel = [](V v) { return v.fuel_l; };
    const auto range = [](V v) { return v.fuel_l / 6.4 * 100; };
    const auto odometer = [](V v) { return 48'211.3 + v.distance_m / 1000; };
    const QString degC = QStringLiteral("°C");
    return {
        0x3D0,
        false,
        8,
        50'000,
        {multiplexor(QStringLiteral("SlowValueSet"), {0, 4}),
         {QStringLiteral("BatteryVoltage"), QStringLiteral("V"), {48, 16}, {0.001}, battery, 0.02},
         multiplexed(0, {QStringLiteral("CoolantTemperature"), degC, {8, 8}, {1, -40}, coolant}),
         multiplexed(0, {QStringLiteral("OilTemperature"), degC, {16, 8}, {1, -40}, oil}),
         multiplexed(1, {QStringLiteral("IntakeTemperature"), degC, {8, 9}, {0.5, -60}, intake}),
         multiplexed(
             1,
             {QStringLiteral("AmbientTemperature"), degC, {31, 9, motorola}, {0.5, -60}, ambient}),
         multiplexed(
             2, {QStringLiteral("FuelLevel"), QStringLiteral("l"), {8, 16}, {0.01}, fuel, 0.3}),
         multiplexed(2, {QStringLiteral("Range"), QStringLiteral("km"), {24, 16}, {}, range}),
         multiplexed(
             5, {QStringLiteral("Odometer"), QStringLiteral("km"), {8, 24}, {0.1}, odometer})}};
}

} // namespace

// Classic CAN with 11-bit identifiers, 500 kbit/s.
void addPowertrainBus(TerminalStruct &configuration, Schedule &schedule, const Vehicle &vehicle)
{
    addCanMessages(configuration, schedule, vehicle, 0,
                   {engine(), wheels(), dynamics(), brake(), transmission(), slowValues()});
}

} // namespace drive
