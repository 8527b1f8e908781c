#include "statistics/Reliability.h"

#include <algorithm>
#include <numeric>
#include <vector>

#include "core/Units.h"
#include "statistics/Summary.h"

namespace vantor {
namespace {

std::optional<double> Ratio(std::optional<double> part, std::optional<double> whole) {
    if (!part || !whole || *whole <= 0) return std::nullopt;
    return *part / *whole;
}

}  // namespace

std::optional<double> FreeFlowTime(std::optional<double> feet, std::optional<double> mph) {
    if (!feet || !mph || *feet <= 0 || *mph <= 0) return std::nullopt;
    return *feet / (*mph * FeetPerSecondOfMph);
}

Reliability ReliabilityOf(std::span<const double> times, std::optional<double> freeFlowTime) {
    Reliability result;
    if (times.empty()) return result;
    std::vector<double> sorted(times.begin(), times.end());
    std::ranges::sort(sorted);
    result.P10 = Percentile(sorted, 0.10);
    result.P15 = Percentile(sorted, 0.15);
    result.P50 = Percentile(sorted, 0.50);
    result.P80 = Percentile(sorted, 0.80);
    result.P85 = Percentile(sorted, 0.85);
    result.P90 = Percentile(sorted, 0.90);
    result.P95 = Percentile(sorted, 0.95);
    const double mean = std::accumulate(times.begin(), times.end(), 0.0) / static_cast<double>(times.size());
    result.BufferIndex = Ratio(*result.P95 - mean, mean);
    result.Lottr = Ratio(result.P80, result.P50);
    result.TravelTimeIndex = Ratio(mean, freeFlowTime);
    result.PlanningTimeIndex = Ratio(result.P95, freeFlowTime);
    return result;
}

}  // namespace vantor
