#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "corridor/CorridorResults.h"

namespace vantor {

// A corridor's figures as JSON: feet, seconds and miles per hour, not rounded; what is not defined is null. Keys keep
// their order.

/// The figures of each way: its nodes, its sections and its total.
nlohmann::ordered_json ResultsAsJson(const Corridor& corridor, const std::vector<MatchedRun>& runs,
                                     const CorridorFilter& filter, const CorridorResults& results);

/// Where each run passes each node, and its delay there.
nlohmann::ordered_json MatchAsJson(const Corridor& corridor, const std::vector<MatchedRun>& runs);

}  // namespace vantor
