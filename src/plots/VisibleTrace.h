#pragma once

#include <vector>

#include "analysis/ProfileTrace.h"
#include "plots/ProfileGeometry.h"

namespace vantor {

/// The visible part of a trace, one sample beyond either side of the plot included. Where there are so many samples
/// that they cannot be told apart, those of one pixel column are reduced. `columnsPerPixel` is how many device pixels a
/// pixel has in its width.
std::vector<TracePoint> VisibleTraceOf(const ProfileTrace& trace, const ProfileGeometry& geometry,
                                       double columnsPerPixel);

}  // namespace vantor
