#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "core/StudyOptions.h"
#include "statistics/GroupStatistics.h"
#include "statistics/StudyRuns.h"

namespace vantor {

/// All runs, those before and those after, and what came of it between.
struct GroupedStatistics {
    GroupStatistics All, Before, After;
    ByMeasure<Comparison> Compared;     ///< says nothing where a group is empty or runs cannot be compared
    std::vector<std::string> Warnings;  ///< of the comparison: unlike times of day
    bool HasBoth() const { return Before.N > 0 && After.N > 0; }
};

struct SectionOverRuns : GroupedStatistics {
    std::string From;
    std::string To;
};

/// Runs with the same number of nodes.
struct NodeCount {
    int Nodes = 0;
    std::vector<std::size_t> Runs;  ///< indexes of the runs
};

struct StudyStatistics {
    StatisticsOptions Options;
    GroupedStatistics Whole;
    std::vector<std::size_t> ContradictoryFlags;  ///< indexes of runs
    std::vector<NodeCount> NodeCounts;            ///< the most runs first; of as many, the more nodes first
    /// Over the runs of the first node count; those of another one are never padded. Compared only where all runs have
    /// as many nodes.
    std::vector<SectionOverRuns> Sections;
    GroupStatistics OfMostNodes;        ///< the runs that the sections are of, over their whole length
    bool SectionsComparable = false;    ///< all runs have as many nodes
    std::vector<std::string> Warnings;  ///< sentences that concern the study as a whole, the bad cases among them

    /// "5 of 8 runs have 5 nodes"; empty where all have as many.
    std::string NodeCountText() const;
    /// Indexes of the runs that are drawn in plots over runs: of those with as many nodes as most, MostPlottedRuns at
    /// most.
    std::vector<std::size_t> RunsToPlot() const;
    /// Says in sentences which runs are not among them.
    std::vector<std::string> NotPlotted() const;
};

/// So many runs at most are drawn, so that the plots follow the mouse.
inline constexpr std::size_t MostPlottedRuns = 200;

/// The statistics of runs, all at once or what a window has chosen of them. Never fails: of no runs it has no figures.
StudyStatistics ComputeStatistics(const std::vector<MeasuredRun>& runs, const StatisticsOptions& options);

/// How sure the mean travel time was after each run, in their order.
std::vector<RunsSoFar> TravelTimesSoFar(const std::vector<MeasuredRun>& runs, const StatisticsOptions& options);

/// The runs that are not set aside.
std::vector<MeasuredRun> WithoutSetAside(const std::vector<MeasuredRun>& runs);

/// The conditions of a comparison of several studies: the runs of each, against the first.
struct Condition {
    std::string Name;
    std::vector<MeasuredRun> Runs;
    std::string Direction = {};             ///< of its study; empty: the runs', as far as they tell it
    std::vector<std::string> Remarks = {};  ///< sentences on this condition alone
};
struct ConditionStatistics {
    std::string Name;
    std::vector<std::string> Remarks;
    GroupStatistics Figures;
    ByMeasure<Comparison> Compared;  ///< with the first condition, HolmP over the conditions; empty for the first
    std::vector<SectionOverRuns> Sections;  ///< Before is the first condition, HolmP over the sections
    std::vector<std::string> Warnings;
};
/// At least one condition; Before and After of the runs do not matter. The options are those of the first.
std::vector<ConditionStatistics> CompareConditions(const std::vector<Condition>& conditions,
                                                   const StatisticsOptions& options);
/// The first condition as Before, that one as After; there is no All.
GroupedStatistics AgainstFirst(const std::vector<ConditionStatistics>& conditions, std::size_t index);

}  // namespace vantor
