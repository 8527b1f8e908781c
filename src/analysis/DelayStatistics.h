#pragma once

#include <cstdint>

#include "core/AppSettings.h"
#include "core/RunRecords.h"
#include "core/StudyRecords.h"

namespace vantor {

/// Which values of the boundaries were set by the user: distances in feet, or sample numbers.
enum class BoundaryAxis { Distance, Time };

/// The boundaries of the run being analysed, as the speed profile keeps them while it is open.
struct PlotState {
    BoundaryAxis Axis = BoundaryAxis::Distance;
    std::int32_t CDStartSample = 0;  ///< from 1
    std::int32_t CDEndSample = 0;
};

/// The ideal speed that a computation used, miles per hour, and as the whole number that is shown for it.
struct IdealSpeed {
    float Speed = 0;
    std::int16_t Shown = 0;
};

/// Computes one run between its boundaries and writes its entry: travel time against the time that the ideal speed
/// would have taken (control delay), samples at or below the stop speed (stop delay), and the grade. The boundary
/// values of the other axis follow.
///
/// Errors: 6 for a figure that does not fit, 9 for a run too short to look at, 11 for an ideal speed of 0. What was
/// written to `entry` and `plot` before the error stays.
IdealSpeed ComputeRunDelay(const RunRecord& run, const AppSettings& settings, PlotState& plot, StudyRunEntry& entry);

/// The distance from the run's start after each sample, sample 1 first; feet.
OneBased<std::int32_t> RunningDistances(const RunRecord& run);

}  // namespace vantor
