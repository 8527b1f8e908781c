#pragma once

#include "cli/CommandContext.h"
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

void PrintStatistics(const CommandContext& context, const StudyFigures& figures);
void PrintConditions(const CommandContext& context, const std::vector<ConditionStatistics>& conditions,
                     const StatisticsOptions& options);

}  // namespace vantor
