#pragma once

#include <vector>

#include "analysis/ProfileTrace.h"
#include "plots/ProfileGeometry.h"

namespace vantor {

/// The visible part of a trace, one sample beyond either side of the plot included.
struct VisibleTrace {
    std::vector<TracePoint> Points;
    /// There are so many samples that those of one pixel column are reduced.
    bool IsDense = false;
};

/// `columnsPerPixel` is how many device pixels a pixel has in its width.
VisibleTrace VisibleTraceOf(const ProfileTrace& trace, const ProfileGeometry& geometry, double columnsPerPixel);

}  // namespace vantor
