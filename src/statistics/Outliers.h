#pragma once

#include <cstddef>
#include <optional>
#include <span>

namespace vantor {

/// Fewer values say nothing about one that lies apart.
inline constexpr int LeastForGrubbs = 7;

/// Grubbs's test, two-sided, of the value that lies farthest from the mean. It flags a run and drops none; it is not
/// repeated on the rest.
struct GrubbsTest {
    std::size_t Index = 0;  ///< of that value
    double G = 0;           ///< its distance from the mean in standard deviations
    double Critical = 0;
    bool IsOutlier() const { return G > Critical; }
};
/// Nothing below LeastForGrubbs values, and where all are equal.
std::optional<GrubbsTest> Grubbs(std::span<const double> values, double confidence);

/// The G that n values without an outlier exceed with the given probability; n from 3.
double GrubbsCritical(int n, double alpha, int sides = 2);

}  // namespace vantor
