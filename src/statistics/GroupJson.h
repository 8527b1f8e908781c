#pragma once

#include <nlohmann/json.hpp>

#include "statistics/GroupStatistics.h"

namespace vantor {

// Figures as JSON: feet, seconds and miles per hour, not rounded; what is not defined is null. Keys keep their order.

nlohmann::ordered_json SummaryAsJson(const Summary& summary);
nlohmann::ordered_json NeededAsJson(const RunsNeeded& needed);
nlohmann::ordered_json GroupAsJson(const GroupStatistics& group);
/// `withHolm`: Holm's p even where it is null.
nlohmann::ordered_json ComparisonAsJson(const Comparison& compared, Measure measure, const StatisticsOptions& options,
                                        bool withHolm = false);
/// The measures that have values; `withHolm` concerns travel times alone.
nlohmann::ordered_json ComparisonAsJson(const ByMeasure<Comparison>& compared, const StatisticsOptions& options,
                                        bool withHolm);

}  // namespace vantor
