#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "core/Date.h"
#include "core/StudyOptions.h"
#include "statistics/Comparison.h"
#include "statistics/Measures.h"
#include "statistics/Outliers.h"
#include "statistics/Reliability.h"
#include "statistics/RunsNeeded.h"
#include "statistics/StudyRuns.h"
#include "statistics/Summary.h"

namespace vantor {

/// Some runs of those that are at hand, in their order.
using ChosenRuns = std::vector<const MeasuredRun*>;

/// The values of a measure over whole runs or over section `section` (from 0); runs without one are left out.
std::vector<double> ValuesOf(const ChosenRuns& runs, Measure measure, std::optional<std::size_t> section = {});

/// What figures rest on: "8 runs, 1 day, 06:53 to 08:38". The times of day are those at which runs began.
struct Basis {
    int Runs = 0;
    int Days = 0;  ///< different ones; runs without a valid date are not among them
    std::optional<Date> FirstTime;
    std::optional<Date> LastTime;
    std::vector<std::string> Periods;     ///< the different ones, in the order of time; runs without one leave none
    std::vector<std::string> Directions;  ///< likewise

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
    std::optional<MedianInterval> MedianTime;  ///< of travel times
    ByMeasure<RunsNeeded> Needed;       ///< for the permitted error of times and delays, for that of speeds of speeds
    std::optional<GrubbsTest> Outlier;  ///< of travel times; its index counts the group's runs
    std::string FarthestRun;            ///< the name of the run that it looked at, an outlier or not
    Basis RestsOn;
    std::vector<std::string> Warnings;  ///< "few runs", mixed directions, periods or times of day
};

/// The figures of the runs over their whole length, or over a section that each of them has.
GroupStatistics GroupOver(const ChosenRuns& runs, std::optional<std::size_t> section, const StatisticsOptions& options);

/// The permitted error of a measure: of speeds that of speeds.
PermittedError ErrorOf(Measure measure, const StatisticsOptions& options);

ByMeasure<Comparison> CompareGroups(const ChosenRuns& before, const ChosenRuns& after,
                                    std::optional<std::size_t> section, const StatisticsOptions& options);

/// Warns, in sentences, where the two groups were driven in unlike directions, in unlike periods or at times of day
/// that do not meet.
std::vector<std::string> Unlike(const GroupStatistics& before, const GroupStatistics& after);

}  // namespace vantor
