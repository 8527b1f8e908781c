#pragma once

#include <string>
#include <vector>

#include "core/Progress.h"
#include "core/Units.h"
#include "core/ports/FileSystem.h"
#include "corridor/CorridorTables.h"

namespace vantor {

/// The runs of a corridor, read and matched, and all that a screen shows of them in figures.
struct DetailedCorridor {
    Corridor Of;
    std::vector<MatchedRun> Runs;  ///< by those of the corridor
    CorridorFilter Filter;
    CorridorFindings Findings;
    std::vector<std::string> Periods;  ///< of the runs
    StatisticsTable Delays;            ///< its rows are RowsOf the findings
    StatisticsTable Sections;
    StatisticsTable Compared;
    StatisticsTable Arrivals;            ///< on green; no rows where none is known
    std::vector<std::string> Sentences;  ///< before and after
    bool IsWhole = true;                 ///< false where the reading was stopped

    /// The figures behind a cell of the delays; null for one that is not of a node.
    const NodeFigures* FiguresAt(int row, int column) const;
};

/// The column of the delays in which the first node stands.
inline constexpr int FirstNodeColumn = 2;

/// Of a corridor as it is now: what `before` has read is not read again, and only what has changed since is matched and
/// measured anew.
DetailedCorridor DetailCorridor(const DetailedCorridor& before, const Corridor& now, const CorridorFilter& filter,
                                const FileSystem& files, const std::string& groupRoot, const AppSettings& settings,
                                const Progress& progress = {});

/// What a list of runs says of one: "ok", "gap" where it has not a figure at every node, "set aside", "not read".
std::string StateOf(const CorridorRun& as, const MatchedRun& run);

}  // namespace vantor
