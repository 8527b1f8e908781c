#include "plots/VisibleTrace.h"

#include <algorithm>

namespace vantor {

std::vector<TracePoint> VisibleTraceOf(const ProfileTrace& trace, const ProfileGeometry& geometry,
                                       double columnsPerPixel) {
    if (trace.SampleCount() == 0) return {};
    const BoundaryAxis axis = geometry.Axis();
    const std::int32_t first = std::max(trace.SampleAt(axis, geometry.PlaceOf(geometry.Offset())) - 1, 1);
    const std::int32_t last = trace.SampleAt(axis, geometry.PlaceOf(geometry.Offset() + geometry.Visible()));
    // Closer together than this, single samples cannot be told apart.
    constexpr double PixelsPerSample = 3;
    const bool isDense = (last - first) * PixelsPerSample > geometry.Rectangle().Right - geometry.Rectangle().Left;

    // One multiplication a sample instead of the whole way from feet to pixels.
    const double origin = geometry.XOf(0);
    const double pixelsPerUnit = geometry.XOf(geometry.AxisValueOf(1)) - origin;
    return isDense ? ReducedPointsOf(trace, axis, first, last, origin, pixelsPerUnit, columnsPerPixel)
                   : PointsOf(trace, axis, first, last, origin, pixelsPerUnit);
}

}  // namespace vantor
