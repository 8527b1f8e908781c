#pragma once

#include "cli/CommandContext.h"
#include "statistics/BoundsProposal.h"
#include "statistics/StudyStatistics.h"

namespace vantor {

// The statistics as JSON: feet, seconds and miles per hour, not rounded; what is not defined is null.

/// `events` are those of the study's runs, in its order.
Json StatisticsAsJson(const StudyStatistics& statistics, const std::vector<MeasuredRun>& runs,
                      const std::vector<RunToPropose>& events);
/// The groups, their comparison and the sections, as they stand without the runs that are set aside.
Json FiguresAsJson(const StudyStatistics& statistics);
Json ConditionsAsJson(const std::vector<ConditionStatistics>& conditions, const StatisticsOptions& options);

}  // namespace vantor
