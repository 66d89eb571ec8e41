#include "simulator/plausiblevalues.h"

#include "MDF4Conversion/rawlog/drive/drivemath.h"
#include "MDF4Conversion/rawlog/drive/vehicle.h"

#include <cmath>
#include <map>

namespace simulator {
namespace {

using V = const drive::VehicleState &;
using Quantity = double (*)(V);

Quantity quantityOf(const QString &unit)
{
    static const std::map<QString, Quantity> quantities{
        {QStringLiteral("km/h"), [](V v) { return v.speed_kmh(); }},
        {QStringLiteral("kph"), [](V v) { return v.speed_kmh(); }},
        {QStringLiteral("m/s"), [](V v) { return v.speed_mps; }},
        {QStringLiteral("m/s²"), [](V v) { return v.acceleration_mps2; }},
        {QStringLiteral("m/s^2"), [](V v) { return v.acceleration_mps2; }},
        {QStringLiteral("rpm"), [](V v) { return v.engineSpeed_rpm; }},
        {QStringLiteral("1/min"), [](V v) { return v.engineSpeed_rpm; }},
        {QStringLiteral("nm"), [](V v) { return v.engineTorque_Nm; }},
        {QStringLiteral("%"), [](V v) { return v.throttle_percent; }},
        {QStringLiteral("bar"), [](V v) { return v.brakePressure_bar; }},
        {QStringLiteral("°c"), [](V v) { return v.coolant_degC; }},
        {QStringLiteral("degc"), [](V v) { return v.coolant_degC; }},
        {QStringLiteral("v"), [](V v) { return v.battery_V; }},
        {QStringLiteral("mv"), [](V v) { return v.battery_V * 1000; }},
        {QStringLiteral("°/s"), [](V v) { return v.yawRate_degps; }},
        {QStringLiteral("deg/s"), [](V v) { return v.yawRate_degps; }},
        {QStringLiteral("l"), [](V v) { return v.fuel_l; }},
        {QStringLiteral("m"), [](V v) { return v.distance_m; }},
        {QStringLiteral("km"), [](V v) { return v.distance_m / 1000; }}};
    const auto found = quantities.find(unit.trimmed().toLower());
    return found == quantities.end() ? nullptr : found->second;
}

} // namespace

ValueOverTime plausibleValue(const QString &unit, double lowest, double highest, quint32 seed)
{
    const bool hasRange = std::isfinite(lowest) && std::isfinite(highest) && lowest < highest
                          && std::isfinite(highest - lowest);
    const double low = hasRange ? lowest : 0;
    const double high = hasRange ? highest : 100;
    const double period_s = 8 + double(drive::randomBits(seed, 0) % 240) / 10;
    const auto wave = [low, high, period_s](V v) {
        return low + (high - low) * (0.5 + 0.4 * drive::sineOfTurns(v.time_s / period_s));
    };
    const Quantity quantity = quantityOf(unit);
    if (!quantity)
        return wave;
    return [quantity, wave, low, high](V v) {
        const double value = quantity(v);
        return value >= low && value <= high ? value : wave(v);
    };
}

} // namespace simulator
