#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

#include "analysis/ProfileTrace.h"
#include "core/Axis.h"
#include "core/Units.h"

namespace vantor {

/// What one step of the horizontal axis may stand for, in feet, metres or seconds: the scale list, in its order.
inline constexpr std::array<int, 15> ScaleSteps = {5,   10,  20,   30,   40,   50,    100,  200,
                                                   500, 750, 1000, 2000, 5000, 10000, 20000};
/// Scale steps across the width of the plot.
inline constexpr int StepsAcross = 10;

/// Position in ScaleSteps of the smallest step with which a length fits across the plot; the last where none does.
std::size_t SmallestScaleShowing(double length);

/// The plot area in pixels: the speed is 0 at the baseline, which lies below the top.
struct PlotRectangle {
    double Left = 0;
    double Top = 0;
    double Right = 1;
    double Baseline = 1;
};

/// Values and pixels of the speed profile. A place is in feet or seconds (that is, a sample number), as the axis goes;
/// an axis value is a place in the shown unit. A boundary is a whole place.
class ProfileGeometry {
public:
    ProfileGeometry() = default;
    ProfileGeometry(vantor::Units units, const RunExtent& extent) : units_(units), extent_(extent) {}

    vantor::Units Units() const { return units_; }
    BoundaryAxis Axis() const { return axis_; }
    /// That of lengths, or "Secs.".
    const char* AxisUnit() const { return axis_ == BoundaryAxis::Time ? "Secs." : units_.LengthName(); }
    int ScaleStep() const { return scaleStep_; }
    const PlotRectangle& Rectangle() const { return rectangle_; }
    const SpeedAxis& Speeds() const { return speeds_; }

    /// Shows the whole run along the other axis, or along this one.
    void SetAxis(BoundaryAxis axis);
    /// At least one pixel is kept in each direction.
    void SetRectangle(const PlotRectangle& rectangle);
    /// Sets the speed axis for the highest speed to be shown, miles per hour.
    void SetTopSpeed(double mph);
    /// Sets the scale so that the axis value at `anchor` (a pixel) stays where it is, as far as the run goes.
    void SetScaleStep(int scaleStep, double anchor);
    /// Scrolls so that the axis begins at a value from 0 to MostOffset().
    void SetOffset(double axisValue);

    double Offset() const { return offset_; }
    double MostOffset() const;
    /// Axis values across the plot, and to the end of the run.
    double Visible() const { return static_cast<double>(scaleStep_) * StepsAcross; }
    double AxisLength() const;

    float PixelsPerStep() const;
    float PixelsPerMph() const;

    double XOf(double axisValue) const;
    double AxisValueAt(double x) const;
    double YOf(double mph) const;

    double AxisValueOf(double place) const;
    double PlaceOf(double axisValue) const;

    /// The boundary under a pixel, halves to even: 0 at or left of the start of the axis, the total length or the
    /// duration beyond the end of the run.
    std::int32_t BoundaryAt(double x) const { return BoundaryOf(AxisValueAt(x)); }
    std::int32_t BoundaryOf(double axisValue) const;
    /// The total length or the duration.
    std::int32_t LastBoundary() const;

    /// The ideal speed under a pixel, whole miles per hour; nothing outside the plot's top and baseline.
    std::optional<std::int32_t> IdealSpeedAt(double y) const;

private:
    vantor::Units units_;
    RunExtent extent_;
    BoundaryAxis axis_ = BoundaryAxis::Distance;
    PlotRectangle rectangle_;
    SpeedAxis speeds_;
    int scaleStep_ = ScaleSteps.front();
    double offset_ = 0;
};

}  // namespace vantor
