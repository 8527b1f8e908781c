#pragma once

#include <span>
#include <vector>

#include "tracks/TrackPoint.h"

namespace vantor {

/// Longer times between two points are no interval of a logger, seconds.
inline constexpr double LongestInterval = 30;

/// The interval of a logger that writes no point every second: the middle of the times between its points, where that
/// is 2 s to LongestInterval; 0 for any other.
double IntervalOf(std::span<const TrackPoint> points);

/// Points at whole seconds (WholeSecondsOf) with their speeds (FillSpeeds), and, of a logger with an interval, the
/// seconds between those that lie no more than one and a half of it apart: on the way between the positions, at speeds
/// that lead from one point's to the next one's and cover that way. See docs/methods.md. Without positions the speeds
/// go in a line. `told` are the same points with no other speeds than those that the file tells.
std::vector<TrackPoint> WithSecondsBetween(std::span<const TrackPoint> points, std::span<const TrackPoint> told);

}  // namespace vantor
