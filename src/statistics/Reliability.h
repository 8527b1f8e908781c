#pragma once

#include <optional>
#include <span>

namespace vantor {

/// Percentiles are shown from these numbers of runs; computed for any.
inline constexpr int LeastForPercentiles = 5;
inline constexpr int LeastForP95 = 20;

/// How far travel times can be relied on. Percentiles of type 7; ratios, not percentages.
struct Reliability {
    std::optional<double> P10, P15, P50, P80, P85, P90, P95;
    std::optional<double> BufferIndex;        ///< (P95 - mean) / mean
    std::optional<double> Lottr;              ///< P80 / P50
    std::optional<double> TravelTimeIndex;    ///< mean / free-flow time
    std::optional<double> PlanningTimeIndex;  ///< P95 / free-flow time

    bool operator==(const Reliability&) const = default;
};
/// Nothing of no times; what hangs on a free-flow time only where there is one above 0.
Reliability ReliabilityOf(std::span<const double> times, std::optional<double> freeFlowTime);

/// Seconds that a length takes at free flow; nothing without a speed or a length above 0.
std::optional<double> FreeFlowTime(std::optional<double> feet, std::optional<double> mph);

}  // namespace vantor
