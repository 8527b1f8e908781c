#include "map/SpeedScale.h"

#include <algorithm>
#include <cmath>

#include "core/Axis.h"

namespace vantor {

SpeedScale::SpeedScale(double topMph, const Units& units) : units_(units) {
    // The last class reaches up to twice its step.
    constexpr double LeastStep = 5;
    constexpr double MostSpeed = 1e6;
    const double top = std::min(units.SpeedOfMph(std::max(topMph, 0.0)), MostSpeed);
    step_ = RoundStep(std::max(LeastStep, top / (NoClass + 1)));
    classes_ = std::clamp(static_cast<int>(std::ceil(top / step_)), 1, NoClass);
}

int SpeedScale::ClassOf(double mph) const {
    if (std::isnan(mph)) return NoClass;
    const double shown = std::max(units_.SpeedOfMph(mph), 0.0);
    return static_cast<int>(std::min(shown / step_, static_cast<double>(classes_ - 1)));
}

Colour SpeedScale::InkOf(int speedClass, const Colours& inks) const {
    if (speedClass >= classes_) return inks.Node;
    const int last = std::max(classes_ - 1, 1);
    return inks.Speeds[static_cast<std::size_t>(speedClass * (NoClass - 1) / last)];
}

double SpeedScale::WidthOf(int speedClass) const {
    constexpr double Broad = 5;
    constexpr double Narrow = 2.5;
    if (speedClass >= classes_) return Narrow;
    return Broad - (Broad - Narrow) * speedClass / std::max(classes_ - 1, 1);
}

}  // namespace vantor
