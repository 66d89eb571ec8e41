#pragma once

#include <QString>

#include <functional>

namespace drive {
struct VehicleState;
}

namespace simulator {

using ValueOverTime = std::function<double(const drive::VehicleState &)>;

// What a signal with this unit may measure in the vehicle; a slow wave between the limits for other
// units and wherever the vehicle's value lies outside. Always finite. `seed` tells waves apart.
[[nodiscard]] ValueOverTime plausibleValue(const QString &unit, double lowest, double highest,
                                           quint32 seed);

} // namespace simulator
