#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "core/RunRecords.h"
#include "core/StudyOptions.h"

namespace vantor {

/// What a run, or a section of it, measures. Distance is the sum of the seconds' distances, the axis of the speed
/// profile. Sections add up to their run in each of the four counts.
struct PieceMeasures {
    std::int32_t TravelTime = 0;   ///< its seconds, stops included
    std::int32_t Distance = 0;     ///< feet
    std::int32_t StoppedTime = 0;  ///< seconds slower than the stop speed
    std::int32_t Stops = 0;        ///< that begin in it

    std::int32_t RunningTime() const { return TravelTime - StoppedTime; }
    // Miles per hour, percent; nothing where the divisor is 0.
    std::optional<double> TravelSpeed() const;
    std::optional<double> RunningSpeed() const;
    std::optional<double> PercentStopped() const;

    bool operator==(const PieceMeasures&) const = default;
};

struct RunMeasures {
    PieceMeasures Whole;
    std::vector<PieceMeasures> Sections;      ///< one more than nodes; the second with the node closes its section
    std::vector<std::int32_t> NodeTimes;      ///< seconds, which are sample numbers
    std::vector<std::int32_t> NodeDistances;  ///< feet

    bool operator==(const RunMeasures&) const = default;
};

/// `speedFactor` as of the settings. A stop lasts from the first second below the stop speed to the first at or above
/// the go speed; a run that begins below the stop speed begins with a stop.
RunMeasures MeasureRun(const RunRecord& run, float speedFactor, const StopSpeeds& speeds);

/// Miles per hour of feet in seconds; nothing for no time.
std::optional<double> SpeedOf(double feet, double seconds);

}  // namespace vantor
