#include "analysis/DelayStatistics.h"

#include <algorithm>

#include "core/Numeric.h"
#include "core/RunArithmetic.h"
#include "core/Units.h"
#include "core/modMain.h"

namespace vantor {
namespace {

struct StoppedTime {
    std::int32_t& Seconds;
    std::int32_t Stops = 0;
    bool IsStopped = false;

    void Count(bool isStopped) {
        if (isStopped) ++Seconds;
        if (isStopped && !IsStopped) ++Stops;
        IsStopped = isStopped;
    }
};

/// Walks along a run's samples with the running distance that both boundary scans share.
class BoundaryScan {
public:
    BoundaryScan(const RunRecord& run, const AppSettings& settings, const PlotState& plot)
        : run_(run),
          arithmetic_(run.Header.CalConstant, settings.SpeedFactor),
          threshold_(static_cast<float>(settings.StopSpeedThreshold)),
          axis_(plot.Axis) {}

    struct Boundary {
        bool Found = false;
        std::int32_t Sample = 0;
        std::int32_t Distance = 0;
        float Speed = 0;
    };

    /// Scans on from the current sample. The end scan begins on the sample at which the start scan stopped and adds
    /// its distance a second time: this double count is part of the result, so that figures match earlier studies.
    Boundary Find(std::int32_t boundarySample, std::int32_t boundaryDistance, StoppedTime* stopped) {
        do {
            const std::int16_t value = run_.SampleValues[sample_];
            distance_ = Add32(distance_, arithmetic_.DistanceIncrement(value));
            const float speed = arithmetic_.Speed(value);
            if (stopped != nullptr) stopped->Count(speed <= threshold_);
            const bool reached =
                axis_ == BoundaryAxis::Time ? sample_ >= boundarySample : distance_ >= boundaryDistance;
            if (reached) return {true, sample_, distance_, speed};
            ++sample_;
            // A boundary is never found on the last sample, but where the start scan ended there.
        } while (sample_ < run_.Header.SampleCount);
        return {};
    }

private:
    const RunRecord& run_;
    RunArithmetic arithmetic_;
    float threshold_;
    BoundaryAxis axis_;
    std::int32_t sample_ = 1;
    std::int32_t distance_ = 0;
};

void TakeBoundary(const BoundaryScan::Boundary& boundary, BoundaryAxis axis, std::int32_t& sample,
                  std::int32_t& distance) {
    if (!boundary.Found) return;
    if (axis == BoundaryAxis::Time)
        distance = boundary.Distance;
    else
        sample = boundary.Sample;
}

float IdealSpeedOf(StudyRunEntry& entry, float startSpeed, float endSpeed) {
    if (entry.IdealSpeedUser != 0) return static_cast<float>(entry.IdealSpeedUser);
    const float sum = endSpeed + startSpeed;
    const float mean = sum / 2.0F;
    entry.IdealSpeedCalc = Round32(mean);
    return mean;
}

std::int32_t IdealTravelTime(std::int32_t feet, float idealSpeed) {
    if (idealSpeed == 0.0F)
        throw RunTimeError(ErrorNumber::DivisionByZero,
                           "The ideal speed is 0. Move the boundaries to where the vehicle is driving, or set an "
                           "ideal speed.");
    // Feet per second with the fixed constants, whatever the speed factor of the settings is.
    return Round32(feet / (FeetPerSecondOfMph * static_cast<double>(idealSpeed)));
}

}  // namespace

PlotState PlacedBoundaries(const RunRecord& run, const StudyRunEntry& entry) {
    const OneBased<std::int32_t> distances = RunningDistances(run);
    const auto sampleAt = [&](std::int32_t feet) {
        if (feet == 0) return 0;
        const auto reached = std::lower_bound(distances.begin(), distances.end(), feet);
        return std::min(static_cast<std::int32_t>(reached - distances.begin()) + 1, distances.LastIndex());
    };
    return {BoundaryAxis::Distance, sampleAt(entry.CDStartDist), sampleAt(entry.CDEndDist)};
}

FoundBoundaries FindBoundaries(const RunRecord& run, const PlotState& plot, const StudyRunEntry& entry,
                               const AppSettings& settings) {
    BoundaryScan scan(run, settings, plot);
    const auto find = [&scan](std::int32_t sample, std::int32_t distance, StoppedTime* stopped) {
        const auto boundary = scan.Find(sample, distance, stopped);
        return boundary.Found ? std::optional(boundary.Sample) : std::nullopt;
    };
    FoundBoundaries found;
    StoppedTime stopped{found.StopDelay};
    found.Start = find(plot.CDStartSample, entry.CDStartDist, nullptr);
    // A run of a single sample has none left for the end scan then, of which a computation makes error 9.
    if (found.Start || run.SampleValues.LastIndex() > 1) found.End = find(plot.CDEndSample, entry.CDEndDist, &stopped);
    found.Stops = stopped.Stops;
    return found;
}

float ComputeRunDelay(const RunRecord& run, const AppSettings& settings, PlotState& plot, StudyRunEntry& entry) {
    entry.StopDelay = 0;
    BoundaryScan scan(run, settings, plot);
    const auto start = scan.Find(plot.CDStartSample, entry.CDStartDist, nullptr);
    TakeBoundary(start, plot.Axis, plot.CDStartSample, entry.CDStartDist);
    StoppedTime stopped{entry.StopDelay};
    const auto end = scan.Find(plot.CDEndSample, entry.CDEndDist, &stopped);
    TakeBoundary(end, plot.Axis, plot.CDEndSample, entry.CDEndDist);

    const float idealSpeed = IdealSpeedOf(entry, start.Speed, end.Speed);
    // It is shown as 16 bits: one that does not fit ends the computation here.
    Round16(idealSpeed);
    const std::int32_t travelTime = Subtract32(plot.CDEndSample, plot.CDStartSample);
    const std::int32_t feet = Subtract32(entry.CDEndDist, entry.CDStartDist);
    entry.ControlDelay = Subtract32(travelTime, IdealTravelTime(feet, idealSpeed));
    entry.LOSGrade = LOSGradeOf(entry.ControlDelay);
    return idealSpeed;
}

OneBased<std::int32_t> RunningDistances(const RunRecord& run) {
    const RunArithmetic arithmetic(run.Header.CalConstant, 1.0F);
    OneBased<std::int32_t> distances;
    std::int32_t distance = 0;
    for (const std::int16_t value : run.SampleValues)
        distances.Append(distance = Add32(distance, arithmetic.DistanceIncrement(value)));
    return distances;
}

}  // namespace vantor
