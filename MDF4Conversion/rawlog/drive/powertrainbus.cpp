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
    return standardMessage(
        0x0A5, 8, 10'000,
        {canSignal("EngineSpeed", "1/min", {0, 16}, {0.25}, rpm, 6),
         canSignal("EngineTorque", "Nm", {16, 12, intel, isSigned}, {0.5}, torque, 2),
         canSignal("ThrottlePosition", "%", {28, 10}, {0.1}, throttle),
         canSignal("EngineIdle", "", {38, 1}, {}, idle), aliveCounter({40, 4}, 0.01, 16)});
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
    const auto wheel = [](const char *name, int start, int side) {
        const auto speed = [side](V v) { return wheelSpeed_kmh(v, side); };
        return canSignal(name, "km/h", {start, 16, motorola}, {0.01}, speed, 0.04);
    };
    return standardMessage(0x1A0, 8, 10'000,
                           {wheel("WheelSpeed_FL", 7, 1), wheel("WheelSpeed_FR", 23, -1),
                            wheel("WheelSpeed_RL", 39, 1), wheel("WheelSpeed_RR", 55, -1)});
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
    return standardMessage(
        0x1B0, 8, 10'000,
        {canSignal("SteeringAngle", "°", {7, 16, motorola, isSigned}, {0.1}, steering, 0.2),
         canSignal("LateralAcceleration", "m/s²", {23, 12, motorola, isSigned}, {0.01}, lateral,
                   0.05),
         canSignal("YawRate", "°/s", {27, 12, motorola, isSigned}, {0.05}, yaw, 0.1),
         canSignal("LongitudinalAcceleration", "m/s²", {47, 10, motorola, isSigned}, {0.02}, ahead,
                   0.04),
         canSignal("RoadSlope", "%", {56, 7, intel, isSigned}, {0.25}, slope),
         aliveCounter({51, 4, motorola}, 0.01, 15)});
}

CanMessage brake()
{
    const auto pressure = [](V v) { return v.brakePressure_bar; };
    const auto light = [](V v) { return v.braking() ? 1.0 : 0.0; };
    return standardMessage(0x1F1, 4, 20'000,
                           {canSignal("BrakePressure", "bar", {0, 12}, {0.1}, pressure, 0.1),
                            canSignal("BrakeLight", "", {12, 1}, {}, light),
                            aliveCounter({16, 8}, 0.02, 256)});
}

CanMessage transmission()
{
    const auto gear = [](V v) { return double(v.gear); };
    const auto oil = [](V v) { return v.oil_degC - 6; };
    return standardMessage(0x2C4, 6, 20'000,
                           {canSignal("Gear", "", {0, 4}, {}, gear),
                            canSignal("TransmissionOil", "°C", {8, 8}, {1, -40}, oil)});
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
    constexpr auto degC = "°C";
    return standardMessage(
        0x3D0, 8, 50'000,
        {multiplexor("SlowValueSet", {0, 4}),
         canSignal("BatteryVoltage", "V", {48, 16}, {0.001}, battery, 0.02),
         multiplexed(0, canSignal("CoolantTemperature", degC, {8, 8}, {1, -40}, coolant)),
         multiplexed(0, canSignal("OilTemperature", degC, {16, 8}, {1, -40}, oil)),
         multiplexed(1, canSignal("IntakeTemperature", degC, {8, 9}, {0.5, -60}, intake)),
         multiplexed(1,
                     canSignal("AmbientTemperature", degC, {31, 9, motorola}, {0.5, -60}, ambient)),
         multiplexed(2, canSignal("FuelLevel", "l", {8, 16}, {0.01}, fuel, 0.3)),
         multiplexed(2, canSignal("Range", "km", {24, 16}, {}, range)),
         multiplexed(5, canSignal("Odometer", "km", {8, 24}, {0.1}, odometer))});
}

} // namespace

std::vector<CanMessage> powertrainMessages()
{
    return {engine(), wheels(), dynamics(), brake(), transmission(), slowValues()};
}

// Classic CAN with 11-bit identifiers, 500 kbit/s.
void addPowertrainBus(TerminalStruct &configuration, Schedule &schedule, const Vehicle &vehicle)
{
    addCanMessages(configuration, schedule, vehicle, 0, powertrainMessages());
}

} // namespace drive
