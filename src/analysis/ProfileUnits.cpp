#include "analysis/ProfileUnits.h"

#include <algorithm>
#include <cmath>

namespace vantor {

SpeedAxis NiceSpeedAxis(double topSpeed) {
    constexpr double Room = 1.1;
    constexpr int MostGridLines = 8;
    constexpr double Most = 5000.0 * MostGridLines;
    const double needed = std::min(std::max(10.0, topSpeed * Room), Most);
    SpeedAxis axis;
    for (const int step : {5, 10, 20, 50, 100, 200, 500, 1000, 2000, 5000}) {
        axis = {static_cast<int>(std::ceil(needed / step)) * step, step};
        if (axis.Maximum / step <= MostGridLines) break;
    }
    return axis;
}

}  // namespace vantor
