#include "analysis/ProfileUnits.h"

#include <algorithm>
#include <cmath>

#include "core/Settings.h"

namespace vantor {
namespace {

constexpr double FeetPerMetre = FeetPerMile / (1000 * KilometresPerMile);

}  // namespace

double ProfileUnits::LengthOfFeet(double feet) const { return Metric ? feet / FeetPerMetre : feet; }
double ProfileUnits::FeetOfLength(double length) const { return Metric ? length * FeetPerMetre : length; }
double ProfileUnits::SpeedOfMph(double mph) const { return Metric ? mph * KilometresPerMile : mph; }
double ProfileUnits::MphOfSpeed(double speed) const { return Metric ? speed / KilometresPerMile : speed; }

SpeedAxis NiceSpeedAxis(double topSpeed) {
    constexpr double Room = 1.1;
    constexpr int MostGridLines = 8;
    constexpr double Most = 5000.0 * MostGridLines;
    const double needed = std::min(std::max(10.0, topSpeed * Room), Most);
    SpeedAxis axis;
    for (const int step : {5, 10, 20, 50, 100, 200, 500, 1000, 2000, 5000}) {
        axis = {static_cast<int>(std::ceil(needed / step)) * step, step};
        if (axis.Maximum / step <= MostGridLines) break;
    }
    return axis;
}

}  // namespace vantor
