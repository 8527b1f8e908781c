#pragma once

#include "plots/Plot.h"
#include "plots/ProfileGeometry.h"
#include "plots/ProfileLines.h"

namespace vantor {

/// The area of a profile that fills a box, on whole units: above it rows for title, legend, the names of the nodes and
/// the labels of the boundaries, below it those of the axis.
CanvasBox ProfileAreaOf(const TextMeasure& measure, const CanvasBox& box, const PlotLook& look);

/// The axis from 0 to the highest of the speeds, whose values are miles per hour; and the axis along the run as it is
/// scrolled and scaled.
PlotAxis SpeedsUp(const SpeedAxis& speeds, const Units& units);
PlotAxis ScaleAcross(const ProfileGeometry& geometry);

/// The grid of a run's speeds with its numbers, those at the left from `left` on.
void DrawSpeedGrid(Canvas& canvas, const PlotAxis& axis, const PlotLook& look, const PlotMap& map, double left);
/// The grid along the run with its numbers below the area, up to `right`; one that would meet the one before is left
/// out.
void DrawScaleGrid(Canvas& canvas, const PlotAxis& axis, const PlotLook& look, const PlotMap& map, double right);

/// The speeds of a run with the surface under them.
struct SpeedTrace : PlotPart {
    std::vector<PlotPoint> Points;  ///< upright in miles per hour
    double Opacity = 0.14;          ///< of the surface

    void Draw(Canvas& canvas, const PlotMap& map, const PlotLook& look) const override;
};
/// The part of a trace that is in view; a column of it has as many of its points as `columnsPerPixel` lets one see.
SpeedTrace VisibleSpeeds(const ProfileTrace& trace, const ProfileGeometry& geometry, double columnsPerPixel);

/// Upright lines with their names in a row above the area.
struct ProfileNodes : PlotPart {
    std::vector<AxisTick> Nodes;  ///< from left to right

    void Draw(Canvas& canvas, const PlotMap& map, const PlotLook& look) const override;
};

/// Triangles on the baseline with the labels of the keys.
struct ProfileKeys : PlotPart {
    std::vector<AxisTick> Keys;  ///< from left to right

    void Draw(Canvas& canvas, const PlotMap& map, const PlotLook& look) const override;
};

/// The lines where they lie on a map.
struct ProfileLinesPart : PlotPart {
    ProfileLinePlaces Lines;  ///< their places are values: along the run, of the ideal speed in miles per hour

    void Draw(Canvas& canvas, const PlotMap& map, const PlotLook& look) const override;
};

/// The axes of a profile, and what its legend explains.
struct ProfileAxes {
    PlotAxes Axes;  ///< the caption of the speeds stands beside the legend, or where there is none, above the numbers
    std::string Unit;  ///< at the right below the area
};
std::vector<PlotSample> ProfileLegend(bool hasNodes, bool hasKeys);
/// A plot without parts yet.
Plot EmptyProfilePlot(ProfileAxes axes);

/// All of the profile's screen that stays while a line is dragged: axes, trace, nodes, keys, legend. The box is the one
/// that its geometry was placed in.
Plot ProfilePlot(const SpeedProfile& profile, double columnsPerPixel);

}  // namespace vantor
