#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "analysis/StudyResults.h"
#include "corridor/CorridorRuns.h"
#include "statistics/Grades.h"
#include "statistics/GroupStatistics.h"

namespace vantor {

/// Which runs of a corridor are looked at; those that are set aside never count.
struct CorridorFilter {
    enum class Condition { Both, Before, After };
    std::optional<std::string> Period;  ///< nothing for any; empty for the runs without one
    Condition Of = Condition::Both;

    bool Takes(const MatchedRun& run) const;
    bool operator==(const CorridorFilter&) const = default;
};

/// How far the mean delay goes when boundaries and ideal speeds are moved (BandShifts).
struct Sensitivity {
    double Least = 0;  ///< seconds, of the means
    double Most = 0;
    char GradeOfLeast = ' ';
    char GradeOfMost = ' ';
    bool ChangesGrade() const { return GradeOfLeast != GradeOfMost; }
};

/// The control delays of runs at a node.
struct NodeFigures {
    std::size_t Node = 0;              ///< in the corridor's nodes
    std::vector<std::size_t> Runs;     ///< those that have a figure, as indexes into the matched runs
    std::vector<std::size_t> Without;  ///< those that are looked at and have none
    /// Of[ControlDelay] with its interval and the runs needed; nothing else of it means anything.
    GroupStatistics Figures;
    ResultLabels AsStudy;  ///< what a study of these runs says: whole seconds and the grade
    Summary StopDelay;
    std::optional<Sensitivity> Moved;
    std::optional<Comparison> Compared;  ///< before with after, where both are looked at and there
};

/// From one node to the next, or from the first to the last one.
struct SectionFigures {
    std::size_t From = 0;  ///< in the corridor's nodes
    std::size_t To = 0;
    std::vector<std::size_t> Runs;  ///< those that pass both, as indexes into the matched runs
    GroupStatistics Figures;
    std::optional<ByMeasure<Comparison>> Compared;
};

/// One way through the corridor.
struct WayFigures {
    Way Along = Way::Forward;
    std::vector<NodeFigures> Nodes;          ///< in the order driven
    std::vector<SectionFigures> Sections;    ///< likewise, one fewer
    SectionFigures Total;                    ///< from the first to the last node, of the runs that pass them
    std::vector<std::size_t> Runs;           ///< that are looked at
    std::vector<std::size_t> Before, After;  ///< of these
};

struct CorridorResults {
    std::array<WayFigures, 2> Ways;     ///< by Way
    std::vector<std::string> Warnings;  ///< sentences that concern the corridor as a whole
    std::vector<std::string> LeftOut;   ///< runs that take no part or are set aside, a sentence each with the reason

    const WayFigures& Of(Way way) const { return Ways[static_cast<std::size_t>(way)]; }
};

/// All figures over the runs that a filter takes. Never fails: of no runs there are none.
CorridorResults ComputeCorridor(const Corridor& corridor, const std::vector<MatchedRun>& runs,
                                const CorridorFilter& filter);

/// The periods of runs in the order of time, an empty one last where some have none.
std::vector<std::string> PeriodsOf(const std::vector<MatchedRun>& runs);

}  // namespace vantor
