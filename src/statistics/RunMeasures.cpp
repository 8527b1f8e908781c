#include "statistics/RunMeasures.h"

#include "core/Numeric.h"
#include "core/RunArithmetic.h"
#include "core/Units.h"

namespace vantor {
namespace {

void Add(PieceMeasures& whole, const PieceMeasures& piece) {
    whole.TravelTime += piece.TravelTime;
    whole.Distance = Add32(whole.Distance, piece.Distance);
    whole.StoppedTime += piece.StoppedTime;
    whole.Stops += piece.Stops;
}

}  // namespace

std::optional<double> SpeedOf(double feet, double seconds) {
    if (seconds <= 0) return std::nullopt;
    return feet / seconds / FeetPerSecondOfMph;
}

std::optional<double> PieceMeasures::TravelSpeed() const { return SpeedOf(Distance, TravelTime); }
std::optional<double> PieceMeasures::RunningSpeed() const { return SpeedOf(Distance, RunningTime()); }
std::optional<double> PieceMeasures::PercentStopped() const {
    if (TravelTime == 0) return std::nullopt;
    return 100.0 * StoppedTime / TravelTime;
}

RunMeasures MeasureRun(const RunRecord& run, float speedFactor, const StopSpeeds& speeds) {
    const RunArithmetic arithmetic(run.Header.CalConstant, speedFactor);
    RunMeasures measures;
    PieceMeasures section;
    const auto close = [&] {
        Add(measures.Whole, section);
        measures.Sections.push_back(section);
        section = {};
    };
    bool isStopped = false;
    for (const std::int16_t value : run.SampleValues) {
        ++section.TravelTime;
        section.Distance = Add32(section.Distance, arithmetic.DistanceIncrement(value));
        const float speed = arithmetic.Speed(value);
        if (speed < speeds.Stop) {
            ++section.StoppedTime;
            if (!isStopped) ++section.Stops;
            isStopped = true;
        } else if (speed >= speeds.Go) {
            isStopped = false;
        }
        if (!HasNode(value)) continue;
        close();
        measures.NodeTimes.push_back(measures.Whole.TravelTime);
        measures.NodeDistances.push_back(measures.Whole.Distance);
    }
    close();
    return measures;
}

}  // namespace vantor
