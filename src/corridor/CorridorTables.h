#pragma once

#include <string>
#include <vector>

#include "core/Units.h"
#include "corridor/CorridorResults.h"
#include "statistics/StatisticsTables.h"

namespace vantor {

/// The results of the runs together and, where there are both, of those before and those after.
struct CorridorFindings {
    CorridorResults All;
    std::optional<CorridorResults> Before, After;
};
CorridorFindings FindingsOf(const Corridor& corridor, const std::vector<MatchedRun>& runs,
                            const CorridorFilter& filter);

/// What a row of the tables is of.
struct FindingsRow {
    std::string Name;  ///< "NB", "NB before"
    const CorridorResults* Results = nullptr;
    Way Along = Way::Forward;
};
/// A row for each way that has runs, and one for each condition where there are both.
std::vector<FindingsRow> RowsOf(const Corridor& corridor, const CorridorFindings& findings);

/// The control delays at the nodes in the corridor's order, the travel time from end to end, its speed, and how many
/// runs more the permitted error takes. A cell's note has the interval, what hangs on the boundaries and why runs have
/// no figure; one whose grade hangs on them is weak.
StatisticsTable DelayTable(const Corridor& corridor, const CorridorFindings& findings, const Units& units);

/// One line for each section and the whole way: times, stops, speeds, percentiles, indices, runs needed.
StatisticsTable CorridorSectionsTable(const Corridor& corridor, const CorridorFindings& findings, const Units& units);

/// Before against after: the delay of each node, the travel time of each section and of the whole way.
StatisticsTable CorridorComparedTable(const Corridor& corridor, const CorridorResults& results, const Units& units);
/// "NB: Travel time fell by 32.1 s (17.2 %); 95 % interval ..." for each way that has both, and what a difference of
/// 5 % of the travel time takes.
std::vector<std::string> ComparedSentences(const Corridor& corridor, const CorridorResults& results,
                                           const Units& units);

/// The runs behind a node's delay, also those without a figure, with the reason.
StatisticsTable NodeRunsTable(const Corridor& corridor, const std::vector<MatchedRun>& runs, const NodeFigures& figures,
                              const Units& units);

/// Where each run passes each node: source, second, distance, how far beside.
StatisticsTable MatchTable(const Corridor& corridor, const MatchedRun& run, const Units& units);

}  // namespace vantor
