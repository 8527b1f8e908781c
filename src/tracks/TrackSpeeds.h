#pragma once

#include <span>
#include <vector>

#include "tracks/TrackPoint.h"

namespace vantor {

/// Points of a track at whole seconds, as runs hold them: of those that lie within half a second around one the
/// nearest, with the mean of the speeds that they tell and the first node. Seconds without a point stay away; points
/// without a time are left out.
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
/// (see docs/methods.md), the vehicle stood there and its speed is 0.
FilledSpeeds FillSpeeds(std::span<TrackPoint> points);

}  // namespace vantor
