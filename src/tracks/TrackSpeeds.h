#pragma once

#include <cstddef>
#include <span>
#include <utility>
#include <vector>

#include "tracks/TrackPoint.h"

namespace vantor {

/// Points of a track at whole seconds, as runs hold them: of those that lie within half a second around one the
/// nearest, with the mean of the speeds that they tell and the first node. Seconds without a point stay away; points
/// without a time are left out.
class WholeSeconds {
public:
    void Add(const TrackPoint& point);
    const std::vector<TrackPoint>& Points() const { return points_; }
    /// Those so far; none are left.
    std::vector<TrackPoint> Take() { return std::exchange(points_, {}); }

private:
    std::vector<TrackPoint> points_;
    double nearest_ = 0;  ///< how far the last point was from its second
    double speeds_ = 0;   ///< of that second, their sum
    double told_ = 0;     ///< and how many there are
};
std::vector<TrackPoint> WholeSecondsOf(std::span<const TrackPoint> points);

/// How many speeds were found.
struct FilledSpeeds {
    std::size_t Told = 0;           ///< by the file
    std::size_t FromPositions = 0;  ///< of these Standing by the rule below
    std::size_t Standing = 0;
    std::size_t None = 0;
};

/// Gives points without a speed one from their positions, segment by segment: the distance from the point before over
/// the time since. A receiver that stands still wanders: where the positions of 4 s and more lie around one place
/// (see docs/methods.md), the vehicle stood there and its speed is 0. Where positions of a point a second have jitter,
/// the speeds between standing are smoothed, their sum and all standing stay.
FilledSpeeds FillSpeeds(std::span<TrackPoint> points);

}  // namespace vantor
