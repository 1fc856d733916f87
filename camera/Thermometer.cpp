#include "camera/Thermometer.h"

#include <cmath>

namespace camera {
namespace {

/// What becomes of a place that is left alone for long, in degrees Celsius.
struct PLACE {
    double Idle;
    double Acquiring;
    std::chrono::duration<double> Pace;  ///< in which about two thirds of the way are gone
};

constexpr std::array<PLACE, address::kTemperatureCount> kPlaces = {{
    {41.5, 62, std::chrono::seconds(30)},
    {38, 47, std::chrono::seconds(90)},
}};
constexpr double kOverheated = 104;  // of the sensor: 90 are passed after three quarters of a minute

}  // namespace

CThermometer::CThermometer(TIME tNow) : m_tLast(tNow) {
    for (std::size_t i = 0; i < kPlaces.size(); ++i) {
        m_arrDegrees[i] = kPlaces[i].Idle;
    }
}

void CThermometer::Advance(TIME tNow, bool bAcquiring) {
    const std::chrono::duration<double> nPassed = tNow - m_tLast;
    m_tLast = tNow;
    for (std::size_t i = 0; i < kPlaces.size(); ++i) {
        double nGoal = bAcquiring ? kPlaces[i].Acquiring : kPlaces[i].Idle;
        if (bAcquiring && m_bOverheating && i == kTemperatureSensor) {
            nGoal = kOverheated;
        }
        m_arrDegrees[i] = nGoal + (m_arrDegrees[i] - nGoal) * std::exp(-(nPassed / kPlaces[i].Pace));
    }
}

}  // namespace camera
