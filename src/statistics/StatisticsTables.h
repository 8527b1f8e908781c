#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "core/Csv.h"
#include "core/Units.h"
#include "statistics/StudyStatistics.h"

namespace vantor {

struct StatisticsCell {
    std::string Text;
    std::optional<double> Number = {};  ///< that the text shows; it goes to the right, and out as a number
    bool IsWeak = false;                ///< shown greyed; its note says why
    std::string Note = {};              ///< what qualifies it
};

/// A table of a screen over the runs of a study; what is not defined is NoValueText.
struct StatisticsTable {
    std::vector<std::string> Heads;
    std::vector<std::vector<StatisticsCell>> Rows;
    bool HasTotal = false;    ///< the last row
    bool LastIsText = false;  ///< the last column holds remarks, no figures
    int TextColumns = 1;      ///< so many at the left hold texts, no figures
};

/// To go out to a spreadsheet, where what is not defined is an empty field.
std::vector<SheetRow> SheetOf(const StatisticsTable& table);

/// What qualifies a row, which its cells have no room for: "Travel time (s)" and a line for each column that has a
/// note; empty where nothing does.
std::string RowInWords(const StatisticsTable& table, std::size_t row);

/// The figures of all runs, and of those before and after beside them where there are both. `what` heads the first
/// column of figures.
StatisticsTable SummaryTable(const GroupedStatistics& whole, const StatisticsOptions& options, const std::string& what,
                             const Units& units);

/// So many runs at most are told one after the other.
inline constexpr std::size_t MostRunsSoFar = 40;
/// How sure the mean travel time was after each of the runs, in their order, as further rows of a summary; none of more
/// runs than that.
void AddRunsSoFar(StatisticsTable& summary, const std::vector<MeasuredRun>& runs, const StatisticsOptions& options,
                  const Units& units);

/// The same as a table of its own.
StatisticsTable RunsSoFarTable(const std::vector<MeasuredRun>& runs, const StatisticsOptions& options,
                               const Units& units);

/// How far each measure scatters over the runs.
StatisticsTable ScatterTable(const GroupStatistics& group, const Units& units);

/// From node to node over runs with the same number of nodes, and their whole runs below, for intervals do not add.
StatisticsTable SectionsTable(const StudyStatistics& statistics, const Units& units);

/// Each measure before against after, and the travel times section by section.
StatisticsTable ComparedTable(const GroupedStatistics& whole, const StatisticsOptions& options, const Units& units);
StatisticsTable ComparedSectionsTable(const std::vector<SectionOverRuns>& sections, const StatisticsOptions& options,
                                      const Units& units);

/// The means of several studies.
StatisticsTable ConditionsTable(const std::vector<ConditionStatistics>& conditions, const StatisticsOptions& options,
                                const Units& units);

/// What a difference of so many seconds in travel time takes that scatters like this: "takes 16 runs before and 16
/// after with this scatter, in 8 of 10 such surveys"; why no number is known.
std::string RunsForDifferenceText(std::optional<double> sd, double seconds, double confidence);

}  // namespace vantor
