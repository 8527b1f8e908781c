#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/Progress.h"
#include "core/ports/FileSystem.h"
#include "corridor/NodeDelays.h"
#include "statistics/RunTraces.h"

namespace vantor {

/// A run of a corridor with all that its figures are made of.
struct MatchedRun {
    std::size_t Index = 0;                   ///< in the corridor's runs
    std::shared_ptr<const RunReading> Read;  ///< its file; its nodes are those that the observer marked
    std::string Problem;                     ///< why it takes no part, as a sentence; empty for one that does
    RunMatch Match;
    std::string Period;                ///< as set, else the corridor's for its time of day; or empty
    MeasuredRun Measured;              ///< the whole run with the corridor's nodes that it passes
    RunTrace Trace;                    ///< likewise
    std::vector<NodeDelay> Delays;     ///< by the corridor's nodes
    std::vector<std::string> Remarks;  ///< of the match, and what else is to be known of the run; sentences

    bool IsThere() const { return Problem.empty(); }
    /// Passes all nodes.
    bool IsWhole() const { return IsThere() && KnownNodes(Match.Nodes) == Match.Nodes.size(); }
};

/// Its runs in their order, those that cannot be read with the reason; few where it was stopped.
struct MatchedRuns {
    std::vector<MatchedRun> Runs;
    bool IsWhole = true;
};

/// Reads the runs of a corridor from the Study Groups below `groupRoot`, of many on two threads.
MatchedRuns ReadCorridorRuns(const Corridor& corridor, const FileSystem& files, const std::string& groupRoot,
                             const AppSettings& settings, const Progress& progress = {});

/// Anew, after the corridor's nodes or the run's own have changed: of what was read.
MatchedRun MatchAgain(MatchedRun run, const Corridor& corridor, const CorridorLine* line, const AppSettings& settings);
/// The delays alone, after bands or ideal speeds have changed.
void DelayAgain(MatchedRun& run, const Corridor& corridor, const AppSettings& settings);

/// The name of the period that a time of day lies in; empty for none, and for a time that is not known.
std::string PeriodAt(const Corridor& corridor, Date time);

/// The folder of a run, with a final separator.
std::string FolderOf(const CorridorRun& run, const std::string& groupRoot);

}  // namespace vantor
