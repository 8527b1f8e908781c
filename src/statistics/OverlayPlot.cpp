#include "statistics/OverlayPlot.h"

#include <algorithm>
#include <cmath>

#include "statistics/Reliability.h"
#include "statistics/Summary.h"
#include "statistics/TimeSpacePlot.h"

namespace vantor {
namespace {

constexpr std::size_t Pieces = 250;
constexpr double RoomAbove = 1.05;
constexpr double MedianWidth = 2.5;
constexpr double BandOpacity = 0.18;

/// The moment, in seconds from the start, at which a run has come so far; nothing behind its end.
class Passing {
public:
    Passing(const PlottedRun& run, const MeanPlaces& places)
        : trace_(*run.Trace), at_(StretchedDistances(run, places)) {}

    std::optional<double> SpeedOver(double from, double to) const {
        const double begin = MomentAt(from);
        const double end = MomentAt(to);
        return SpeedOf(OwnDistanceAt(end) - OwnDistanceAt(begin), end - begin);
    }

private:
    double MomentAt(double place) const {
        const auto next = std::lower_bound(at_.begin(), at_.end(), place);
        if (next == at_.begin()) return 0;
        if (next == at_.end()) return static_cast<double>(at_.size() - 1);
        const double before = *(next - 1);
        return static_cast<double>(next - 1 - at_.begin()) + (place - before) / (*next - before);
    }

    double OwnDistanceAt(double moment) const {
        const auto second = static_cast<std::size_t>(moment);
        const double at = trace_.Distances[second];
        if (second + 1 >= trace_.Distances.size()) return at;
        return at + (trace_.Distances[second + 1] - at) * (moment - static_cast<double>(second));
    }

