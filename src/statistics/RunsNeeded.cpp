#include "statistics/RunsNeeded.h"

#include <algorithm>
#include <cmath>

#include "statistics/Distributions.h"

namespace vantor {
namespace {

/// The smallest n from 2 to the most for which `suffices` holds, which holds for all larger ones, too.
template <class Suffices>
std::optional<int> SmallestRuns(Suffices suffices) {
    int above = 2;
    while (above < MostRunsNeeded && !suffices(above)) above = std::min(2 * above, MostRunsNeeded);
    if (!suffices(above)) return std::nullopt;
    int below = above == 2 ? 1 : above / 2;
    while (above - below > 1) {
        const int middle = below + (above - below) / 2;
        (suffices(middle) ? above : below) = middle;
    }
    return above;
}

}  // namespace

std::optional<double> ErrorInUnit(const PermittedError& error, std::optional<double> mean) {
    if (error.Of == PermittedError::Kind::Absolute) return error.Value;
    if (!mean || *mean <= 0) return std::nullopt;
    return error.Value / 100 * *mean;
}

std::optional<int> NeededRuns(double sd, double error, double confidence) {
    return SmallestRuns([&](int n) { return HalfWidthOf(sd, n, confidence) <= error; });
}

std::optional<int> NeededRunsOfCv(double cv, double error, double confidence) {
    return NeededRuns(cv, error, confidence);
}

RunsNeeded RunsNeededFor(const Summary& summary, const PermittedError& error, double confidence) {
    RunsNeeded result;
    result.Have = summary.N;
    const auto permitted = ErrorInUnit(error, summary.Mean);
    if (!summary.Sd || !permitted) return result;
    result.Needed = NeededRuns(*summary.Sd, *permitted, confidence);
    if (!result.Needed) return result;
    result.StillNeeded = std::max(0, *result.Needed - result.Have);
    result.Enough = *result.StillNeeded == 0 && result.Have >= FewRuns;
    return result;
}

std::vector<RunsSoFar> AfterEachRun(std::span<const double> values, const PermittedError& error, double confidence) {
    std::vector<RunsSoFar> runs;
    for (std::size_t n = 1; n <= values.size(); ++n) {
        const Summary summary = Summarise(values.first(n), confidence);
        runs.push_back({summary, RunsNeededFor(summary, error, confidence)});
    }
    return runs;
}

std::optional<int> RunsForDifference(double sd, double difference, double confidence, double power) {
    if (sd <= 0 || difference == 0) return std::nullopt;
    return SmallestRuns([&](int n) {
        const double degrees = 2.0 * n - 2;
        const double t = StudentOfConfidence(confidence, degrees) + StudentQuantile(power, degrees);
        return t * sd * std::sqrt(2.0 / n) <= std::abs(difference);
    });
}

}  // namespace vantor
