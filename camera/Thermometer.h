#pragma once

#include <array>
#include <chrono>
#include <cstddef>

#include "camera/FeatureAddress.h"
#include "camera/StreamSettings.h"

namespace camera {

/// The index of a place in DeviceTemperatureSelector.
enum ETemperature : std::size_t { kTemperatureSensor, kTemperatureMainboard };

/// How warm the camera is at each place where it measures that. Each place goes towards the temperature that it would
/// keep, the slower the nearer it is. Without a clock of its own, and none the worse for being asked rarely. A plain
/// value.
class CThermometer {
public:
    /// As warm as a camera is that has been on for long, taking no images.
    explicit CThermometer(TIME tNow);

    /// @param bAcquiring  whether images have been taken since the last call
    void Advance(TIME tNow, bool bAcquiring);

    /// Whether the sensor gets far too warm while images are taken.
    void SetOverheating(bool bOverheating) { m_bOverheating = bOverheating; }

    /// Degrees Celsius, at the time of the last Advance.
    [[nodiscard]] double Get(std::size_t nPlace) const { return m_arrDegrees.at(nPlace); }

private:
    std::array<double, address::kTemperatureCount> m_arrDegrees;
    TIME m_tLast;
    bool m_bOverheating = false;
};

}  // namespace camera
