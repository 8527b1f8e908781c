#include "corridor/GreenTimes.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <optional>
#include <utility>

#include "corridor/SignalArrivals.h"
#include "corridor/WayAxis.h"

namespace vantor {
namespace {

constexpr double SecondsPerDay = 24 * SecondsPerHour;
constexpr double SecondsPerMinute = 60;
constexpr double PieceHeight = 4;
constexpr double PieceOpacity = 0.75;
constexpr double WayOpacity = 0.13;
/// Greens that are closer would run together.
constexpr double LeastCycle = 5;

/// A signal as it is timed for a while.
struct TimedSignal {
    double Place = 0;  ///< on the upright axis
    PlotRange While;   ///< seconds after midnight; within one day
    SignalTiming Timing;
    PlotInk Ink = &Colours::Trace;
    double Beside = 0;  ///< of the middle of its line, in heights of a piece

    double DayBegins() const { return std::floor(While.Low / SecondsPerDay) * SecondsPerDay; }
    /// The greens that lie in a range, cut at its ends and those of the while.
    std::vector<PlotRange> Greens(const PlotRange& range) const {
        const double low = std::max(range.Low, While.Low);
        const double high = std::min(range.High, While.High);
        std::vector<PlotRange> greens;
        const double first = DayBegins() + Timing.GreenStartSeconds;
        for (double cycle = std::floor((low - first) / Timing.CycleSeconds);; ++cycle) {
            const double begin = first + cycle * Timing.CycleSeconds;
            if (begin >= high) return greens;
            const PlotRange green{std::max(begin, low), std::min(begin + Timing.GreenSeconds, high)};
            if (green.Span() > 0) greens.push_back(green);
        }
    }
};

/// Two signals, one after the other, and how long the way between them takes at the ideal speed.
struct GreenLink {
    TimedSignal From, To;
    double Seconds = 0;
};

struct GreenTimesPart : PlotPart {
    std::vector<TimedSignal> Signals;
    std::vector<GreenLink> Links;

    void Draw(Canvas& canvas, const PlotMap& map, const PlotLook& look) const override {
        for (const GreenLink& link : Links) DrawLink(canvas, map, look, link);
        for (const TimedSignal& signal : Signals) {
            if (!IsApart(map, signal)) continue;
            const double middle = map.YOf(signal.Place) + signal.Beside * PieceHeight;
            for (const PlotRange& green : signal.Greens(map.Window().Across)) {
                const double left = map.XOf(green.Low);
                const double right = map.XOf(green.High);
                const std::array corners = {
                    CanvasPoint{left, middle - PieceHeight / 2}, CanvasPoint{right, middle - PieceHeight / 2},
                    CanvasPoint{right, middle + PieceHeight / 2}, CanvasPoint{left, middle + PieceHeight / 2}};
                canvas.FillShape(corners, look.Inks.*signal.Ink, PieceOpacity);
            }
        }
    }

private:
    static bool IsApart(const PlotMap& map, const TimedSignal& signal) {
        return map.XOf(signal.Timing.CycleSeconds) - map.XOf(0) >= LeastCycle;
    }
    static void DrawLink(Canvas& canvas, const PlotMap& map, const PlotLook& look, const GreenLink& link) {
        if (!IsApart(map, link.From) || !IsApart(map, link.To)) return;
        const PlotRange seen = map.Window().Across;
        const auto targets = link.To.Greens({seen.Low, seen.High + link.Seconds});
        for (const PlotRange& leaving : link.From.Greens({seen.Low - link.Seconds, seen.High}))
            for (const PlotRange& target : targets) {
                const double low = std::max(leaving.Low + link.Seconds, target.Low);
                const double high = std::min(leaving.High + link.Seconds, target.High);
                if (low >= high) continue;
                const std::array corners = {map.Of({low - link.Seconds, link.From.Place}),
                                            map.Of({high - link.Seconds, link.From.Place}),
                                            map.Of({high, link.To.Place}), map.Of({low, link.To.Place})};
                canvas.FillShape(corners, look.Inks.*link.To.Ink, WayOpacity);
            }
    }
};

/// The times of an axis, cut where a day or one of the corridor's periods begins or ends.
std::vector<PlotRange> Whiles(const Corridor& corridor, const CorridorFilter& filter, const PlotRange& times) {
    std::vector<double> cuts = {times.Low, times.High};
    for (double day = 0; day <= times.High; day += SecondsPerDay) {
        cuts.push_back(day);
        if (filter.Period) continue;
        for (const CorridorPeriod& period : corridor.Periods)
            for (const int minute : {period.From, period.To}) cuts.push_back(day + minute * SecondsPerMinute);
    }
    std::ranges::sort(cuts);
    std::vector<PlotRange> whiles;
    for (std::size_t i = 1; i < cuts.size(); ++i)
        if (cuts[i - 1] >= times.Low && cuts[i] <= times.High && cuts[i] > cuts[i - 1])
            whiles.push_back({cuts[i - 1], cuts[i]});
    return whiles;
}

/// Makes what is known of the signals of a way.
class GreenMaker {
public:
    GreenMaker(const Corridor& corridor, const CorridorFilter& filter, Way way, const std::vector<RunsAlike>& groups,
               const Units& units)
        : corridor_(corridor), filter_(filter), way_(way), groups_(groups), units_(units), axis_(corridor, way) {}

