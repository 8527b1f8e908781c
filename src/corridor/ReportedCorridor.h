#pragma once

#include <optional>
#include <string>
#include <vector>

#include "core/AppSettings.h"
#include "corridor/CorridorTables.h"

namespace vantor {

/// A corridor as a report is made of it.
struct ReportedCorridor {
    Corridor Of;
    std::vector<MatchedRun> Runs;  ///< by those of the corridor
    CorridorFilter Filter;         ///< which runs it is on
    std::string Root;              ///< the folder of the Study Groups, with a final separator
};

/// The findings of a part of the runs.
struct PartOfFindings {
    CorridorFilter Filter;
    CorridorFindings Findings;
};

/// What a report states: first the runs that its filter takes, then each period of theirs where they have several.
std::vector<PartOfFindings> FindingsByPeriod(const ReportedCorridor& corridor);

}  // namespace vantor
