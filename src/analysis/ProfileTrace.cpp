#include "analysis/ProfileTrace.h"

#include <algorithm>
#include <cmath>

#include "core/RunArithmetic.h"
#include "core/Text.h"
#include "core/modMain.h"

namespace vantor {

ProfileTrace::ProfileTrace(const RunRecord& run, float speedFactor) {
    const auto told = static_cast<std::size_t>(std::max(run.Header.SampleCount, 0));
    const std::span values(run.SampleValues.data(), std::min(told, run.SampleValues.size()));
    const RunArithmetic arithmetic(run.Header.CalConstant, speedFactor);
    std::int32_t distance = 0;
    std::int64_t pulses = 0;
    for (const std::int16_t value : values) {
        const float speed = arithmetic.Speed(value);
        // A damaged calibration or speed factor must not lead to a line that goes backwards or nowhere.
        speeds_.push_back(std::isfinite(speed) ? std::max(speed, 0.0F) : 0.0F);
        distances_.push_back(distance += std::max(arithmetic.DistanceIncrement(value), 0));
        pulses += PulsesOf(value);
    }
    extent_.Feet = std::max(FeetOfPulses(run.Header.CalConstant, pulses), 0);
    extent_.Seconds = SampleCount();
    extent_.TraceFeet = distance;
    TakeMarks(run, values);
}

void ProfileTrace::TakeMarks(const RunRecord& run, std::span<const std::int16_t> values) {
    constexpr int LastName = decltype(RunHeader::SectionName)::LastIndex;
    int node = 0;
    for (std::size_t i = 0; i < values.size(); ++i) {
        ProfileMark mark;
        mark.Sample = static_cast<std::int32_t>(i) + 1;
        mark.IsNode = HasNode(values[i]);
        if (mark.IsNode) {
            if (++node <= LastName) mark.Label = Trim(run.Header.SectionName[node]);
        } else if (HighByteOf(values[i]) > 0) {
            mark.Label = EventCodeLabel(static_cast<std::int16_t>(HighByteOf(values[i])));
        } else {
            continue;
        }
        marks_.push_back(std::move(mark));
    }
}

float ProfileTrace::TopSpeed() const {
    return speeds_.empty() ? 0.0F : *std::max_element(speeds_.begin(), speeds_.end());
}

std::int32_t ProfileTrace::SampleAt(BoundaryAxis axis, double place) const {
    const auto count = static_cast<double>(SampleCount());
    if (axis == BoundaryAxis::Time)
        return static_cast<std::int32_t>(std::clamp(std::ceil(place), 1.0, std::max(1.0, count)));
    const auto reached = std::lower_bound(distances_.begin(), distances_.end(), place);
    return std::min(static_cast<std::int32_t>(reached - distances_.begin()) + 1, SampleCount());
}

namespace {

/// The samples of one pixel column, as they come.
class PixelColumn {
public:
    void Begin(double x, float speed) {
        x_ = x;
        first_ = low_ = high_ = last_ = speed;
    }
    void Take(float speed) {
        low_ = std::min(low_, speed);
        high_ = std::max(high_, speed);
        last_ = speed;
    }
    void AppendTo(std::vector<TracePoint>& points) const {
        points.push_back({x_, first_});
        if (low_ < std::min(first_, last_)) points.push_back({x_, low_});
        if (high_ > std::max(first_, last_)) points.push_back({x_, high_});
        if (last_ != first_) points.push_back({x_, last_});
    }

private:
    double x_ = 0;
    float first_ = 0;
    float low_ = 0;
    float high_ = 0;
    float last_ = 0;
};

}  // namespace

std::vector<TracePoint> PointsOf(const ProfileTrace& trace, BoundaryAxis axis, std::int32_t first, std::int32_t last,
                                 double origin, double pixelsPerUnit) {
    std::vector<TracePoint> points;
    for (std::int32_t sample = first; sample <= last; ++sample)
        points.push_back({origin + trace.PlaceOf(axis, sample) * pixelsPerUnit, trace.SpeedOf(sample)});
    return points;
}

std::vector<TracePoint> ReducedPointsOf(const ProfileTrace& trace, BoundaryAxis axis, std::int32_t first,
                                        std::int32_t last, double origin, double pixelsPerUnit,
                                        double columnsPerPixel) {
    std::vector<TracePoint> points;
    PixelColumn pixels;
    double column = 0;
    for (std::int32_t sample = first; sample <= last; ++sample) {
        const double x = origin + trace.PlaceOf(axis, sample) * pixelsPerUnit;
        const double itsColumn = std::floor(x * columnsPerPixel);
        if (sample > first && itsColumn == column) {
            pixels.Take(trace.SpeedOf(sample));
            continue;
        }
        if (sample > first) pixels.AppendTo(points);
        column = itsColumn;
        pixels.Begin((column + 0.5) / columnsPerPixel, trace.SpeedOf(sample));
    }
    if (first <= last) pixels.AppendTo(points);
    return points;
}

}  // namespace vantor
