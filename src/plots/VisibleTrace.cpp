#include "plots/VisibleTrace.h"

#include <algorithm>

namespace vantor {

VisibleTrace VisibleTraceOf(const ProfileTrace& trace, const ProfileGeometry& geometry, double columnsPerPixel) {
    VisibleTrace visible;
    if (trace.SampleCount() == 0) return visible;
    const BoundaryAxis axis = geometry.Axis();
    const std::int32_t first = std::max(trace.SampleAt(axis, geometry.PlaceOf(geometry.Offset())) - 1, 1);
    const std::int32_t last = trace.SampleAt(axis, geometry.PlaceOf(geometry.Offset() + geometry.Visible()));
    // Closer together than this, single samples cannot be told apart.
    constexpr double PixelsPerSample = 3;
    visible.IsDense = (last - first) * PixelsPerSample > geometry.Rectangle().Right - geometry.Rectangle().Left;

    // One multiplication a sample instead of the whole way from feet to pixels.
    const double origin = geometry.XOf(0);
    const double pixelsPerUnit = geometry.XOf(geometry.AxisValueOf(1)) - origin;
    visible.Points = visible.IsDense ? ReducedPointsOf(trace, axis, first, last, origin, pixelsPerUnit, columnsPerPixel)
                                     : PointsOf(trace, axis, first, last, origin, pixelsPerUnit);
    return visible;
}

}  // namespace vantor
