#pragma once

#include "cli/CommandContext.h"
#include "statistics/StatisticsTables.h"
#include "statistics/StudyStatistics.h"

namespace vantor {

// The statistics as tables and sentences to read, in the units of the settings.

struct StudyFigures {
    std::string Name;
    StudyRuns Read;
    StudyStatistics All;
    /// The same without the runs that are set aside; nothing where none is.
    std::optional<StudyStatistics> Without;
};

/// A table of the screens; figures that are weak stand in brackets. Nothing of an empty one.
void PrintTable(const CommandContext& context, const StatisticsTable& table);
void PrintStatistics(const CommandContext& context, const StudyFigures& figures);
void PrintConditions(const CommandContext& context, const std::vector<ConditionStatistics>& conditions,
                     const StatisticsOptions& options);

}  // namespace vantor