    const RunTrace& trace_;
    std::vector<double> at_;
};

/// A profile that is seen where its run is chosen.
struct QuietTrace : PlotTrace {
    explicit QuietTrace(PlotTrace trace) : PlotTrace(std::move(trace)) {}
    void Draw(Canvas&, const PlotMap&, const PlotLook&) const override {}
    void Search(PlotSearch&) const override {}
};

bool HasBand(const RunsAlike& group) { return std::ssize(group.Runs) >= LeastForPercentiles; }

/// Single profiles are grey under a band of their own, else as their group is.
RunsLook SingleLook(const RunsAlike& group) {
    return HasBand(group) ? RunsLook{"Single runs", &Colours::Node, LinePattern::Solid, PlotMarker::None} : group.Look;
}

void AddBand(Plot& plot, const RunsAlike& group, const MeanPlaces& places, const Units& units) {
    if (!HasBand(group)) return;
    PlotBand band;
    PlotTrace median;
    band.Ink = median.Ink = group.Look.Ink;
    band.Edges = median.Pattern = group.Look.Pattern;
    band.Opacity = BandOpacity;
    median.Width = MedianWidth;
    for (const SpeedsOver& piece : SpeedBand(group.Runs, places)) {
        const double middle = units.LengthOfFeet((piece.From + piece.To) / 2);
        auto& slice = band.Slices.emplace_back(PlotBand::Slice{middle, std::nullopt});
        if (!piece.P50) continue;
        slice.Between = PlotRange{units.SpeedOfMph(*piece.P15), units.SpeedOfMph(*piece.P85)};
        median.Points.push_back({middle, units.SpeedOfMph(*piece.P50)});
    }
    const std::string caption = group.Look.Caption;
    plot.Axes.Legend.push_back({caption + ", P15 to P85", band.Ink, 1, band.Edges, PlotMarker::None, nullptr, 0.3});
    plot.Axes.Legend.push_back({caption + ", median", median.Ink, MedianWidth, median.Pattern});
    plot.Add(std::move(band));
    plot.Add(std::move(median));
}

PlotTrace ProfileOf(const PlottedRun& run, const MeanPlaces& places, const Units& units) {
    PlotTrace trace;
    const auto distances = StretchedDistances(run, places);
    trace.Points.reserve(distances.size());
    for (std::size_t i = 1; i < distances.size(); ++i)
        trace.Points.push_back({units.LengthOfFeet(distances[i]), units.SpeedOfMph(run.Trace->Speeds[i - 1])});
    return trace;
}

PlotLines NodeLines(const MeasuredRun& run, const MeanPlaces& places, const Units& units) {
    PlotLines lines;
    lines.Along = PlotLines::Way::Upright;
    for (std::size_t i = 1; i + 1 < places.Feet.size(); ++i)
        lines.Lines.push_back(
            {units.LengthOfFeet(places.Feet[i]), i < run.NodeNames.size() ? run.NodeNames[i] : std::string()});
    return lines;
}

double TopSpeed(const PlottedRuns& runs) {
    double top = 0;
    for (const PlottedRun& run : runs)
        for (const float speed : run.Trace->Speeds) top = std::max(top, static_cast<double>(speed));
    return top;
}

}  // namespace

std::vector<SpeedsOver> SpeedBand(const PlottedRuns& runs, const MeanPlaces& places) {
    std::vector<SpeedsOver> pieces;
    if (runs.empty() || places.Feet.back() <= 0) return pieces;
    const double step = places.Feet.back() / Pieces;
    std::vector<Passing> passings;
    passings.reserve(runs.size());
    for (const PlottedRun& run : runs) passings.emplace_back(run, places);
    for (std::size_t i = 0; i < Pieces; ++i) {
        SpeedsOver& piece = pieces.emplace_back(
            SpeedsOver{step * static_cast<double>(i), step * static_cast<double>(i + 1), {}, {}, {}});
        std::vector<double> speeds;
        for (const Passing& passing : passings)
            if (const auto speed = passing.SpeedOver(piece.From, piece.To)) speeds.push_back(*speed);
        if (static_cast<int>(speeds.size()) < LeastForPercentiles) continue;
        std::ranges::sort(speeds);
        piece.P15 = Percentile(speeds, 0.15);
        piece.P50 = Percentile(speeds, 0.5);
        piece.P85 = Percentile(speeds, 0.85);
    }
    return pieces;
}

Plot OverlayPlot(const PlottedRuns& runs, bool showsRuns, const std::string& title, const Units& units) {
    Plot plot;
    plot.Axes.Title = title;
    const MeanPlaces places = MeanPlacesOf(runs);
    const double length = places.Feet.empty() ? 0 : units.LengthOfFeet(places.Feet.back());
    plot.Axes.Across = {std::string("Distance (") + units.LengthLabel() + ")", {0, std::max(length, 1.0)}};
    plot.Axes.Up = {std::string("Speed (") + units.SpeedLabel() + ")",
                    {0, std::max(units.SpeedOfMph(TopSpeed(runs)) * RoomAbove, 1.0)}};
    if (runs.empty()) return plot;
    plot.Add(NodeLines(*runs.front().Run, places, units));
    const auto groups = GroupsOf(runs);
    for (const PlottedRun& run : runs) {
        plot.Items.push_back({RunInWords(*run.Run)});
        const RunsAlike& group = groups.size() == 2 && !run.Run->IsBefore ? groups[1] : groups[0];
        const RunsLook look = SingleLook(group);
        PlotTrace trace = ProfileOf(run, places, units);
        trace.Item = static_cast<int>(plot.Items.size());
        trace.Width = 1;
        trace.Ink = look.Ink;
        trace.Pattern = look.Pattern;
        if ((showsRuns || !HasBand(group)) && trace.Item <= MostSingleProfiles)
            plot.Add(std::move(trace));
        else
            plot.Add(QuietTrace(std::move(trace)));
    }
    auto& legend = plot.Axes.Legend;
    for (const RunsAlike& group : groups) {
        const RunsLook look = SingleLook(group);
        const auto isThere = [&](const PlotSample& sample) { return sample.Caption == look.Caption; };
        if ((showsRuns || !HasBand(group)) && std::ranges::none_of(legend, isThere))
            legend.push_back({look.Caption, look.Ink, 1, look.Pattern});
        AddBand(plot, group, places, units);
    }
    return plot;
}

}  // namespace vantor
