#include "corridor/CorridorPlots.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "core/Counted.h"
#include "corridor/CorridorRuns.h"
#include "corridor/GreenTimes.h"
#include "corridor/SignalArrivals.h"
#include "statistics/OverlayPlot.h"

namespace vantor {
namespace {

constexpr double RunWidth = 1;
constexpr double MeanWidth = 3;
constexpr double BandOpacity = 0.1;
/// A run's way before and behind the bands is looked at so far at most.
constexpr double MostBeyondFt = FeetPerMile / 2;
/// Axes end at a multiple of it, so that they stay as they are while bands are moved.
constexpr double AxisStepFt = 100;

/// The bands as upright areas with borders; those of single runs alone as borders, for the run that is chosen.
struct BandAreas : PlotPart {
    struct OfItem {
        int Item = 0;
        std::vector<PlotRange> Bands;
    };
    std::vector<PlotRange> Common;
    std::vector<OfItem> Own;
    int AlwaysShown = 0;  ///< the item whose own bands are drawn although nothing can be chosen

    void Draw(Canvas& canvas, const PlotMap& map, const PlotLook& look) const override {
        for (const PlotRange& band : Common) {
            const CanvasBox& area = map.Area();
            const double left = map.XOf(band.Low);
            const double right = map.XOf(band.High);
            const double bottom = area.Y + area.Height;
            const std::array corners = {CanvasPoint{left, area.Y}, CanvasPoint{right, area.Y},
                                        CanvasPoint{right, bottom}, CanvasPoint{left, bottom}};
            canvas.FillShape(corners, look.Inks.Boundary, BandOpacity);
            DrawBorders(canvas, map, band, {1, look.Inks.Boundary});
        }
        if (AlwaysShown != 0) DrawOwn(canvas, map, look, AlwaysShown);
    }
    void DrawChosen(Canvas& canvas, const PlotMap& map, const PlotLook& look, int item) const override {
        DrawOwn(canvas, map, look, item);
    }

private:
    void DrawOwn(Canvas& canvas, const PlotMap& map, const PlotLook& look, int item) const {
        for (const OfItem& own : Own)
            if (own.Item == item)
                for (const PlotRange& band : own.Bands)
                    DrawBorders(canvas, map, band, {2, look.Inks.Boundary, LinePattern::Dotted});
    }
    static void DrawBorders(Canvas& canvas, const PlotMap& map, const PlotRange& band, const LineStyle& style) {
        const CanvasBox& area = map.Area();
        for (const double value : {band.Low, band.High})
            canvas.DrawLine({map.XOf(value), area.Y}, {map.XOf(value), area.Y + area.Height}, style);
    }
};

PlotRange ShownRange(const PlacedBand& band, const Units& units) {
    return {units.LengthOfFeet(band.From), units.LengthOfFeet(band.To)};
}

/// What is measured from the first to the last node that a run passes.
PieceMeasures FromNodeToNode(const RunMeasures& run) {
    PieceMeasures sum;
    for (std::size_t section = 1; section + 1 < run.Sections.size(); ++section) {
        sum.TravelTime += run.Sections[section].TravelTime;
        sum.StoppedTime += run.Sections[section].StoppedTime;
        sum.Stops += run.Sections[section].Stops;
    }
    return sum;
}

std::string InWords(const Corridor& corridor, const MatchedRun& run) {
    const MeasuredRun& measured = run.Measured;
    std::string text = measured.Name + "\n";
    if (IsValidDate(measured.RunDate)) text += ShortDate(measured.RunDate) + " ";
    if (IsValidDate(measured.RunTime)) text += ShortTime(measured.RunTime) + ", ";
    text += measured.IsBefore ? "before" : "after";
    if (!run.Period.empty()) text += ", " + run.Period;
    const std::size_t known = KnownNodes(run.Match.Nodes);
    if (known >= 2) {
        const PieceMeasures between = FromNodeToNode(measured.Measures);
        text += "\n" + std::to_string(between.TravelTime) + " s from its first node to its last, " +
                std::to_string(between.StoppedTime) + " s stopped, " + Counted(between.Stops, "stop");
    }
    if (known < corridor.Nodes.size())
        text += "\npasses " + std::to_string(known) + " of " + Counted(corridor.Nodes.size(), "node");
    return text;
}

/// The runs of a plot in their order, on its axis.
struct AlignedRuns {
    std::vector<std::size_t> Indexes;
    std::vector<AlignedRun> Runs;
    PlottedRuns Plotted;
};

AlignedRuns AlignAll(const Corridor& corridor, const std::vector<MatchedRun>& runs, const CorridorFilter& filter,
                     Way way) {
    AlignedRuns aligned{PlottedRunsOf(corridor, runs, filter, way), {}, {}};
    const WayAxis axis(corridor, way);
    for (const std::size_t index : aligned.Indexes) {
        aligned.Runs.push_back(axis.Align(runs[index]));
        aligned.Plotted.push_back(aligned.Runs.back().Of);
    }
    return aligned;
}

/// From where the runs begin to where they end, and all bands.
PlotRange RoadOf(const WayAxis& axis, const AlignedRuns& aligned, double length) {
    PlotRange road = axis.Bounds();
    for (const AlignedRun& run : aligned.Runs) {
        road.Low = std::min(road.Low, std::max(run.At.front(), -MostBeyondFt));
        road.High = std::max(road.High, std::min(run.At.back(), length + MostBeyondFt));
    }
    return {std::floor(road.Low / AxisStepFt) * AxisStepFt, std::ceil(road.High / AxisStepFt) * AxisStepFt};
}

double LengthOf(const Corridor& corridor) {
    return corridor.Nodes.back().DistanceFt - corridor.Nodes.front().DistanceFt;
}

PlotAxis DistanceAxis(const PlotRange& road, const Units& units) {
    return {std::string("Distance (") + units.LengthLabel() + ")",
            {units.LengthOfFeet(road.Low), units.LengthOfFeet(road.High)}};
}

PlotLines NodeLines(const Corridor& corridor, const WayAxis& axis, PlotLines::Way along, const Units& units) {
    PlotLines lines;
    lines.Along = along;
    for (std::size_t node = 0; node < corridor.Nodes.size(); ++node)
        lines.Lines.push_back({units.LengthOfFeet(axis.PlaceOf(node)), corridor.Nodes[node].Name});
    return lines;
}

std::string EmptyTextOf(const Corridor& corridor, const AlignedRuns& aligned, Way way) {
    if (corridor.Nodes.empty()) return "The corridor has no nodes yet.";
    if (aligned.Indexes.empty())
        return "No runs to show in the direction " + corridor.Of(way).Name +
               ". Take runs in, or look at another period, condition or direction.";
    return {};
}

void AddBands(Plot& plot, const Corridor& corridor, const std::vector<MatchedRun>& runs, const AlignedRuns& aligned,
              const WayAxis& axis, const CorridorLook& look) {
    BandAreas areas;
    for (const PlacedBand& band : axis.Bands()) areas.Common.push_back(ShownRange(band, look.Shown));
    for (std::size_t i = 0; i < aligned.Indexes.size(); ++i) {
        const MatchedRun& run = runs[aligned.Indexes[i]];
        const CorridorRun& as = corridor.Runs[run.Index];
        const int item = static_cast<int>(i) + 1;
        if (look.Chosen == aligned.Indexes[i]) areas.AlwaysShown = item;
        if (as.OwnBands.empty()) continue;
        BandAreas::OfItem& own = areas.Own.emplace_back(BandAreas::OfItem{item, {}});
        for (const PlacedBand& band : axis.Bands(as))
            if (band.IsOwn) own.Bands.push_back(ShownRange(band, look.Shown));
    }
    plot.Axes.Legend.push_back(
        {"Control delay is measured", &Colours::Boundary, 1, LinePattern::Solid, PlotMarker::None, nullptr, 0.2});
    if (!areas.Own.empty())
        plot.Axes.Legend.push_back({"Own band of a run", &Colours::Boundary, 2, LinePattern::Dotted});
    plot.Add(std::move(areas));
}

void AddIdealSpeed(Plot& plot, const CorridorDirection& direction, const Units& units) {
    if (!direction.IdealSpeedMph) return;
    PlotLines line;
    line.Lines.push_back({units.SpeedOfMph(*direction.IdealSpeedMph), {}});
    line.Ink = &Colours::Average;
    line.Width = 1.5;
    line.Pattern = LinePattern::DashDotted;
    plot.Axes.Legend.push_back(
        {"Ideal speed " + units.SpeedText(*direction.IdealSpeedMph), line.Ink, line.Width, line.Pattern});
    plot.Add(std::move(line));
}

/// The second, from its start, at which a run comes to a place; nothing where it begins behind it or ends before.
std::optional<double> MomentAt(const AlignedRun& run, double place) {
    const auto next = std::lower_bound(run.At.begin(), run.At.end(), place);
    if (next == run.At.end() || (next == run.At.begin() && *next > place)) return std::nullopt;
    if (next == run.At.begin()) return 0;
    const double before = *(next - 1);
    return static_cast<double>(next - 1 - run.At.begin()) + (place - before) / (*next - before);
}

/// Places the runs of a time-space diagram in time.
class RunClock {
public:
    RunClock(const AlignedRuns& aligned, double begin, TimeSpaceClock clock)
        : aligned_(aligned), begin_(begin), clock_(clock) {}

