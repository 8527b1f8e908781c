#include "statistics/DelayEvents.h"

#include <algorithm>

#include "analysis/DelayStatistics.h"
#include "core/RunArithmetic.h"

namespace vantor {
namespace {

constexpr double Swing = 10;         // mph between two turning points
constexpr double ShareOfPeak = 0.8;  // of the peak beside an event, from which on it is over
constexpr double MoveUpShare = 0.5;  // of the lower peak outside, below which the vehicle only moves up in a queue
/// mph in three seconds. Whole feet a second can differ by 1.5 exactly, so that it lies between.
constexpr double SteadyChange = 1.6;
constexpr std::size_t SteadySeconds = 3;  // no farther than the peak, behind which the speed falls again
constexpr double Tolerance = 1e-9;

/// Centred means of five speeds, of three and of one at the ends.
std::vector<double> SmoothedSpeeds(const RunRecord& run, float speedFactor) {
    const RunArithmetic arithmetic(run.Header.CalConstant, speedFactor);
    std::vector<double> speeds;
    speeds.reserve(run.SampleValues.size());
    for (const std::int16_t value : run.SampleValues) speeds.push_back(arithmetic.Speed(value));
    std::vector<double> smoothed(speeds.size());
    for (std::size_t i = 0; i < speeds.size(); ++i) {
        const std::size_t reach = std::min({std::size_t{2}, i, speeds.size() - 1 - i});
        double sum = 0;
        for (std::size_t j = i - reach; j <= i + reach; ++j) sum += speeds[j];
        smoothed[i] = sum / static_cast<double>(2 * reach + 1);
    }
    return smoothed;
}

struct TurningPoint {
    std::size_t Index = 0;
    bool IsPeak = false;
};

/// Peaks and valleys by turns, each a swing away from the one before; the first and the last are what the run begins
/// and ends with.
std::vector<TurningPoint> TurningPoints(const std::vector<double>& speeds) {
    std::vector<TurningPoint> points;
    std::size_t highest = 0;
    std::size_t lowest = 0;
    std::optional<bool> rises;
    for (std::size_t i = 1; i < speeds.size(); ++i) {
        if (speeds[i] > speeds[highest]) highest = i;
        if (speeds[i] < speeds[lowest]) lowest = i;
        if (rises.value_or(true) && speeds[highest] - speeds[i] >= Swing) {
            points.push_back({highest, true});
            rises = false;
            lowest = i;
        } else if (!rises.value_or(false) && speeds[i] - speeds[lowest] >= Swing) {
            points.push_back({lowest, false});
            rises = true;
            highest = i;
        }
    }
    if (rises) points.push_back({*rises ? highest : lowest, *rises});
    return points;
}

struct Valley {
    std::size_t Before = 0;  ///< the peaks beside it
    std::size_t Lowest = 0;
    std::size_t After = 0;
};

class EventFinder {
public:
    explicit EventFinder(const std::vector<double>& speeds) : speeds_(speeds) {}

    std::vector<Valley> Events() const {
        const std::vector<Valley> valleys = Valleys();
        std::vector<Valley> events;
        for (std::size_t first = 0; first < valleys.size();) {
            const std::size_t last = LastOfQueue(valleys, first);
            events.push_back({valleys[first].Before, valleys[first].Lowest, valleys[last].After});
            for (; first <= last; ++first)
                if (speeds_[valleys[first].Lowest] < speeds_[events.back().Lowest])
                    events.back().Lowest = valleys[first].Lowest;
        }
        return events;
    }

    /// The last second of the speed before.
    std::size_t OnsetOf(const Valley& valley) const {
        const double enough = ShareOfPeak * speeds_[valley.Before] - Tolerance;
        for (std::size_t i = valley.Lowest; i > valley.Before; --i) {
            const std::size_t earlier = i - std::min(SteadySeconds, i - valley.Before);
            if (speeds_[i] >= enough && speeds_[earlier] - speeds_[i] < SteadyChange) return i;
        }
        return valley.Before;
    }

    std::size_t EndOf(const Valley& valley) const {
        const double enough = ShareOfPeak * speeds_[valley.After] - Tolerance;
        for (std::size_t i = valley.Lowest; i < valley.After; ++i) {
            const std::size_t later = std::min(i + SteadySeconds, valley.After);
            if (speeds_[i] >= enough && speeds_[later] - speeds_[i] < SteadyChange) return i;
        }
        return valley.After;
    }

private:
    std::vector<Valley> Valleys() const {
        const std::vector<TurningPoint> points = TurningPoints(speeds_);
        std::vector<Valley> valleys;
        for (std::size_t i = 1; i + 1 < points.size(); ++i)
            if (!points[i].IsPeak) valleys.push_back({points[i - 1].Index, points[i].Index, points[i + 1].Index});
        return valleys;
    }

    /// The last of the valleys between which the vehicle only moves up: every peak between them is low against the
    /// lower one of those outside.
    std::size_t LastOfQueue(const std::vector<Valley>& valleys, std::size_t first) const {
        std::size_t last = first;
        double highest = 0;
        for (std::size_t next = first + 1; next < valleys.size(); ++next) {
            highest = std::max(highest, speeds_[valleys[next - 1].After] + Tolerance);
            if (highest >= MoveUpShare * speeds_[valleys[first].Before]) break;
            if (highest < MoveUpShare * speeds_[valleys[next].After]) last = next;
        }
        return last;
    }

    const std::vector<double>& speeds_;
};

}  // namespace

RunEvents FindDelayEvents(const RunRecord& run, float speedFactor) {
    RunEvents found;
    const std::vector<double> speeds = SmoothedSpeeds(run, speedFactor);
    const OneBased<std::int32_t> distances = RunningDistances(run);
    const EventFinder finder(speeds);
    for (const Valley& valley : finder.Events()) {
        const std::size_t onset = finder.OnsetOf(valley);
        const std::size_t end = finder.EndOf(valley);
        const auto sample = [](std::size_t index) { return static_cast<std::int32_t>(index) + 1; };
        found.Events.push_back({sample(onset), sample(valley.Lowest), sample(end), distances[sample(onset)],
                                distances[sample(end)], speeds[onset], speeds[end]});
    }
    for (std::int32_t i = 1; i <= run.SampleValues.LastIndex(); ++i)
        if (HasNode(run.SampleValues[i])) found.Nodes.push_back(i);
    for (const std::int32_t node : found.Nodes) {
        found.NodeDistances.push_back(distances[node]);
        const auto holds = [node](const DelayEvent& event) { return event.Onset <= node && node <= event.End; };
        const auto event = std::ranges::find_if(found.Events, holds);
        found.EventOfNode.push_back(event == found.Events.end()
                                        ? std::nullopt
                                        : std::optional(static_cast<std::size_t>(event - found.Events.begin())));
    }
    return found;
}

}  // namespace vantor
