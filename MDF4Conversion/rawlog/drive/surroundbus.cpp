#include "MDF4Conversion/rawlog/drive/canbus.h"
#include "MDF4Conversion/rawlog/drive/drivemath.h"
#include "MDF4Conversion/rawlog/drive/schedule.h"
#include "MDF4Conversion/rawlog/drive/sources.h"
#include "config/terminalstruct.h"

namespace drive {
namespace {

using V = const VehicleState &;

constexpr auto motorola = BitOrder::Motorola;
constexpr auto intel = BitOrder::Intel;
constexpr auto isSigned = Sign::Signed;

// Objects ahead: each drifts to and fro at a pace of its own, the farther the faster the vehicle.
double objectDistance_m(V v, int object)
{
    return 12 + 9 * object + v.speed_mps * 1.4 + 6 * sineOfTurns(v.time_s / (13 + 3 * object));
}

double objectSpeed_mps(V v, int object)
{
    const double period_s = 13 + 3 * object;
    return 6 * 2 * pi / period_s * cosineOfTurns(v.time_s / period_s);
}

double objectAngle_deg(V v, int object)
{
    return (object - 2.5) * 8 + v.yawRate_degps / 4;
}

// Ten bytes of the frame: a distance in Intel order, the rest in Motorola order.
void addObject(std::vector<CanSignal> &signalList, int object)
{
    const int first = object * 80;
    const QByteArray prefix = "Object_" + QByteArray::number(object) + "_";
    const auto add = [&](const char *what, const char *unit, Bits bits, double factor,
                         const std::function<double(V)> &value, double noise) {
        signalList.push_back(
            canSignal((prefix + what).constData(), unit, bits, {factor}, value, noise));
    };
    const auto distance = [object](V v) { return objectDistance_m(v, object); };
    const auto speed = [object](V v) { return objectSpeed_mps(v, object); };
    const auto angle = [object](V v) { return objectAngle_deg(v, object); };
    const auto valid = [object](V v) { return objectDistance_m(v, object) < 60 ? 1.0 : 0.0; };
    add("Distance", "m", {first, 20}, 0.001, distance, 0.02);
    add("RelativeSpeed", "m/s", {first + 31, 16, motorola, isSigned}, 0.005, speed, 0.05);
    add("Angle", "°", {first + 47, 12, motorola, isSigned}, 0.05, angle, 0.1);
    add("Valid", "", {first + 72, 1}, 1, valid, 0);
}

CanMessage objectList()
{
    constexpr int objects = 6;
    std::vector<CanSignal> signalList;
    for (int i = 0; i < objects; ++i)
        addObject(signalList, i);
    signalList.push_back(aliveCounter({500, 4}, 0.01, 16));
    return standardMessage(0x051, 64, 10'000, std::move(signalList));
}

// A 29-bit identifier and wide signals.
CanMessage motionReference()
{
    const auto clock = [](V v) { return v.time_s * 1e6; };
    const auto distance = [](V v) { return v.distance_m; };
    const auto speed = [](V v) { return v.speed_mps; };
    const auto lateral = [](V v) { return v.lateralAcceleration_mps2; };
    return extendedMessage(
        0x0ABC1234, 32, 5'000,
        {canSignal("ReferenceClock", "us", {0, 64}, {}, clock),
         canSignal("ReferenceDistance", "m", {71, 32, motorola}, {0.0001}, distance),
         canSignal("ReferenceSpeed", "m/s", {96, 24, intel, isSigned}, {0.0001}, speed, 0.002),
         canSignal("ReferenceLateral", "m/s²", {127, 32, motorola, isSigned}, {1e-6}, lateral,
                   0.01)});
}

CanMessage lightBarrier()
{
    const auto brightness = [](V v) { return 21'000 + 9'000 * sineOfTurns(v.distance_m / 700); };
    const auto wiper = [](V v) { return v.time_s < 20 ? 0.0 : 2.0; };
    const auto rain = [](V v) { return v.time_s < 18 ? 0.0 : 35.0; };
    return standardMessage(
        0x321, 12, 100'000,
        {multiplexor("SurroundPage", {0, 8}),
         multiplexed(1, canSignal("Brightness", "lx", {72, 16}, {}, brightness, 120)),
         multiplexed(2, canSignal("RainIntensity", "%", {72, 7}, {}, rain, 2)),
         multiplexed(2, canSignal("WiperStage", "", {80, 2}, {}, wiper))});
}

} // namespace

std::vector<CanMessage> surroundMessages()
{
    return {objectList(), motionReference(), lightBarrier()};
}

// CAN FD with bit rate switching, 500 kbit/s and 2 Mbit/s, frames of up to 64 bytes.
void addSurroundBus(TerminalStruct &configuration, Schedule &schedule, const Vehicle &vehicle)
{
    constexpr quint8 channel = 2;
    constexpr quint8 fdWithBitRateSwitching = 2;
    TerminalCanCfg &can = configuration.can[channel];
    can.can_mode = fdWithBitRateSwitching;
    can.fast_clk_div = 3;
    can.fast_tseg1 = 14;
    can.fast_tseg2 = 5;
    addCanMessages(configuration, schedule, vehicle, channel, surroundMessages());
}

} // namespace drive