    GreenTimesPart Make(const PlotRange& times) const {
        GreenTimesPart part;
        for (const PlotRange& range : Whiles(corridor_, filter_, times)) {
            std::optional<TimedSignal> before;
            for (std::size_t passed = 0; passed < corridor_.Nodes.size(); ++passed) {
                const auto signals = SignalsAt(NodeAlong(corridor_, way_, passed), range);
                part.Signals.insert(part.Signals.end(), signals.begin(), signals.end());
                const bool isOne = signals.size() == 1 && signals.front().Beside == 0;
                if (isOne && before) AddLink(part, *before, signals.front());
                before = isOne ? std::optional(signals.front()) : std::nullopt;
            }
        }
        return part;
    }

private:
    std::vector<TimedSignal> SignalsAt(std::size_t node, const PlotRange& range) const {
        const std::string period = filter_.Period
                                       ? *filter_.Period
                                       : PeriodAt(corridor_, {std::fmod(range.Low, SecondsPerDay) / SecondsPerDay});
        const double place = units_.LengthOfFeet(axis_.PlaceOf(node));
        std::vector<const SignalTiming*> timings;
        for (const RunsAlike& group : groups_)
            timings.push_back(TimingFor(corridor_.Nodes[node], way_, group.Runs.front().Run->IsBefore, period));
        const bool differ = timings.size() == 2 && timings[0] != timings[1];
        std::vector<TimedSignal> signals;
        for (std::size_t i = 0; i < (differ ? 2 : 1); ++i) {
            if (timings[i] == nullptr) continue;
            TimedSignal& signal = signals.emplace_back(TimedSignal{place, range, *timings[i]});
            if (!differ) continue;
            signal.Ink = groups_[i].Look.Ink;
            signal.Beside = i == 0 ? 0.5 : -0.5;
        }
        return signals;
    }

    void AddLink(GreenTimesPart& part, const TimedSignal& from, const TimedSignal& to) const {
        const auto ideal = corridor_.Of(way_).IdealSpeedMph;
        if (!ideal) return;
        const double feet = units_.FeetOfLength(to.Place - from.Place);
        part.Links.push_back({from, to, feet / (*ideal * FeetPerSecondOfMph)});
    }

    const Corridor& corridor_;
    const CorridorFilter& filter_;
    Way way_;
    const std::vector<RunsAlike>& groups_;
    const Units& units_;
    WayAxis axis_;
};

}  // namespace

void AddGreenTimes(Plot& plot, const Corridor& corridor, const CorridorFilter& filter, Way way,
                   const std::vector<RunsAlike>& groups, const Units& units) {
    GreenTimesPart part = GreenMaker(corridor, filter, way, groups, units).Make(plot.Axes.Across.Whole);
    if (part.Signals.empty()) return;
    std::vector<PlotSample>& legend = plot.Axes.Legend;
    const auto add = [&](const char* caption, PlotInk ink, double opacity) {
        legend.push_back({caption, ink, 0, LinePattern::Solid, PlotMarker::None, nullptr, opacity});
    };
    const auto isThere = [&](auto holds) { return std::ranges::any_of(part.Signals, holds, &TimedSignal::Beside); };
    if (isThere([](double beside) { return beside == 0; })) add("Green", &Colours::Trace, PieceOpacity);
    if (isThere([](double beside) { return beside > 0; })) add("Green, before", BeforeLook.Ink, PieceOpacity);
    if (isThere([](double beside) { return beside < 0; })) add("Green, after", AfterLook.Ink, PieceOpacity);
    if (!part.Links.empty()) add("Green to green at the ideal speed", &Colours::Trace, 2 * WayOpacity);
    plot.Parts.insert(plot.Parts.begin(), std::make_shared<const GreenTimesPart>(std::move(part)));
}

}  // namespace vantor
