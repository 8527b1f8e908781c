#pragma once

#include <string>
#include <vector>

#include "core/Units.h"
#include "corridor/ReportedCorridor.h"
#include "statistics/StatisticsTables.h"

namespace vantor {

// Tables that reports and workbooks have beside those of the window.

/// A row for each way, condition and node: the control delay with its interval, what a study says, the stop delay.
StatisticsTable NodeDelaysTable(const Corridor& corridor, const CorridorFindings& findings, const Units& units);

/// The sections and the whole way, and before against after, with each number in a column of its own: for workbooks.
StatisticsTable SectionFiguresTable(const Corridor& corridor, const CorridorFindings& findings, const Units& units);
StatisticsTable ComparedFiguresTable(const Corridor& corridor, const CorridorResults& results, const Units& units);

/// What becomes of each delay when its boundaries and the ideal speed are moved.
StatisticsTable SensitivityTable(const Corridor& corridor, const CorridorFindings& findings, const Units& units);

/// The runs of a corridor with the hashes of what was read of them.
StatisticsTable RunsTable(const ReportedCorridor& corridor);

/// Where each run passes each node, and its delay there.
StatisticsTable NodesOfRunsTable(const ReportedCorridor& corridor, const Units& units);

/// How the nodes of the runs were found, by way.
StatisticsTable MatchSourcesTable(const ReportedCorridor& corridor);

/// The nodes with their distances and bands.
StatisticsTable BandsTable(const Corridor& corridor, const Units& units);

/// The tracks that runs were cut from, with their hashes and the time that the runs take of them.
StatisticsTable TracksTable(const Corridor& corridor);

}  // namespace vantor
