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

// Objects ahead: each drifts to and fro at a pace of its own, the farther the faster the vehicle is.
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

// Six objects of ten bytes: a distance in Intel order, the rest in Motorola order.
CanMessage objectList()
{
    constexpr int objects = 6;
    constexpr int bitsOfObject = 80;
    CanMessage message{0x051, false, 64, 10'000, {}};
    for (int i = 0; i < objects; ++i) {
        const int first = i * bitsOfObject;
        const auto name = [i](const char *what) {
            return QStringLiteral("Object_%1_%2").arg(i).arg(QLatin1String(what));
        };
        message.signalList.push_back({name("Distance"),
                                      QStringLiteral("m"),
                                      {first, 20},
                                      {0.001},
                                      [i](V v) { return objectDistance_m(v, i); },
                                      0.02});
        message.signalList.push_back({name("RelativeSpeed"),
                                      QStringLiteral("m/s"),
                                      {first + 31, 16, motorola, isSigned},
                                      {0.005},
                                      [i](V v) { return objectSpeed_mps(v, i); },
                                      0.05});
        message.signalList.push_back({name("Angle"),
                                      QStringLiteral("°"),
                                      {first + 47, 12, motorola, isSigned},
                                      {0.05},
                                      [i](V v) { return objectAngle_deg(v, i); },
                                      0.1});
        message.signalList.push_back({name("Valid"), {}, {first + 72, 1}, {}, [i](V v) {
                                          return objectDistance_m(v, i) < 60 ? 1.0 : 0.0;
                                      }});
    }
    message.signalList.push_back(aliveCounter({500, 4}, 0.01, 16));
    return message;
}

// A 29-bit identifier and wide signals.
CanMessage motionReference()
{
    const auto clock = [](V v) { return v.time_s * 1e6; };
    const auto distance = [](V v) { return v.distance_m; };
    const auto speed = [](V v) { return v.speed_mps; };
    const auto lateral = [](V v) { return v.lateralAcceleration_mps2; };
    return {0x0ABC1234,
            true,
            32,
            5'000,
            {{QStringLiteral("ReferenceClock"), QStringLiteral("us"), {0, 64}, {}, clock},
             {QStringLiteral("ReferenceDistance"),
              QStringLiteral("m"),
              {71, 32, motorola},
              {0.0001},
              distance},
             {QStringLiteral("ReferenceSpeed"),
              QStringLiteral("m/s"),
              {96, 24, intel, isSigned},
              {0.0001},
              speed,
              0.002},
             {QStringLiteral("ReferenceLateral"),
              QStringLiteral("m/s²"),
              {127, 32, motorola, isSigned},
              {1e-6},
              lateral,
              0.01}}};
}

CanMessage lightBarrier()
{
    const auto brightness = [](V v) { return 21'000 + 9'000 * sineOfTurns(v.distance_m / 700); };
    const auto wiper = [](V v) { return v.time_s < 20 ? 0.0 : 2.0; };
    const auto rain = [](V v) { return v.time_s < 18 ? 0.0 : 35.0; };
    return {
        0x321,
        false,
        12,
        100'000,
        {multiplexor(QStringLiteral("SurroundPage"), {0, 8}),
         multiplexed(
             1,
             {QStringLiteral("Brightness"), QStringLiteral("lx"), {72, 16}, {}, brightness, 120}),
         multiplexed(2,
                     {QStringLiteral("RainIntensity"), QStringLiteral("%"), {72, 7}, {}, rain, 2}),
         multiplexed(2, {QStringLiteral("WiperStage"), {}, {80, 2}, {}, wiper})}};
}

} // namespace

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
    addCanMessages(configuration, schedule, vehicle, channel,
                   {objectList(), motionReference(), lightBarrier()});
}

} // namespace drive
