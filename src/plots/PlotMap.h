#pragma once

#include <algorithm>

#include "core/ports/Canvas.h"

namespace vantor {

/// A pair of values of a plot's two axes.
struct PlotPoint {
    double X = 0;
    double Y = 0;
};

struct PlotRange {
    double Low = 0;
    double High = 1;

    double Span() const { return High - Low; }
    bool operator==(const PlotRange&) const = default;
};

/// The values that are in view: across from left to right, up from the bottom.
struct PlotWindow {
    PlotRange Across;
    PlotRange Up;

    bool operator==(const PlotWindow&) const = default;
};

/// The part of a window that is zoomed in by `factor` about a point, which keeps its place. It leaves `whole` nowhere
/// and shows at least a five-hundredth of it; `up` tells whether the upright axis zooms, too.
PlotWindow ZoomedWindow(const PlotWindow& shown, const PlotWindow& whole, PlotPoint about, double factor, bool up);
/// The window moved by so much, as far as `whole` goes.
PlotWindow MovedWindow(const PlotWindow& shown, const PlotWindow& whole, double across, double up);

/// Where values lie on a canvas.
class PlotMap {
public:
    PlotMap() = default;
    PlotMap(const CanvasBox& area, const PlotWindow& window);
    /// A mapping onto whole units, halves to even; one outside 16 bits is Overflow (error 6). `origin` is where both
    /// values are 0, the scales are units to the value, upwards from the origin.
    static PlotMap OnWholeUnits(const CanvasBox& area, CanvasPoint origin, float across, float up);

    /// Between the axes.
    const CanvasBox& Area() const { return area_; }
    double XOf(double value) const { return Unit(value * across_ + origin_.X); }
    double YOf(double value) const { return Unit(origin_.Y - up_ * value); }
    CanvasPoint Of(PlotPoint point) const { return {XOf(point.X), YOf(point.Y)}; }
    PlotPoint ValueAt(CanvasPoint place) const;
    PlotWindow Window() const;

private:
    double Unit(double place) const { return isWhole_ ? WholeUnit(place) : place; }
    static double WholeUnit(double place);

    CanvasBox area_{0, 0, 1, 1};
    CanvasPoint origin_;
    double across_ = 1;
    double up_ = 1;
    bool isWhole_ = false;
};

}  // namespace vantor
