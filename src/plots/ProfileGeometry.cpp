#include "plots/ProfileGeometry.h"

#include <algorithm>
#include <cmath>

#include "core/Numeric.h"

namespace vantor {
std::size_t SmallestScaleShowing(double length) {
    const auto fits = [&](int step) { return static_cast<double>(step) * StepsAcross >= length; };
    const auto smallest = std::find_if(ScaleSteps.begin(), ScaleSteps.end() - 1, fits);
    return static_cast<std::size_t>(smallest - ScaleSteps.begin());
}

void ProfileGeometry::SetAxis(BoundaryAxis axis) {
    axis_ = axis;
    scaleStep_ = ScaleSteps[SmallestScaleShowing(AxisLength())];
    offset_ = 0;
}

void ProfileGeometry::SetRectangle(const PlotRectangle& rectangle) {
    rectangle_ = rectangle;
    rectangle_.Right = std::max(rectangle.Right, rectangle.Left + 1);
    rectangle_.Baseline = std::max(rectangle.Baseline, rectangle.Top + 1);
}

void ProfileGeometry::SetTopSpeed(double mph) { speeds_ = NiceSpeedAxis(units_.SpeedOfMph(mph)); }

void ProfileGeometry::SetScaleStep(int scaleStep, double anchor) {
    const double kept = AxisValueAt(anchor);
    scaleStep_ = scaleStep;
    SetOffset(offset_ + kept - AxisValueAt(anchor));
}

void ProfileGeometry::SetOffset(double axisValue) { offset_ = std::clamp(axisValue, 0.0, MostOffset()); }

double ProfileGeometry::MostOffset() const { return std::max(0.0, AxisLength() - Visible()); }

double ProfileGeometry::AxisLength() const {
    return axis_ == BoundaryAxis::Time ? extent_.Seconds
                                       : units_.LengthOfFeet(std::max(extent_.Feet, extent_.TraceFeet));
}

float ProfileGeometry::PixelsPerStep() const {
    return static_cast<float>((rectangle_.Right - rectangle_.Left) / StepsAcross);
}

float ProfileGeometry::PixelsPerMph() const {
    return static_cast<float>((rectangle_.Baseline - rectangle_.Top) / units_.MphOfSpeed(speeds_.Maximum));
}

double ProfileGeometry::XOf(double axisValue) const {
    return rectangle_.Left + (axisValue - offset_) / scaleStep_ * static_cast<double>(PixelsPerStep());
}

double ProfileGeometry::AxisValueAt(double x) const {
    return (x - rectangle_.Left) / static_cast<double>(PixelsPerStep()) * scaleStep_ + offset_;
}

double ProfileGeometry::YOf(double mph) const {
    return rectangle_.Baseline - mph * static_cast<double>(PixelsPerMph());
}

double ProfileGeometry::AxisValueOf(double place) const {
    return axis_ == BoundaryAxis::Time ? place : units_.LengthOfFeet(place);
}

double ProfileGeometry::PlaceOf(double axisValue) const {
    return axis_ == BoundaryAxis::Time ? axisValue : units_.FeetOfLength(axisValue);
}

std::int32_t ProfileGeometry::BoundaryOf(double axisValue) const {
    return Round32(std::clamp(PlaceOf(axisValue), 0.0, static_cast<double>(LastBoundary())));
}

std::int32_t ProfileGeometry::LastBoundary() const {
    return axis_ == BoundaryAxis::Time ? extent_.Seconds : extent_.Feet;
}

std::optional<std::int32_t> ProfileGeometry::IdealSpeedAt(double y) const {
    if (y < rectangle_.Top || y > rectangle_.Baseline) return std::nullopt;
    return Round32((rectangle_.Baseline - y) / static_cast<double>(PixelsPerMph()));
}

}  // namespace vantor
