#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "analysis/DelayStatistics.h"
#include "core/RunRecords.h"

namespace vantor {

/// How far a run goes.
struct RunExtent {
    std::int32_t Feet = 0;       ///< total length
    std::int32_t Seconds = 0;    ///< duration
    std::int32_t TraceFeet = 0;  ///< where its trace ends: the sum of the rounded steps, near the total length
};

/// A node or a pressed key of a run.
struct ProfileMark {
    std::int32_t Sample = 0;  ///< from 1
    bool IsNode = false;
    std::string Label;  ///< the node's name, or the key's label; may be empty
};

/// What the speed profile draws of a run, worked out once. Samples count from 1.
class ProfileTrace {
public:
    ProfileTrace() = default;
    /// `speedFactor` from feet per second to miles per hour. Samples beyond the header's count are left out.
    ProfileTrace(const RunRecord& run, float speedFactor);

    std::int32_t SampleCount() const { return static_cast<std::int32_t>(speeds_.size()); }
    /// False for a run without samples and for one that never moves.
    bool HasMovement() const { return extent_.Feet > 0 && extent_.TraceFeet > 0; }
    const RunExtent& Extent() const { return extent_; }
    /// Miles per hour.
    float TopSpeed() const;
    float SpeedOf(std::int32_t sample) const { return speeds_[static_cast<std::size_t>(sample - 1)]; }
    /// Feet from the start of the run to the end of a sample.
    std::int32_t DistanceOf(std::int32_t sample) const { return distances_[static_cast<std::size_t>(sample - 1)]; }
    const std::vector<ProfileMark>& Marks() const { return marks_; }

    /// The first sample at or behind a place, the last one beyond the end; feet or seconds, as the axis goes.
    std::int32_t SampleAt(BoundaryAxis axis, double place) const;
    /// Where a sample stands along the axis, in feet or seconds.
    double PlaceOf(BoundaryAxis axis, std::int32_t sample) const {
        return axis == BoundaryAxis::Time ? sample : DistanceOf(sample);
    }

private:
    void TakeMarks(const RunRecord& run, std::span<const std::int16_t> values);

    std::vector<float> speeds_;
    std::vector<std::int32_t> distances_;
    std::vector<ProfileMark> marks_;
    RunExtent extent_;
};

/// A point of the drawn trace: its pixel from left to right, and its speed in miles per hour.
struct TracePoint {
    double X = 0;
    float Speed = 0;
};

/// The speeds of samples `first` to `last`. Their x is `origin` plus their place along the axis times `pixelsPerUnit`.
std::vector<TracePoint> PointsOf(const ProfileTrace& trace, BoundaryAxis axis, std::int32_t first, std::int32_t last,
                                 double origin, double pixelsPerUnit);
/// As PointsOf, the samples of one pixel column reduced to the first, the lowest, the highest and the last of them,
/// which gives the same picture. `columnsPerPixel` is how many columns a unit of x has.
std::vector<TracePoint> ReducedPointsOf(const ProfileTrace& trace, BoundaryAxis axis, std::int32_t first,
                                        std::int32_t last, double origin, double pixelsPerUnit, double columnsPerPixel);

}  // namespace vantor
