#include "MDF4Conversion/rawlog/drive/vehicle.h"

#include <QtTest>

#include <cmath>

using namespace drive;

namespace {

constexpr double step_s = 0.01;
constexpr double drive_s = 300;
constexpr double metresPerDegree = 111'320;
constexpr double metresPerDegreeEast = 74'300;

} // namespace

class tst_Vehicle : public QObject
{
    Q_OBJECT

private slots:
    void aStateFollowsFromTheTimeAlone();
    void theVehicleStopsAndDrives();
    void accelerationIsTheChangeOfSpeed();
    void distanceIsTheSumOfSpeed();
    void yawRateIsTheChangeOfHeading();
    void lateralAccelerationBelongsToSpeedAndYawRate();
    void accelerationsStayThoseOfACar();
    void theTrackFollowsSpeedAndHeading();
    void theTrackIsClosed();
    void theEngineStaysInItsRange();
    void temperaturesRiseButStayInTheirRange();
};

void tst_Vehicle::aStateFollowsFromTheTimeAlone()
{
    const Vehicle a;
    const Vehicle b;
    static_cast<void>(b.at(299));
    QCOMPARE(a.at(33.3).speed_mps, b.at(33.3).speed_mps);
    QCOMPARE(a.positionAt(33.3).latitude_deg, b.positionAt(33.3).latitude_deg);
}

void tst_Vehicle::theVehicleStopsAndDrives()
{
    const Vehicle vehicle;
    int stops = 0;
    double fastest = 0;
    bool standing = true;
    for (double t = 0; t < 60; t += step_s) {
        const VehicleState state = vehicle.at(t);
        stops += state.standing() && !standing ? 1 : 0;
        standing = state.standing();
        fastest = std::max(fastest, state.speed_kmh());
    }
    QVERIFY(vehicle.at(0).standing());
    QVERIFY2(stops >= 1, "a stop within a minute");
    QVERIFY(fastest > 80 && fastest < 130);
}

void tst_Vehicle::accelerationIsTheChangeOfSpeed()
{
    const Vehicle vehicle;
    for (double t = step_s; t < drive_s; t += 0.37) {
        const double change = vehicle.at(t + step_s).speed_mps - vehicle.at(t - step_s).speed_mps;
        QVERIFY(std::abs(change / (2 * step_s) - vehicle.at(t).acceleration_mps2) < 0.05);
    }
}

void tst_Vehicle::distanceIsTheSumOfSpeed()
{
    const Vehicle vehicle;
    double sum = 0;
    for (int i = 0; i < int(drive_s / step_s); ++i)
        sum += vehicle.at((i + 0.5) * step_s).speed_mps * step_s;
    QVERIFY(std::abs(vehicle.at(drive_s).distance_m - sum) < 0.5);
}

void tst_Vehicle::yawRateIsTheChangeOfHeading()
{
    const Vehicle vehicle;
    for (double t = step_s; t < drive_s; t += 0.37) {
        const double turns =
            vehicle.at(t + step_s).heading_turns - vehicle.at(t - step_s).heading_turns;
        // A heading grows clockwise, a yaw rate counts to the left.
        QVERIFY(std::abs(-turns * 360 / (2 * step_s) - vehicle.at(t).yawRate_degps) < 0.2);
    }
}

void tst_Vehicle::lateralAccelerationBelongsToSpeedAndYawRate()
{
    const Vehicle vehicle;
    for (double t = 0; t < drive_s; t += 0.37) {
        const VehicleState state = vehicle.at(t);
        const double expected = state.speed_mps * state.yawRate_degps * 0.017453293;
        QVERIFY(std::abs(state.lateralAcceleration_mps2 - expected) < 1e-5);
    }
}

void tst_Vehicle::accelerationsStayThoseOfACar()
{
    const Vehicle vehicle;
    for (double t = 0; t < drive_s; t += 0.05) {
        QVERIFY(std::abs(vehicle.at(t).acceleration_mps2) < 5);
        QVERIFY(std::abs(vehicle.at(t).lateralAcceleration_mps2) < 5);
    }
}

void tst_Vehicle::theTrackFollowsSpeedAndHeading()
{
    const Vehicle vehicle;
    constexpr double fix_s = 0.1;
    for (double t = 0; t < drive_s; t += fix_s) {
        const Position from = vehicle.positionAt(t);
        const Position to = vehicle.positionAt(t + fix_s);
        const VehicleState middle = vehicle.at(t + fix_s / 2);
        const double north_m = (to.latitude_deg - from.latitude_deg) * metresPerDegree;
        const double east_m = (to.longitude_deg - from.longitude_deg) * metresPerDegreeEast;
        const double way_m = middle.speed_mps * fix_s;
        const double angle = middle.heading_turns * 2 * 3.14159265;
        QVERIFY(std::abs(north_m - way_m * std::cos(angle)) < 0.05);
        QVERIFY(std::abs(east_m - way_m * std::sin(angle)) < 0.05);
    }
}

void tst_Vehicle::theTrackIsClosed()
{
    // From the start to the first standstill after a full turn.
    const Vehicle vehicle;
    double lap_s = 1;
    while (vehicle.at(lap_s).heading_turns - vehicle.at(0).heading_turns < 0.9999
           || !vehicle.at(lap_s).standing())
        lap_s += step_s;
    const Position start = vehicle.positionAt(0);
    const Position end = vehicle.positionAt(lap_s);
    QVERIFY(std::abs(end.latitude_deg - start.latitude_deg) * metresPerDegree < 0.1);
    QVERIFY(std::abs(end.longitude_deg - start.longitude_deg) * metresPerDegreeEast < 0.1);
}

void tst_Vehicle::theEngineStaysInItsRange()
{
    const Vehicle vehicle;
    for (double t = 0; t < drive_s; t += 0.05) {
        const VehicleState state = vehicle.at(t);
        QVERIFY(state.engineSpeed_rpm >= 700 && state.engineSpeed_rpm < 4000);
        QVERIFY(state.gear >= 1 && state.gear <= 6);
        QVERIFY(state.throttle_percent >= 0 && state.throttle_percent <= 100);
        QVERIFY(state.engineTorque_Nm > -100 && state.engineTorque_Nm < 400);
        QVERIFY(!(state.braking() && state.throttle_percent > 40));
    }
}

void tst_Vehicle::temperaturesRiseButStayInTheirRange()
{
    const Vehicle vehicle;
    QVERIFY(vehicle.at(0).coolant_degC < 25);
    QVERIFY(vehicle.at(600).coolant_degC > 70);
    for (double t = 0; t < 86'400; t += 60) {
        QVERIFY(vehicle.at(t).coolant_degC < 100);
        QVERIFY(vehicle.at(t).oil_degC < 120);
        QVERIFY(vehicle.at(t).fuel_l > 0);
    }
}

QTEST_GUILESS_MAIN(tst_Vehicle)
#include "tst_vehicle.moc"
