#include "statistics/Outliers.h"

#include <cmath>

#include "statistics/Distributions.h"
#include "statistics/Summary.h"

namespace vantor {

double GrubbsCritical(int n, double alpha, int sides) {
    const double t = StudentQuantile(1 - alpha / (sides * n), n - 2);
    return (n - 1) / std::sqrt(n) * std::sqrt(t * t / (n - 2 + t * t));
}

std::optional<GrubbsTest> Grubbs(std::span<const double> values, double confidence) {
    const Summary summary = Summarise(values, confidence);
    if (summary.N < LeastForGrubbs || *summary.Sd == 0) return std::nullopt;
    GrubbsTest test;
    for (std::size_t i = 0; i < values.size(); ++i) {
        const double g = std::abs(values[i] - *summary.Mean) / *summary.Sd;
        if (g <= test.G) continue;
        test.G = g;
        test.Index = i;
    }
    test.Critical = GrubbsCritical(summary.N, AlphaOf(confidence));
    return test;
}

}  // namespace vantor
