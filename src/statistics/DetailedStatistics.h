#pragma once

#include <optional>
#include <string>
#include <vector>

#include "core/StudyRecords.h"
#include "statistics/RunTraces.h"
#include "statistics/StatisticsTables.h"
#include "statistics/StudyStatistics.h"
#include "statistics/TimeSpacePlot.h"

namespace vantor {

/// What of a study's runs is looked at.
struct RunFilter {
    enum class Group { All, Before, After };
    std::optional<std::string> Period;     ///< nothing for any; empty for the runs without one
    std::optional<std::string> Direction;  ///< likewise
    Group Of = Group::All;
    bool WithoutSetAside = false;

    bool Takes(const MeasuredRun& run) const;
    bool operator==(const RunFilter&) const = default;
};

/// The different periods or directions of runs in the order of time; an empty one last, where some have none.
std::vector<std::string> DifferentOf(const std::vector<MeasuredRun>& runs, std::string MeasuredRun::*what);

struct PlotChoices {
    TimeSpaceClock Clock = TimeSpaceClock::FromStart;
    bool ShowsRuns = true;  ///< the single ones in the overlay

    bool operator==(const PlotChoices&) const = default;
};

/// All that a screen shows of the runs that a filter takes.
struct DetailedStatistics {
    std::vector<std::size_t> Runs;  ///< indexes of the runs taken
    StudyStatistics Figures;
    std::string RestsOn;                ///< "8 runs, 1 day, 06:53 to 08:38; 1 of them set aside"
    std::vector<std::string> Warnings;  ///< of the study, of the runs taken and of those that could not be read
    StatisticsTable Summary, Sections;
    std::string Apart;                   ///< the runs that have no sections here, and why; or empty
    std::vector<std::string> Sentences;  ///< what came of it between before and after, or why nothing can be told
    StatisticsTable Compared, ComparedSections;
    std::vector<std::size_t> Plotted;  ///< indexes of the runs that are the items of both plots
    Plot TimeSpace, Overlay;
    StatisticsTable NodeTimes;               ///< the time-space diagram as a table: when each run passes its nodes
    StatisticsTable Speeds;                  ///< the bands of the overlay
    std::string TimeSpaceNote, OverlayNote;  ///< what is not drawn, and why; or empty

    /// The item of a run in the plots; 0 for none.
    int ItemOf(std::size_t run) const;
};

DetailedStatistics MakeDetailedStatistics(const TracedRuns& runs, const Study& study, const RunFilter& filter,
                                          const PlotChoices& choices, const Units& units);

}  // namespace vantor
