#pragma once

#include <QtGlobal>

#include <vector>

// The vehicle of the demonstration drive: everything follows from the time alone.
namespace drive {

// Driving state at one moment. Axes: x ahead, y left, z up; yaw and bends to the left are positive.
struct VehicleState
{
    double time_s = 0;
    double speed_mps = 0;
    double acceleration_mps2 = 0;        // along x
    double lateralAcceleration_mps2 = 0; // along y
    double yawRate_degps = 0;
    double heading_turns = 0; // from north, clockwise, not reduced to one turn
    double distance_m = 0;    // since the start
    double slope = 0;         // rise over distance
    int gear = 1;
    double engineSpeed_rpm = 0;
    double engineTorque_Nm = 0;
    double throttle_percent = 0;
    double brakePressure_bar = 0;
    double coolant_degC = 0;
    double oil_degC = 0;
    double intake_degC = 0;
    double ambient_degC = 0;
    double battery_V = 0;
    double fuel_l = 0;

    [[nodiscard]] double speed_kmh() const { return speed_mps * 3.6; }
    [[nodiscard]] bool standing() const { return speed_mps < 0.05; }
    [[nodiscard]] bool braking() const { return brakePressure_bar > 0.5; }
};

struct Position
{
    double latitude_deg = 0;
    double longitude_deg = 0;
    double altitude_m = 0;
};

// Drives laps of a closed route, each of two equal halves that turn by half a circle.
class Vehicle
{
public:
    Vehicle();

    // `time_s` counts from the start of the drive and is not negative.
    [[nodiscard]] VehicleState at(double time_s) const;
    [[nodiscard]] Position positionAt(double time_s) const;

private:
    struct Point
    {
        double east_m = 0;
        double north_m = 0;
    };
    [[nodiscard]] Point halfLapPoint(double time_s) const;

    std::vector<Point> m_track; // of the first half lap, evenly spaced in time
};

} // namespace drive
