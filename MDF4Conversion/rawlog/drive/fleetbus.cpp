#include "MDF4Conversion/rawlog/drive/canbus.h"
#include "MDF4Conversion/rawlog/drive/schedule.h"
#include "MDF4Conversion/rawlog/drive/sources.h"
#include "config/terminalstruct.h"

namespace drive {
namespace {

using V = const VehicleState &;

constexpr auto motorola = BitOrder::Motorola;

CanMessage engineController()
{
    const auto torque = [](V v) { return v.engineTorque_Nm / 3.8; };
    const auto demand = [](V v) { return v.throttle_percent; };
    const auto rpm = [](V v) { return v.engineSpeed_rpm; };
    return extendedMessage(0x0CF00400, 8, 10'000,
                           {canSignal("DriverDemandTorque", "%", {8, 8}, {1, -125}, demand),
                            canSignal("ActualTorque", "%", {16, 8}, {1, -125}, torque),
                            canSignal("EngineSpeed", "1/min", {24, 16}, {0.125}, rpm, 5)});
}

CanMessage vehicleSpeed()
{
    const auto speed = [](V v) { return v.speed_kmh(); };
    const auto brake = [](V v) { return v.braking() ? 1.0 : 0.0; };
    return extendedMessage(0x18FEF100, 8, 50'000,
                           {canSignal("WheelBasedSpeed", "km/h", {8, 16}, {1.0 / 256}, speed),
                            canSignal("BrakeSwitch", "", {28, 2}, {}, brake)});
}

CanMessage engineTemperatures()
{
    const auto coolant = [](V v) { return v.coolant_degC; };
    const auto fuel = [](V v) { return v.ambient_degC + 8; };
    const auto oil = [](V v) { return v.oil_degC; };
    constexpr auto degC = "°C";
    return extendedMessage(0x18FEEE00, 8, 500'000,
                           {canSignal("CoolantTemperature", degC, {0, 8}, {1, -40}, coolant),
                            canSignal("FuelTemperature", degC, {8, 8}, {1, -40}, fuel),
                            canSignal("OilTemperature", degC, {16, 16}, {0.03125, -273}, oil)});
}

CanMessage distance()
{
    const auto total = [](V v) { return 48'211.3 + v.distance_m / 1000; };
    const auto trip = [](V v) { return v.distance_m / 1000; };
    return extendedMessage(0x18FEC1EE, 8, 500'000,
                           {canSignal("TotalDistance", "km", {0, 32}, {0.005}, total),
                            canSignal("TripDistance", "km", {32, 32}, {0.005}, trip)});
}

// Two pages of axle loads, most significant byte first.
CanMessage axleLoads()
{
    const auto front = [](V v) { return 880 - 42 * v.acceleration_mps2; };
    const auto rear = [](V v) { return 770 + 42 * v.acceleration_mps2; };
    const auto shift = [](V v) { return 55 * v.lateralAcceleration_mps2; };
    constexpr auto kg = "kg";
    return extendedMessage(
        0x1CEBFF21, 8, 20'000,
        {multiplexor("AxlePage", {7, 8, motorola}),
         multiplexed(16, canSignal("FrontAxleLoad", kg, {15, 16, motorola}, {0.1}, front, 4)),
         multiplexed(16, canSignal("RearAxleLoad", kg, {31, 16, motorola}, {0.1}, rear, 4)),
         multiplexed(
             17, canSignal("LoadShift", kg, {12, 13, motorola, Sign::Signed}, {0.5}, shift, 3))});
}

} // namespace

std::vector<CanMessage> fleetMessages()
{
    return {engineController(), vehicleSpeed(), engineTemperatures(), distance(), axleLoads()};
}

// Classic CAN with 29-bit identifiers, 250 kbit/s, with a name of its own for the export.
void addFleetBus(TerminalStruct &configuration, Schedule &schedule, const Vehicle &vehicle)
{
    constexpr quint8 channel = 1;
    constexpr quint8 numberAndCustomName = 1;
    TerminalCanCfg &can = configuration.can[channel];
    can.clk_div = 30;
    can.listen_only = 1;
    can.export_custom_name = QStringLiteral("Fleet");
    can.export_name_mode = numberAndCustomName;
    addCanMessages(configuration, schedule, vehicle, channel, fleetMessages());
}

} // namespace drive
