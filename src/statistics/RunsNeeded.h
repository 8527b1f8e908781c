#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "core/StudyOptions.h"
#include "statistics/Summary.h"

namespace vantor {

/// Beyond that many runs the number needed is not told.
inline constexpr int MostRunsNeeded = 100'000;

/// How many runs a mean within the permitted error takes, by the scatter of those that were driven.
struct RunsNeeded {
    int Have = 0;
    std::optional<int> Needed;  ///< nothing below two runs, for a relative error of no mean above 0, beyond the most
    std::optional<int> StillNeeded;  ///< 0 exactly where the interval's half width is within the error
    bool Enough = false;             ///< none still needed, and FewRuns or more driven

    bool operator==(const RunsNeeded&) const = default;
};
RunsNeeded RunsNeededFor(const Summary& summary, const PermittedError& error, double confidence);

/// What was known after a run.
struct RunsSoFar {
    Summary Of;
    RunsNeeded Needed;
};
/// After each value, in the order given.
std::vector<RunsSoFar> AfterEachRun(std::span<const double> values, const PermittedError& error, double confidence);

/// The permitted error in the measure's unit; nothing for a relative one of no mean above 0.
std::optional<double> ErrorInUnit(const PermittedError& error, std::optional<double> mean);
/// The smallest n from 2 whose interval's half width is within `error`; nothing beyond the most.
std::optional<int> NeededRuns(double sd, double error, double confidence);
/// Before any run is driven: by the scatter that the user expects, both in percent of the mean.
std::optional<int> NeededRunsOfCv(double cv, double error, double confidence);

/// Runs each way that show a difference of that size with the given power; nothing without scatter or difference, or
/// beyond the most.
std::optional<int> RunsForDifference(double sd, double difference, double confidence, double power = 0.8);

}  // namespace vantor
