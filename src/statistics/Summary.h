#pragma once

#include <optional>
#include <span>
#include <vector>

namespace vantor {

/// A run more or less is a remark below these: an interval of fewer is shown with "few runs", and nothing is called
/// enough below it.
inline constexpr int FewRuns = 5;

/// A measure over runs. What is not defined has no value, never 0: of no runs nothing, of one run its value alone.
struct Summary {
    int N = 0;  ///< runs that have a value
    std::optional<double> Mean;
    std::optional<double> Sd;         ///< divisor n - 1
    std::optional<double> Se;         ///< sd / sqrt(n)
    std::optional<double> Cv;         ///< sd / mean; nothing where the mean is not above 0
    std::optional<double> HalfWidth;  ///< of the interval of the mean, t(n - 1) * se
    std::optional<double> Low;
    std::optional<double> High;
    std::optional<double> Min;
    std::optional<double> Max;
    std::optional<double> Median;

    bool operator==(const Summary&) const = default;
};

Summary Summarise(std::span<const double> values, double confidence);

/// Half the width of the interval of a mean of n values; n from 2.
double HalfWidthOf(double sd, int n, double confidence);

/// The mean and its interval after each value, in the order given.
struct RunningMean {
    double Mean = 0;
    std::optional<double> HalfWidth;  ///< nothing after the first value
};
std::vector<RunningMean> RunningBand(std::span<const double> values, double confidence);

/// The percentile of type 7 (that of spreadsheets): position 1 + (n - 1) * part, linear between; nothing of no values.
std::optional<double> Percentile(std::span<const double> sorted, double part);
/// The percentile of values in any order.
std::optional<double> PercentileOf(std::span<const double> values, double part);

/// An interval of the median that supposes no distribution: from the k-th smallest to the k-th largest value.
struct MedianInterval {
    double Low = 0;
    double High = 0;
    double Coverage = 0;  ///< percent; at least the confidence asked for
};
/// Nothing for fewer values than give that confidence: below 6 at 95 %.
std::optional<MedianInterval> IntervalOfMedian(std::span<const double> values, double confidence);

}  // namespace vantor
