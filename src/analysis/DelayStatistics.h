#pragma once

#include <cstdint>
#include <optional>

#include "core/AppSettings.h"
#include "core/RunRecords.h"
#include "core/StudyRecords.h"
#include "core/Units.h"

namespace vantor {

/// Which values of the boundaries were set by the user: distances in feet, or sample numbers.
enum class BoundaryAxis { Distance, Time };

/// The boundaries of the run being analysed, as the speed profile keeps them while it is open.
struct PlotState {
    BoundaryAxis Axis = BoundaryAxis::Distance;
    std::int32_t CDStartSample = 0;  ///< from 1
    std::int32_t CDEndSample = 0;

    bool operator==(const PlotState&) const = default;
};

/// The boundaries of an entry before anything is computed: the samples by which the run has come as far, the last one
/// beyond its end; 0 for a boundary that is not set. A computation that does not find a boundary leaves its sample as
/// it is, so a study's run must start from here.
PlotState PlacedBoundaries(const RunRecord& run, const StudyRunEntry& entry);

/// The part of a run between its boundaries, as a computation finds them.
struct PartBetween {
    double Feet = 0;
    std::int32_t Seconds = 0;
    /// Mean speed, miles per hour; nothing where no second lies between them.
    std::optional<double> Speed() const {
        return Seconds > 0 ? std::optional(Feet / Seconds / FeetPerSecondOfMph) : std::nullopt;
    }
};

/// The samples on which a computation finds the boundaries; nothing for one that it never reaches.
struct FoundBoundaries {
    std::optional<std::int32_t> Start;
    std::optional<std::int32_t> End;
    std::int32_t StopDelay = 0;  ///< between them, seconds at or below the stop speed of the settings
    std::int32_t Stops = 0;      ///< of those seconds, the series that no faster one interrupts
};
/// A boundary that is not set is found at once. Error 9 for a run too short to look at.
FoundBoundaries FindBoundaries(const RunRecord& run, const PlotState& plot, const StudyRunEntry& entry,
                               const AppSettings& settings = {});

/// Computes one run between its boundaries and writes its entry: travel time against the time that the ideal speed
/// would have taken (control delay), samples at or below the stop speed (stop delay), and the grade. The boundary
/// values of the other axis follow. Returns the ideal speed, miles per hour. Formulas: docs/methods.md, "One run".
///
/// Errors: 6 for a figure that does not fit, 9 for a run too short to look at, 11 for an ideal speed of 0. What was
/// written to `entry` and `plot` before the error stays. A boundary that lies in the run's last second or beyond is not
/// found: its sample in `plot` keeps the value it had.
float ComputeRunDelay(const RunRecord& run, const AppSettings& settings, PlotState& plot, StudyRunEntry& entry);

/// The distance from the run's start after each sample, sample 1 first; feet.
OneBased<std::int32_t> RunningDistances(const RunRecord& run);

}  // namespace vantor
