#include "tracks/TrackSmoothing.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <numeric>
#include <vector>

namespace vantor {
namespace {

/// The mean over three seconds, taken twice.
constexpr std::array Weights = {1.0 / 9, 2.0 / 9, 3.0 / 9, 2.0 / 9, 1.0 / 9};
/// Metres; below it the smoothing of starts and stops would take more than it gives.
constexpr double LeastJitter = 0.22;

}  // namespace

double JitterOf(std::span<const double> steps) {
    constexpr std::size_t Fewest = 7;
    if (steps.size() < Fewest) return 0;
    // Fourth differences of positions are next to nothing where a vehicle drives, and of noise they have the variance
    // times 1 + 16 + 36 + 16 + 1.
    const double noiseOfOne = std::sqrt(70.0);
    constexpr double MedianOfNormal = 0.6745;
    std::vector<double> differences(steps.size() - 3);
    for (std::size_t i = 0; i < differences.size(); ++i)
        differences[i] = std::fabs(steps[i + 3] - 3 * steps[i + 2] + 3 * steps[i + 1] - steps[i]);
    const auto middle = differences.begin() + static_cast<std::ptrdiff_t>(differences.size() / 2);
    std::ranges::nth_element(differences, middle);
    return *middle / MedianOfNormal / noiseOfOne;
}

void SmoothSteps(std::span<double> steps, const StepsBeside& beside) {
    if (JitterOf(steps) < LeastJitter) return;
    constexpr std::size_t Reach = Weights.size() / 2;
    std::vector<double> wide(Reach, beside.StandsBefore ? 0 : steps.front());
    wide.insert(wide.end(), steps.begin(), steps.end());
    wide.insert(wide.end(), Reach, beside.StandsBehind ? 0 : steps.back());
    const double told = std::accumulate(steps.begin(), steps.end(), 0.0);
    for (std::size_t i = 0; i < steps.size(); ++i)
        steps[i] =
            std::inner_product(Weights.begin(), Weights.end(), wide.begin() + static_cast<std::ptrdiff_t>(i), 0.0);
    const double share = told / std::accumulate(steps.begin(), steps.end(), 0.0);
    for (double& step : steps) step *= share;
}

}  // namespace vantor
