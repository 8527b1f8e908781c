#pragma once

#include <cstdint>

#include "analysis/ProfileTrace.h"
#include "core/AppSettings.h"
#include "core/RunRecords.h"
#include "plots/ProfileGeometry.h"

namespace vantor {

/// What the sensor data screen shows of a run: its speeds over time, the visible part of them and the active data
/// point. Data points count from 1, one a second.
class SensorView {
public:
    /// Shows the whole run with its first point active. Run and settings must outlive the view.
    SensorView(const RunRecord& run, const AppSettings& settings);

    /// Takes over data words that have changed; what is visible stays.
    void WordsChanged();

    const ProfileTrace& Trace() const { return trace_; }
    const ProfileGeometry& Geometry() const { return geometry_; }
    void SetRectangle(const PlotRectangle& rectangle) { geometry_.SetRectangle(rectangle); }

    std::int32_t PointCount() const { return trace_.SampleCount(); }
    /// 0 for a run without points.
    std::int32_t ActivePoint() const { return activePoint_; }
    /// The nearest point that there is. Where it is not visible it comes into the middle, as far as the run goes.
    void SetActivePoint(std::int32_t point);
    /// The point that is nearest to a pixel, 0 for a run without points.
    std::int32_t PointAt(double x) const;

    /// Steps to a shorter (positive) or longer visible part, the whole run at most; the pixel `anchor` keeps its time
    /// as far as possible.
    void Zoom(int steps, double anchor);
    /// The pixel of the active point, or the middle of the plot when the point is not visible.
    double ZoomAnchor() const;
    /// Makes the plot begin at that second, as far as the run goes.
    void ScrollTo(double second) { geometry_.SetOffset(second); }

private:
    int WholeRunStep() const;
    bool IsVisible(double x) const;

    const RunRecord& run_;
    const AppSettings& settings_;
    ProfileTrace trace_;
    ProfileGeometry geometry_;
    std::int32_t activePoint_ = 0;
};

}  // namespace vantor
