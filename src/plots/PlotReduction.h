#pragma once

#include <span>
#include <vector>

#include "plots/PlotMap.h"

namespace vantor {

/// The line through points on its canvas, without those that lie within `tolerance` of the way between others,
/// and without what lies beyond either side of the area. X must not fall from point to point.
std::vector<CanvasPoint> ReducedLine(std::span<const PlotPoint> points, const PlotMap& map, double tolerance);

}  // namespace vantor
