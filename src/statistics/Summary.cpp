#include "statistics/Summary.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "statistics/Distributions.h"

namespace vantor {
namespace {

double MeanOf(std::span<const double> values) {
    return std::accumulate(values.begin(), values.end(), 0.0) / static_cast<double>(values.size());
}

/// The standard deviation of two or more values; exactly 0 of equal ones, whose mean may be off by a rounding.
double DeviationOf(std::span<const double> values, double mean) {
    if (std::ranges::equal(values.subspan(1), values.first(values.size() - 1))) return 0;
    double squares = 0;
    for (const double value : values) squares += (value - mean) * (value - mean);
    return std::sqrt(squares / static_cast<double>(values.size() - 1));
}

}  // namespace

double HalfWidthOf(double sd, int n, double confidence) {
    return sd == 0 ? 0 : StudentOfConfidence(confidence, n - 1) * (sd / std::sqrt(n));
}

Summary Summarise(std::span<const double> values, double confidence) {
    Summary summary;
    summary.N = static_cast<int>(values.size());
    if (values.empty()) return summary;
    const double mean = MeanOf(values);
    summary.Mean = mean;
    const auto [least, most] = std::ranges::minmax(values);
    summary.Min = least;
    summary.Max = most;
    summary.Median = PercentileOf(values, 0.5);
    if (summary.N < 2) return summary;
    const double sd = DeviationOf(values, mean);
    const double half = HalfWidthOf(sd, summary.N, confidence);
    summary.Sd = sd;
    summary.Se = sd / std::sqrt(summary.N);
    if (mean > 0) summary.Cv = sd / mean;
    summary.HalfWidth = half;
    summary.Low = mean - half;
    summary.High = mean + half;
    return summary;
}

std::vector<RunningMean> RunningBand(std::span<const double> values, double confidence) {
    std::vector<RunningMean> band;
    band.reserve(values.size());
    // Welford's sums: each mean and scatter from the one before it.
    double mean = 0;
    double squares = 0;
    for (const double value : values) {
        const int n = static_cast<int>(band.size()) + 1;
        const double off = value - mean;
        mean += off / n;
        squares += off * (value - mean);
        RunningMean after{mean, {}};
        if (n > 1) after.HalfWidth = HalfWidthOf(std::sqrt(squares / (n - 1)), n, confidence);
        band.push_back(after);
    }
    return band;
}

std::optional<double> Percentile(std::span<const double> sorted, double part) {
    if (sorted.empty()) return std::nullopt;
    const double place = static_cast<double>(sorted.size() - 1) * part;
    const auto below = static_cast<std::size_t>(std::floor(place));
    if (below + 1 >= sorted.size()) return sorted.back();
    return sorted[below] + (place - static_cast<double>(below)) * (sorted[below + 1] - sorted[below]);
}

std::optional<double> PercentileOf(std::span<const double> values, double part) {
    std::vector<double> parted(values.begin(), values.end());
    if (parted.empty()) return std::nullopt;
    const double place = static_cast<double>(parted.size() - 1) * part;
    const auto below = parted.begin() + static_cast<std::ptrdiff_t>(place);
    // No more of the order than the one or two values between which it lies.
    std::ranges::nth_element(parted, below);
    if (below + 1 == parted.end()) return *below;
    return *below + (place - std::floor(place)) * (*std::min_element(below + 1, parted.end()) - *below);
}

std::optional<MedianInterval> IntervalOfMedian(std::span<const double> values, double confidence) {
    const int n = static_cast<int>(values.size());
    int rank = 0;
    while (rank + 1 <= n / 2 && 2 * EvenBinomialUpTo(rank, n) <= AlphaOf(confidence)) ++rank;
    if (rank == 0) return std::nullopt;
    std::vector<double> sorted(values.begin(), values.end());
    std::ranges::sort(sorted);
    return MedianInterval{sorted[static_cast<std::size_t>(rank - 1)], sorted[static_cast<std::size_t>(n - rank)],
                          100 * (1 - 2 * EvenBinomialUpTo(rank - 1, n))};
}

}  // namespace vantor
