#pragma once

#include <string>
#include <vector>

#include "plots/PlotParts.h"

namespace vantor {

/// How the values of an axis are written.
enum class AxisValues {
    Numbers,
    Minutes,  ///< seconds, as minutes and seconds: 2:30
    Clock     ///< seconds since midnight, as the time of day: 06:53
};

struct AxisTick {
    double Value = 0;
    std::string Text;
};

struct PlotAxis {
    std::string Caption;  ///< with its unit
    PlotRange Whole;
    AxisValues Values = AxisValues::Numbers;
    /// Only values of counted things: the steps are whole.
    bool IsWhole = false;
    /// What has a name and no value: these in the place of round values.
    std::vector<AxisTick> Names = {};
};

/// The round values, or the names, within a range; a round value has at least `least` (values) for itself.
std::vector<AxisTick> AxisTicks(const PlotAxis& axis, const PlotRange& range, double least);
std::string AxisText(AxisValues values, double value, double step);

/// What stands around the area of a plot.
struct PlotAxes {
    std::string Title;  ///< above it; none where it is empty
    PlotAxis Across;
    PlotAxis Up;
    std::vector<PlotSample> Legend = {};
};

/// Where the values of a window lie in a plot that fills a box.
PlotMap MapOf(const TextMeasure& measure, const CanvasBox& box, const PlotAxes& axes, const PlotLook& look,
              const PlotWindow& window);
/// Background, title, legend, axes and grid.
void DrawAxes(Canvas& canvas, const CanvasBox& box, const PlotAxes& axes, const PlotLook& look, const PlotMap& map);

}  // namespace vantor
