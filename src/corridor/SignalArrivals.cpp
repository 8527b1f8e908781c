#include "corridor/SignalArrivals.h"

#include <algorithm>
#include <cmath>

#include "core/Position.h"
#include "corridor/NodeDelays.h"
#include "statistics/StatisticsCells.h"

namespace vantor {
namespace {

constexpr double SecondsPerDay = 24 * SecondsPerHour;

/// The moment, in seconds from the start of a run, at which it has come so far; its end where it never does.
double MomentAt(const RunTrace& trace, double feet) {
    const auto& distances = trace.Distances;
    const auto next = std::ranges::lower_bound(distances, feet);
    if (next == distances.begin()) return 0;
    if (next == distances.end()) return static_cast<double>(distances.size() - 1);
    const double before = *(next - 1);
    return static_cast<double>(next - 1 - distances.begin()) + (feet - before) / (*next - before);
}

/// The beginning of the first second, of those that lie between two moments as a whole, that is slower.
std::optional<double> FirstSlower(const RunTrace& trace, double from, double to, double mph) {
    for (auto second = static_cast<std::size_t>(std::ceil(from)); static_cast<double>(second) + 1 <= to; ++second)
        if (static_cast<double>(trace.Speeds[second]) < mph) return static_cast<double>(second);
    return std::nullopt;
}

}  // namespace

const SignalTiming* TimingFor(const CorridorNode& node, Way way, bool isBefore, const std::string& period) {
    const SignalTiming* found = nullptr;
    int foundSays = -1;
    for (const SignalTiming& timing : node.Timings) {
        const bool holds = timing.Of.value_or(way) == way && timing.IsBefore.value_or(isBefore) == isBefore &&
                           (timing.Period.empty() || timing.Period == period);
        const int says = (timing.Of ? 1 : 0) + (timing.IsBefore ? 1 : 0) + (timing.Period.empty() ? 0 : 1);
        if (!holds || says <= foundSays) continue;
        found = &timing;
        foundSays = says;
    }
    return found;
}

double SecondInCycle(const SignalTiming& timing, double time) {
    const double ofDay = time - std::floor(time / SecondsPerDay) * SecondsPerDay;
    const double since = ofDay - timing.GreenStartSeconds;
    return since - std::floor(since / timing.CycleSeconds) * timing.CycleSeconds;
}

std::optional<double> ClockOf(const MatchedRun& run) {
    const MeasuredRun& measured = run.Measured;
    if (!IsValidDate(measured.RunTime) || !IsValidDate(measured.RunDate) || measured.RunDate.Days < 1)
        return std::nullopt;
    const bool hasPositions = std::ranges::any_of(
        run.Read->Run.RunSamples, [](const RunSample& sample) { return PositionOf(sample).has_value(); });
    const double time = (measured.RunTime.Days - std::floor(measured.RunTime.Days)) * SecondsPerDay;
    return hasPositions ? time - 1 : time;
}

std::optional<SignalArrival> ArrivalAt(const Corridor& corridor, const std::vector<MatchedRun>& runs, std::size_t run,
                                       std::size_t node) {
    const MatchedRun& matched = runs[run];
    if (!matched.IsThere() || !matched.Match.Nodes[node].IsKnown()) return std::nullopt;
    const SignalTiming* const timing =
        TimingFor(corridor.Nodes[node], matched.Match.Along, matched.Measured.IsBefore, matched.Period);
    const auto clock = ClockOf(matched);
    const PassedBand& band = matched.Delays[node].Measured;
    if (timing == nullptr || !clock || band.StartFt < 0) return std::nullopt;

    const double passing = MomentAt(matched.Trace, matched.Match.Nodes[node].Feet);
    const auto slow =
        FirstSlower(matched.Trace, MomentAt(matched.Trace, band.StartFt), passing, corridor.Options.Stops.Stop);
    SignalArrival arrival{run, *clock + slow.value_or(passing), *clock + passing, slow.has_value()};
    arrival.ArrivalInCycle = SecondInCycle(*timing, arrival.Arrival);
    arrival.DepartureInCycle = SecondInCycle(*timing, arrival.Departure);
    arrival.IsOnGreen = arrival.ArrivalInCycle < timing->GreenSeconds;
    return arrival;
}

std::optional<double> NodeArrivals::Share() const {
    if (Of.empty()) return std::nullopt;
    return static_cast<double>(OnGreen) / static_cast<double>(Of.size());
}

NodeArrivals ArrivalsAt(const Corridor& corridor, const std::vector<MatchedRun>& runs,
                        const std::vector<std::size_t>& indexes, std::size_t node) {
    NodeArrivals arrivals;
    for (const std::size_t index : indexes) {
        const auto arrival = ArrivalAt(corridor, runs, index, node);
        if (!arrival) continue;
        arrivals.Of.push_back(*arrival);
        arrivals.OnGreen += arrival->IsOnGreen ? 1 : 0;
    }
    return arrivals;
}

nlohmann::ordered_json ArrivalsAsJson(const NodeArrivals& arrivals, const std::vector<MatchedRun>& runs) {
    if (arrivals.Of.empty()) return nullptr;
    auto list = nlohmann::ordered_json::array();
    for (const SignalArrival& arrival : arrivals.Of)
        list.push_back({{"run", runs[arrival.Run].Measured.Name},
                        {"stopped", arrival.HasStopped},
                        {"arrival", arrival.Arrival},
                        {"arrival_in_cycle", arrival.ArrivalInCycle},
                        {"departure", arrival.Departure},
                        {"departure_in_cycle", arrival.DepartureInCycle},
                        {"on_green", arrival.IsOnGreen}});
    return {{"n", arrivals.Of.size()},
            {"on_green", arrivals.OnGreen},
            {"share_on_green", *arrivals.Share()},
            {"runs", std::move(list)}};
}

StatisticsTable ArrivalsTable(const Corridor& corridor, const std::vector<MatchedRun>& runs,
                              const CorridorFindings& findings) {
    constexpr double Percent = 100;
    StatisticsTable table;
    table.Heads = {"Arrivals on green", "Node", "Arrivals", "On green", "Share (%)"};
    table.TextColumns = 2;
    for (const FindingsRow& row : RowsOf(corridor, findings)) {
        const WayFigures& way = row.Results->Of(row.Along);
        for (const NodeFigures& node : way.Nodes) {
            const NodeArrivals arrivals = ArrivalsAt(corridor, runs, way.Runs, node.Node);
            const auto share = arrivals.Share();
            if (!share) continue;
            table.Rows.push_back({TextCell(row.Name), TextCell(corridor.Nodes[node.Node].Name),
                                  CountCell(static_cast<int>(arrivals.Of.size())),
                                  CountCell(static_cast<int>(arrivals.OnGreen)),
                                  ValueCell(*share * Percent, FigureUnit::Percent, 0, {})});
        }
    }
    return table;
}

}  // namespace vantor
