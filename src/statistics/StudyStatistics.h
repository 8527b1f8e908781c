#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "core/StudyOptions.h"
#include "statistics/Comparison.h"
#include "statistics/Measures.h"
#include "statistics/Outliers.h"
#include "statistics/Reliability.h"
#include "statistics/RunsNeeded.h"
#include "statistics/StudyRuns.h"
#include "statistics/Summary.h"

namespace vantor {

/// What figures rest on: "8 runs, 1 day, 06:53 to 08:38". The times of day are those at which runs began.
struct Basis {
    int Runs = 0;
    int Days = 0;  ///< different ones; runs without a valid date are not among them
    std::optional<Date> FirstTime;
    std::optional<Date> LastTime;
    std::vector<std::string> Periods;  ///< the different ones, in the order of time; runs without one leave none

    std::string Text() const;
    bool operator==(const Basis&) const = default;
};

/// The figures of some runs, over their whole length or one section.
struct GroupStatistics {
    int N = 0;
    ByMeasure<Summary> Of;  ///< control delay over the counted runs; none in sections
    // Sums over sums, never the mean of the runs' figures.
    std::optional<double> AverageTravelSpeed;   ///< mph
    std::optional<double> AverageRunningSpeed;  ///< mph
    std::optional<double> PercentStopped;
    std::optional<double> StopsPerMile;
    std::optional<double> MeanLength;  ///< feet
    // The interval of AverageTravelSpeed, from that of the mean travel time; it does not lie evenly.
    std::optional<double> SpeedLow, SpeedHigh;
    Reliability Times;
    ByMeasure<RunsNeeded> Needed;       ///< for the permitted error of times and delays, for that of speeds of speeds
    std::optional<GrubbsTest> Outlier;  ///< of travel times; its index counts the group's runs
    std::optional<std::size_t> OutlierRun;  ///< index in the runs of the statistics, where it is an outlier
    Basis RestsOn;
    std::vector<std::string> Warnings;  ///< "few runs", mixed periods or times of day
};

/// All runs, those before and those after, and what came of it between.
struct GroupedStatistics {
    GroupStatistics All, Before, After;
    ByMeasure<Comparison> Compared;     ///< its counts are 0 where a group is empty
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
    bool SectionsComparable = false;    ///< all runs have as many nodes
    std::vector<std::string> Warnings;  ///< sentences that concern the study as a whole, the bad cases among them

    /// "5 of 8 runs have 5 nodes"; empty where all have as many.
    std::string NodeCountText() const;
};

/// The statistics of runs, all at once or what a window has chosen of them. Never fails: of no runs it has no figures.
StudyStatistics ComputeStatistics(const std::vector<MeasuredRun>& runs, const StatisticsOptions& options);

/// The runs that are not set aside.
std::vector<MeasuredRun> WithoutSetAside(const std::vector<MeasuredRun>& runs);

/// The values of a measure in the order of the runs; those that have none are left out.
std::vector<double> ValuesOf(const std::vector<MeasuredRun>& runs, Measure measure,
                             std::optional<std::size_t> section = {});

/// The conditions of a comparison of several studies: the runs of each, against the first.
struct Condition {
    std::string Name;
    std::vector<MeasuredRun> Runs;
};
struct ConditionStatistics {
    std::string Name;
    GroupStatistics Figures;
    ByMeasure<Comparison> Compared;  ///< with the first condition, HolmP over the conditions; empty for the first
    std::vector<SectionOverRuns> Sections;  ///< Before is the first condition, HolmP over the sections
    std::vector<std::string> Warnings;
};
/// At least one condition; Before and After of the runs do not matter. The options are those of the first.
std::vector<ConditionStatistics> CompareConditions(const std::vector<Condition>& conditions,
                                                   const StatisticsOptions& options);

}  // namespace vantor
