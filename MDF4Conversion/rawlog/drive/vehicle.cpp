#include "MDF4Conversion/rawlog/drive/vehicle.h"

#include "MDF4Conversion/rawlog/drive/drivemath.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace drive {
namespace {

// A stretch of the route: speed and heading change smoothly over its time.
struct Stretch
{
    double duration_s;
    double endSpeed_kmh;
    double turn_deg; // to the right
};

// Half a lap, from standstill to standstill; its turns add up to 180 degrees.
constexpr Stretch stretches[] = {
    {2, 0, 0},  {7, 50, 0},   {5, 52, 0},  {5, 0, 0},  {3, 0, 0},   {4, 34, 0}, {5, 30, 90},
    {9, 90, 0}, {5, 92, -25}, {8, 84, 40}, {5, 30, 0}, {5, 30, 75}, {4, 0, 0},
};

struct StretchStart
{
    double time_s = 0;
    double speed_mps = 0;
    double heading_deg = 0;
    double distance_m = 0;
};

constexpr std::size_t stretchCount = std::size(stretches);

// The start of each stretch, and of the next half lap behind them.
constexpr auto starts = [] {
    std::array<StretchStart, stretchCount + 1> all{};
    for (std::size_t i = 0; i < stretchCount; ++i) {
        const Stretch &s = stretches[i];
        const double endSpeed = s.endSpeed_kmh / 3.6;
        all[i + 1].time_s = all[i].time_s + s.duration_s;
        all[i + 1].speed_mps = endSpeed;
        all[i + 1].heading_deg = all[i].heading_deg + s.turn_deg;
        all[i + 1].distance_m =
            all[i].distance_m + s.duration_s * (all[i].speed_mps + endSpeed) / 2;
    }
    return all;
}();

constexpr StretchStart halfLap = starts[stretchCount];
static_assert(halfLap.heading_deg == 180, "two half laps lead back to the start");
static_assert(halfLap.speed_mps == 0, "a half lap begins at standstill");

constexpr double trackStep_s = 0.05;
constexpr double startHeading_deg = 70;
constexpr double startLatitude_deg = 48.1372;
constexpr double startLongitude_deg = 11.5755;
constexpr double metresPerDegree = 111'320;
constexpr double metresPerDegreeEast = 74'300; // at the latitude of the start
constexpr double gravity_mps2 = 9.80665;

// Motion within a half lap.
void fillMotion(VehicleState &state, double timeInHalf_s)
{
    std::size_t i = 0;
    while (i + 1 < stretchCount && timeInHalf_s >= starts[i + 1].time_s)
        ++i;
    const Stretch &stretch = stretches[i];
    const StretchStart &from = starts[i];
    const double u = std::min(1.0, (timeInHalf_s - from.time_s) / stretch.duration_s);
    const double gain = starts[i + 1].speed_mps - from.speed_mps;
    state.speed_mps = from.speed_mps + gain * smoothStep(u);
    state.acceleration_mps2 = gain * smoothSlope(u) / stretch.duration_s;
    state.distance_m =
        from.distance_m + stretch.duration_s * (from.speed_mps * u + gain * smoothArea(u));
    state.heading_turns =
        (startHeading_deg + from.heading_deg + stretch.turn_deg * smoothStep(u)) / 360;
    state.yawRate_degps = -stretch.turn_deg * smoothSlope(u) / stretch.duration_s;
    state.lateralAcceleration_mps2 = state.speed_mps * state.yawRate_degps * pi / 180;
}

// The road rises and falls once each half lap.
constexpr double hillHeight_m = 4;

void fillSlope(VehicleState &state, double distanceInHalf_m)
{
    state.slope = 2 * pi * hillHeight_m / halfLap.distance_m
                  * cosineOfTurns(distanceInHalf_m / halfLap.distance_m);
}

struct Gear
{
    double fromSpeed_kmh;
    double rpmPerKmh;
};
constexpr Gear gears[] = {{0, 125}, {16, 72}, {31, 48}, {47, 37}, {66, 30}, {86, 25}};
constexpr double idleSpeed_rpm = 790;

int gearAt(double speed_kmh)
{
    int gear = 1;
    while (gear < int(std::size(gears)) && speed_kmh >= gears[gear].fromSpeed_kmh)
        ++gear;
    return gear;
}

void fillEngine(VehicleState &state)
{
    constexpr double mass_kg = 1650;
    constexpr double wheelRadius_m = 0.32;
    const double speed = state.speed_kmh();
    state.gear = gearAt(speed);
    const double ratio = gears[state.gear - 1].rpmPerKmh;
    state.engineSpeed_rpm = std::max(idleSpeed_rpm, speed * ratio);

    const double drag_N = 180 + 0.42 * state.speed_mps * state.speed_mps;
    const double force_N =
        mass_kg * (state.acceleration_mps2 + gravity_mps2 * state.slope) + drag_N;
    // Turns of the engine for one of the wheels.
    const double reduction = ratio * 60 * 2 * pi * wheelRadius_m / 1000;
    const double torque_Nm = state.standing() ? 12 : force_N * wheelRadius_m / reduction;
    state.engineTorque_Nm = std::clamp(torque_Nm, -45.0, 380.0);
    state.throttle_percent =
        state.standing() ? 0 : std::clamp(torque_Nm / 3.8 + speed / 12, 0.0, 100.0);
    const double retarding_N = -force_N - 600;
    state.brakePressure_bar = state.standing() ? 18 : std::clamp(retarding_N / 130, 0.0, 120.0);
}

// Approaches 1 with the time, half of it after `half_s`.
constexpr double warmUp(double time_s, double half_s)
{
    return time_s / (time_s + half_s);
}

void fillTemperatures(VehicleState &state)
{
    const double t = state.time_s;
    state.ambient_degC = 17.5 + 1.5 * sineOfTurns(t / 1900);
    state.coolant_degC = state.ambient_degC + 71 * warmUp(t, 75);
    state.oil_degC = state.ambient_degC + 82 * warmUp(t, 190);
    state.intake_degC = state.ambient_degC + 9 + 14 * warmUp(t, 120) - state.speed_mps * 0.2;
    state.battery_V = 14.1 + 0.25 * sineOfTurns(t / 47) - 0.0004 * state.engineTorque_Nm;
    state.fuel_l = 52 / (1 + state.distance_m / 700'000);
}

} // namespace

Vehicle::Vehicle()
{
    // Midpoint rule: the speed between two points, in the direction that the vehicle has there.
    const auto steps = static_cast<std::size_t>(std::ceil(halfLap.time_s / trackStep_s));
    m_track.reserve(steps + 1);
    m_track.push_back({});
    for (std::size_t i = 0; i < steps; ++i) {
        VehicleState middle;
        fillMotion(middle, (double(i) + 0.5) * trackStep_s);
        const double way_m = middle.speed_mps * trackStep_s;
        m_track.push_back({m_track.back().east_m + way_m * sineOfTurns(middle.heading_turns),
                           m_track.back().north_m + way_m * cosineOfTurns(middle.heading_turns)});
    }
}

VehicleState Vehicle::at(double time_s) const
{
    VehicleState state;
    const double halves = std::floor(time_s / halfLap.time_s);
    fillMotion(state, time_s - halves * halfLap.time_s);
    fillSlope(state, state.distance_m);
    state.time_s = time_s;
    state.distance_m += halves * halfLap.distance_m;
    state.heading_turns += halves / 2;
    fillEngine(state);
    fillTemperatures(state);
    return state;
}

Vehicle::Point Vehicle::halfLapPoint(double time_s) const
{
    const double steps = time_s / trackStep_s;
    const auto before = std::min(static_cast<std::size_t>(steps), m_track.size() - 2);
    const double u = steps - double(before);
    const Point &a = m_track[before];
    const Point &b = m_track[before + 1];
    return {a.east_m + u * (b.east_m - a.east_m), a.north_m + u * (b.north_m - a.north_m)};
}

Position Vehicle::positionAt(double time_s) const
{
    const double halves = std::floor(time_s / halfLap.time_s);
    const double timeInHalf_s = time_s - halves * halfLap.time_s;
    Point point = halfLapPoint(timeInHalf_s);
    const bool secondHalf = halves - 2 * std::floor(halves / 2) > 0.5;
    if (secondHalf)
        point = {m_track.back().east_m - point.east_m, m_track.back().north_m - point.north_m};

    VehicleState state;
    fillMotion(state, timeInHalf_s);
    return {startLatitude_deg + point.north_m / metresPerDegree,
            startLongitude_deg + point.east_m / metresPerDegreeEast,
            519 + hillHeight_m * sineOfTurns(state.distance_m / halfLap.distance_m)};
}

} // namespace drive
