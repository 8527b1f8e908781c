#include "core/Position.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace vantor {

std::optional<Position> PositionFrom(double latitude, double longitude) {
    constexpr double NoFix = 1.0 / 60 + 1e-9;
    const bool isOnEarth = std::fabs(latitude) <= 90 && std::fabs(longitude) <= 180;
    const bool isMissing =
        latitude == -1 || longitude == -1 || (std::fabs(latitude) <= NoFix && std::fabs(longitude) <= NoFix);
    return isOnEarth && !isMissing ? std::optional(Position{latitude, longitude}) : std::nullopt;
}

std::optional<Position> PositionOf(const RunSample& sample) { return PositionFrom(sample.Latitude, sample.Longitude); }

double FeetBetween(const Position& from, const Position& to) {
    constexpr double EarthRadius = 6371008.8 / 0.3048;
    constexpr double Radians = std::numbers::pi / 180;
    const double sinLatitude = std::sin((to.Latitude - from.Latitude) * Radians / 2);
    const double sinLongitude = std::sin((to.Longitude - from.Longitude) * Radians / 2);
    const double half = sinLatitude * sinLatitude + std::cos(from.Latitude * Radians) *
                                                        std::cos(to.Latitude * Radians) * sinLongitude * sinLongitude;
    return 2 * EarthRadius * std::asin(std::sqrt(std::min(half, 1.0)));
}

}  // namespace vantor
