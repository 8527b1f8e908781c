#include "editing/SensorView.h"

#include <algorithm>
#include <array>

#include "core/Numeric.h"

namespace vantor {
namespace {

/// Seconds a step of the time axis: from single data points to the longest run.
constexpr std::array<int, 25> ZoomSteps = {1,   2,   3,   4,   5,   7,   10,  15,   20,   30,   40,   60,  80,
                                           100, 150, 200, 300, 400, 600, 800, 1000, 1500, 2000, 3000, 4000};

/// Position of the first step that is at least so long, or of the last step.
int ZoomStepFrom(double seconds) {
    const auto reached = std::lower_bound(ZoomSteps.begin(), ZoomSteps.end() - 1, seconds);
    return static_cast<int>(reached - ZoomSteps.begin());
}

}  // namespace

SensorView::SensorView(const RunRecord& run, const AppSettings& settings)
    : run_(run), settings_(settings), trace_(run, settings.SpeedFactor) {
    geometry_ = ProfileGeometry({settings.MetricUnits != 0}, trace_.Extent());
    geometry_.SetAxis(BoundaryAxis::Time);
    geometry_.SetTopSpeed(trace_.TopSpeed());
    geometry_.SetScaleStep(ZoomSteps[static_cast<std::size_t>(WholeRunStep())], 0);
    SetActivePoint(1);
}

void SensorView::WordsChanged() {
    trace_ = ProfileTrace(run_, settings_.SpeedFactor);
    geometry_.SetTopSpeed(trace_.TopSpeed());
}

int SensorView::WholeRunStep() const { return ZoomStepFrom(static_cast<double>(PointCount()) / StepsAcross); }

bool SensorView::IsVisible(double x) const {
    return x >= geometry_.Rectangle().Left && x <= geometry_.Rectangle().Right;
}

void SensorView::SetActivePoint(std::int32_t point) {
    activePoint_ = std::min(std::max(point, 1), PointCount());
    if (!IsVisible(geometry_.XOf(activePoint_))) geometry_.SetOffset(activePoint_ - geometry_.Visible() / 2);
}

std::int32_t SensorView::PointAt(double x) const {
    const double last = PointCount();
    return Round32(std::min(std::max(geometry_.AxisValueAt(x), 1.0), last));
}

void SensorView::Zoom(int steps, double anchor) {
    const int step = std::clamp(ZoomStepFrom(geometry_.ScaleStep()) - steps, 0, WholeRunStep());
    geometry_.SetScaleStep(ZoomSteps[static_cast<std::size_t>(step)], anchor);
}

double SensorView::ZoomAnchor() const {
    const double x = geometry_.XOf(activePoint_);
    return IsVisible(x) ? x : (geometry_.Rectangle().Left + geometry_.Rectangle().Right) / 2;
}

}  // namespace vantor