    /// What a run's seconds are added to; nothing for one without a time of day.
    std::optional<double> ZeroOf(const AlignedRun& run, const MatchedRun& matched) const {
        if (clock_ == TimeSpaceClock::TimeOfDay) return ClockOf(matched);
        if (const auto moment = MomentAt(run, begin_)) return -*moment;
        return MeanAt(run.At.front()).value_or(0);
    }
    /// When the runs that come from the beginning are at a place.
    std::optional<double> MeanAt(double place) const {
        double sum = 0;
        double count = 0;
        for (const AlignedRun& run : aligned_.Runs) {
            const auto begin = MomentAt(run, begin_);
            const auto moment = MomentAt(run, place);
            if (!begin || !moment) continue;
            sum += *moment - *begin;
            count += 1;
        }
        return count > 0 ? std::optional(sum / count) : std::nullopt;
    }

private:
    const AlignedRuns& aligned_;
    double begin_;
    TimeSpaceClock clock_;
};

/// The ways of the runs, as far as the road goes; each an item, those without a time have no line.
void AddWays(Plot& plot, const std::vector<MatchedRun>& runs, const AlignedRuns& aligned, const RunClock& clock,
             const PlotRange& road, const Units& units) {
    const auto groups = GroupsOf(aligned.Plotted);
    std::optional<PlotRange> times;
    int item = 0;
    for (const AlignedRun& run : aligned.Runs) {
        const auto zero = clock.ZeroOf(run, runs[aligned.Indexes[static_cast<std::size_t>(item)]]);
        ++item;
        if (!zero) continue;
        const RunsLook& look = groups.size() == 1 ? OneLook : run.Of.Run->IsBefore ? BeforeLook : AfterLook;
        PlotTrace way;
        way.Item = item;
        way.Width = RunWidth;
        way.Ink = look.Ink;
        way.Pattern = look.Pattern;
        for (std::size_t second = 0; second < run.At.size(); ++second) {
            if (run.At[second] < road.Low || run.At[second] > road.High) continue;
            const double time = *zero + static_cast<double>(second);
            way.Points.push_back({time, units.LengthOfFeet(run.At[second])});
            if (!times) times = PlotRange{time, time};
            times = PlotRange{std::min(times->Low, time), std::max(times->High, time)};
        }
        plot.Add(std::move(way));
    }
    plot.Axes.Across.Whole = times && times->Span() >= 1 ? *times : PlotRange{0, 60};
    for (const RunsAlike& group : groups)
        plot.Axes.Legend.push_back({group.Look.Caption, group.Look.Ink, RunWidth, group.Look.Pattern});
}

/// Through the mean times at which runs that pass all nodes are at them.
void AddMeanWays(Plot& plot, const Corridor& corridor, const AlignedRuns& aligned, const WayAxis& axis, Way way,
                 const Units& units) {
    const double begin = axis.Bounds().Low;
    const auto groups = GroupsOf(aligned.Plotted);
    for (const RunsAlike& group : groups) {
        AlignedRuns alike;
        for (const AlignedRun& run : aligned.Runs) {
            const bool isOne = groups.size() == 1 || run.Of.Run->IsBefore == group.Runs.front().Run->IsBefore;
            if (isOne && run.Of.Run->Nodes() == static_cast<int>(corridor.Nodes.size())) alike.Runs.push_back(run);
        }
        const RunClock clock(alike, begin, TimeSpaceClock::FromStart);
        PlotTrace mean;
        mean.Width = MeanWidth;
        mean.Ink = group.Look.Ink;
        mean.Pattern = group.Look.Pattern;
        mean.Marker = group.Look.Marker;
        for (std::size_t passed = 0; passed < corridor.Nodes.size(); ++passed) {
            const double place = axis.PlaceOf(NodeAlong(corridor, way, passed));
            if (const auto moment = clock.MeanAt(place)) mean.Points.push_back({*moment, units.LengthOfFeet(place)});
        }
        if (mean.Points.empty()) continue;
        const std::string caption = group.Look.Caption;
        plot.Axes.Legend.push_back(
            {groups.size() == 1 ? "Mean" : caption + ", mean", mean.Ink, MeanWidth, mean.Pattern, mean.Marker});
        plot.Add(std::move(mean));
    }
}

}  // namespace

std::vector<std::size_t> PlottedRunsOf(const Corridor& corridor, const std::vector<MatchedRun>& runs,
                                       const CorridorFilter& filter, Way way) {
    std::vector<std::size_t> indexes;
    for (std::size_t i = 0; i < runs.size(); ++i)
        if (filter.Takes(runs[i]) && runs[i].Match.Along == way && corridor.Runs[runs[i].Index].SetAside.empty() &&
            KnownNodes(runs[i].Match.Nodes) > 0)
            indexes.push_back(i);
    return indexes;
}

Plot CorridorProfilePlot(const Corridor& corridor, const std::vector<MatchedRun>& runs, const CorridorFilter& filter,
                         Way way, const CorridorLook& look) {
    Plot plot;
    plot.Axes.Title = corridor.Name + ", " + corridor.Of(way).Name + ": speed profiles";
    const AlignedRuns aligned = AlignAll(corridor, runs, filter, way);
    plot.EmptyText = EmptyTextOf(corridor, aligned, way);
    if (!plot.EmptyText.empty()) return plot;

    const WayAxis axis(corridor, way);
    const PlotRange road = RoadOf(axis, aligned, LengthOf(corridor));
    plot.Axes.Across = DistanceAxis(road, look.Shown);
    plot.Axes.Up = AxisOfSpeeds(aligned.Plotted, look.Shown);
    if (const auto ideal = corridor.Of(way).IdealSpeedMph)
        plot.Axes.Up.Whole.High = std::max(plot.Axes.Up.Whole.High, look.Shown.SpeedOfMph(*ideal) * 1.1);
    AddBands(plot, corridor, runs, aligned, axis, look);
    plot.Add(NodeLines(corridor, axis, PlotLines::Way::Upright, look.Shown));
    AddProfiles(plot, aligned.Runs, road, look.ShowsRuns, look.Shown);
    AddIdealSpeed(plot, corridor.Of(way), look.Shown);
    plot.ZoomsUp = false;
    for (std::size_t i = 0; i < aligned.Indexes.size(); ++i)
        plot.Items[i].Text = InWords(corridor, runs[aligned.Indexes[i]]);
    return plot;
}

Plot CorridorTimeSpacePlot(const Corridor& corridor, const std::vector<MatchedRun>& runs, const CorridorFilter& filter,
                           Way way, TimeSpaceClock clock, const CorridorLook& look) {
    Plot plot;
    plot.Axes.Title = corridor.Name + ", " + corridor.Of(way).Name + ": time-space diagram";
    const AlignedRuns aligned = AlignAll(corridor, runs, filter, way);
    plot.EmptyText = EmptyTextOf(corridor, aligned, way);
    if (!plot.EmptyText.empty()) return plot;

    const WayAxis axis(corridor, way);
    const PlotRange road = RoadOf(axis, aligned, LengthOf(corridor));
    const bool fromStart = clock == TimeSpaceClock::FromStart;
    plot.Axes.Across.Caption = fromStart ? "Time from the first band (min:s)" : "Time of day";
    plot.Axes.Across.Values = fromStart ? AxisValues::Minutes : AxisValues::Clock;
    plot.Axes.Up = DistanceAxis(road, look.Shown);
    plot.ZoomsUp = fromStart;  // hours are looked at in part, with all signals
    for (const std::size_t index : aligned.Indexes) plot.Items.push_back({InWords(corridor, runs[index])});
    plot.Add(NodeLines(corridor, axis, PlotLines::Way::Level, look.Shown));
    AddWays(plot, runs, aligned, RunClock(aligned, axis.Bounds().Low, clock), road, look.Shown);
    if (fromStart)
        AddMeanWays(plot, corridor, aligned, axis, way, look.Shown);
    else
        AddGreenTimes(plot, corridor, filter, way, GroupsOf(aligned.Plotted), look.Shown);
    return plot;
}

Plot LightOf(const Plot& plot) {
    Plot light;
    light.Axes = plot.Axes;
    for (const auto& part : plot.Parts) {
        const auto* trace = dynamic_cast<const PlotTrace*>(part.get());
        if (trace != nullptr && trace->Item == 0) {
            PlotTrace thin(*trace);
            thin.Width = 1;
            light.Add(std::move(thin));
        } else if (trace == nullptr && dynamic_cast<const PlotBand*>(part.get()) == nullptr) {
            light.Parts.push_back(part);
        }
    }
    return light;
}

}  // namespace vantor
