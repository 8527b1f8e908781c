#include "core/StudyOptions.h"

#include <algorithm>
#include <cmath>

namespace vantor {
namespace {

/// False for what is no number, too.
bool IsWithin(double value, double least, double most) { return value >= least && value <= most; }

}  // namespace

std::string ProblemOf(const StatisticsOptions& options) {
    constexpr double FastestSpeed = 200;
    constexpr double LongestDelay = 3600;
    if (!IsWithin(options.Confidence, 50, 99.9)) return "The confidence must lie between 50 and 99.9 %.";
    if (!(options.Error.Value > 0) || !std::isfinite(options.Error.Value))
        return "The permitted error must be above 0.";
    if (!(options.SpeedError > 0) || !std::isfinite(options.SpeedError))
        return "The permitted error of speeds must be above 0.";
    if (!IsWithin(options.Stops.Stop, 0.1, FastestSpeed) ||
        !IsWithin(options.Stops.Go, options.Stops.Stop, FastestSpeed))
        return "The speed of a stop must be above 0, and that at which it ends not below it.";
    if (options.FreeFlowSpeed && !IsWithin(*options.FreeFlowSpeed, 1, FastestSpeed))
        return "The free-flow speed must lie between 1 and 200 MPH.";
    if (!options.GradeLimits) return {};
    const auto& limits = *options.GradeLimits;
    const bool isRising = std::ranges::adjacent_find(limits, std::ranges::greater_equal()) == limits.end();
    if (!isRising || !IsWithin(limits.front(), 0.1, LongestDelay) || !IsWithin(limits.back(), 0.1, LongestDelay))
        return "The limits of the grades must rise, from above 0 to 3600 seconds at most.";
    return {};
}

}  // namespace vantor
