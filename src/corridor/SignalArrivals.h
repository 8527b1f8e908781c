#pragma once

#include <cstddef>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "corridor/CorridorResults.h"
#include "corridor/CorridorTables.h"
#include "statistics/StatisticsTables.h"

namespace vantor {

// When vehicles come to a signal whose timing was entered, by the clock of their runs. Nothing is estimated: without a
// timing or a time of day there is nothing. docs/methods.md, "Arrivals in the cycle".

/// The timing of a signal for runs of a way, a condition and a period: of those that hold for them the one that says
/// most of the three, the first of equal ones; null for none.
const SignalTiming* TimingFor(const CorridorNode& node, Way way, bool isBefore, const std::string& period);

/// Seconds after the beginning of green, from 0 to below the cycle. `time` is in seconds after midnight.
double SecondInCycle(const SignalTiming& timing, double time);
inline bool IsGreenAt(const SignalTiming& timing, double time) {
    return SecondInCycle(timing, time) < timing.GreenSeconds;
}

/// Seconds after midnight at which a run begins; nothing where its time of day is not known.
std::optional<double> ClockOf(const MeasuredRun& run);

/// A run at a signal; times in seconds after the midnight before the run.
struct SignalArrival {
    std::size_t Run = 0;   ///< in the matched runs
    double Arrival = 0;    ///< the beginning of its first slow second in the band before the node, or the passing
    double Departure = 0;  ///< the passing of the node
    bool HasStopped = false;
    double ArrivalInCycle = 0;  ///< seconds after the beginning of green
    double DepartureInCycle = 0;
    bool IsOnGreen = false;  ///< at its arrival
};
/// Nothing where the run does not pass the node, begins inside its band, has no time of day or meets no known timing.
std::optional<SignalArrival> ArrivalAt(const Corridor& corridor, const std::vector<MatchedRun>& runs, std::size_t run,
                                       std::size_t node);

/// The arrivals of runs at a node.
struct NodeArrivals {
    std::vector<SignalArrival> Of;
    std::size_t OnGreen = 0;
    /// From 0 to 1; nothing of no arrivals.
    std::optional<double> Share() const;
};
NodeArrivals ArrivalsAt(const Corridor& corridor, const std::vector<MatchedRun>& runs,
                        const std::vector<std::size_t>& indexes, std::size_t node);

/// Null where no arrival is known.
nlohmann::ordered_json ArrivalsAsJson(const NodeArrivals& arrivals, const std::vector<MatchedRun>& runs);

/// For each way, and condition where there are both, at each node with arrivals: how many there are, and the share on
/// green.
StatisticsTable ArrivalsTable(const Corridor& corridor, const std::vector<MatchedRun>& runs,
                              const CorridorFindings& findings);

}  // namespace vantor
