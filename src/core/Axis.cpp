#include "core/Axis.h"

#include <algorithm>
#include <cmath>

namespace vantor {

int RoundStep(double least) {
    int decade = 1;
    while (true) {
        for (const int factor : {1, 2, 5})
            if (factor * decade >= least) return factor * decade;
        decade *= 10;
    }
}

double RoundFraction(double least) {
    constexpr double Hair = 1 - 1e-9;
    const double exponent = std::floor(std::log10(least));
    for (const double factor : {1, 2, 5}) {
        // Divided, so that tenths are as exact as they can be.
        const double step = exponent < 0 ? factor / std::pow(10, -exponent) : factor * std::pow(10, exponent);
        if (step >= least * Hair) return step;
    }
    return std::pow(10, exponent + 1);
}

SpeedAxis NiceSpeedAxis(double topSpeed) {
    constexpr double Room = 1.1;
    constexpr double LeastTop = 10;
    constexpr double MostGridLines = 8;
    constexpr double LeastStep = 5;
    constexpr double MostStep = 5000;
    const double top = std::min(std::max(LeastTop, topSpeed * Room), MostStep * MostGridLines);
    const int step = RoundStep(std::max(LeastStep, top / MostGridLines));
    return {static_cast<int>(std::ceil(top / step)) * step, step};
}

}  // namespace vantor
