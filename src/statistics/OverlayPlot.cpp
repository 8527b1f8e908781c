#include "statistics/OverlayPlot.h"

#include <algorithm>
#include <iterator>

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
    explicit Passing(const AlignedRun& run) : trace_(*run.Of.Trace), at_(run.At) {}

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
    const std::vector<double>& at_;
};

/// A profile that is seen where its run is chosen.
struct QuietTrace : PlotTrace {
    explicit QuietTrace(PlotTrace trace) : PlotTrace(std::move(trace)) {}
    void Draw(Canvas&, const PlotMap&, const PlotLook&) const override {}
    void Search(PlotSearch&) const override {}
};

/// The runs before or those after, or all where they are of one group.
struct ProfilesAlike {
    RunsLook Look;
    std::vector<AlignedRun> Runs;

    bool HasBand() const { return std::ssize(Runs) >= LeastForPercentiles; }
    /// Single profiles are grey under a band of their own, else as their group is.
    RunsLook SingleLook() const {
        return HasBand() ? RunsLook{"Single runs", &Colours::Node, LinePattern::Solid, PlotMarker::None} : Look;
    }
};

std::vector<ProfilesAlike> ProfileGroups(const std::vector<AlignedRun>& runs) {
    PlottedRuns plotted;
    for (const AlignedRun& run : runs) plotted.push_back(run.Of);
    std::vector<ProfilesAlike> groups;
    for (const RunsAlike& alike : GroupsOf(plotted)) {
        ProfilesAlike& group = groups.emplace_back(ProfilesAlike{alike.Look, {}});
        const auto isOne = [&](const AlignedRun& run) {
            return alike.Runs.size() == runs.size() || run.Of.Run->IsBefore == alike.Runs.front().Run->IsBefore;
        };
        std::ranges::copy_if(runs, std::back_inserter(group.Runs), isOne);
    }
    return groups;
}

void AddBand(Plot& plot, const ProfilesAlike& group, const PlotRange& road, const Units& units) {
    if (!group.HasBand()) return;
    PlotBand band;
    PlotTrace median;
    band.Ink = median.Ink = group.Look.Ink;
    band.Edges = median.Pattern = group.Look.Pattern;
    band.Opacity = BandOpacity;
    median.Width = MedianWidth;
    for (const SpeedsOver& piece : SpeedBand(group.Runs, road)) {
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

PlotTrace ProfileOf(const AlignedRun& run, const Units& units) {
    PlotTrace trace;
    trace.Points.reserve(run.At.size());
    for (std::size_t i = 1; i < run.At.size(); ++i)
        trace.Points.push_back({units.LengthOfFeet(run.At[i]), units.SpeedOfMph(run.Of.Trace->Speeds[i - 1])});
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

std::vector<AlignedRun> AlignedAt(const PlottedRuns& runs, const MeanPlaces& places) {
    std::vector<AlignedRun> aligned;
    aligned.reserve(runs.size());
    for (const PlottedRun& run : runs) aligned.push_back({run, StretchedDistances(run, places)});
    return aligned;
}

std::vector<SpeedsOver> SpeedBand(std::span<const AlignedRun> runs, const PlotRange& road) {
    std::vector<SpeedsOver> pieces;
    if (runs.empty() || road.Span() <= 0) return pieces;
    const double step = road.Span() / Pieces;
    const std::vector<Passing> passings(runs.begin(), runs.end());
    std::vector<double> speeds;
    for (std::size_t i = 0; i < Pieces; ++i) {
        SpeedsOver& piece = pieces.emplace_back(SpeedsOver{
            road.Low + step * static_cast<double>(i), road.Low + step * static_cast<double>(i + 1), {}, {}, {}});
        speeds.clear();
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

std::vector<SpeedsOver> SpeedBand(const PlottedRuns& runs, const MeanPlaces& places) {
    return runs.empty() ? std::vector<SpeedsOver>() : SpeedBand(AlignedAt(runs, places), {0, places.Feet.back()});
}

PlotAxis AxisOfSpeeds(const PlottedRuns& runs, const Units& units) {
    return {std::string("Speed (") + units.SpeedLabel() + ")",
            {0, std::max(units.SpeedOfMph(TopSpeed(runs)) * RoomAbove, 1.0)}};
}

void AddProfiles(Plot& plot, const std::vector<AlignedRun>& runs, const PlotRange& road, bool showsRuns,
                 const Units& units) {
    const auto groups = ProfileGroups(runs);
    for (const AlignedRun& run : runs) {
        plot.Items.push_back({RunInWords(*run.Of.Run)});
        const ProfilesAlike& group = groups.size() == 2 && !run.Of.Run->IsBefore ? groups[1] : groups[0];
        const RunsLook look = group.SingleLook();
        PlotTrace trace = ProfileOf(run, units);
        trace.Item = static_cast<int>(plot.Items.size());
        trace.Width = 1;
        trace.Ink = look.Ink;
        trace.Pattern = look.Pattern;
        if ((showsRuns || !group.HasBand()) && trace.Item <= MostSingleProfiles)
            plot.Add(std::move(trace));
        else
            plot.Add(QuietTrace(std::move(trace)));
    }
    auto& legend = plot.Axes.Legend;
    for (const ProfilesAlike& group : groups) {
        const RunsLook look = group.SingleLook();
        const auto isThere = [&](const PlotSample& sample) { return sample.Caption == look.Caption; };
        if ((showsRuns || !group.HasBand()) && std::ranges::none_of(legend, isThere))
            legend.push_back({look.Caption, look.Ink, 1, look.Pattern});
        AddBand(plot, group, road, units);
    }
}

Plot OverlayPlot(const PlottedRuns& runs, bool showsRuns, const std::string& title, const Units& units) {
    Plot plot;
    plot.Axes.Title = title;
    const MeanPlaces places = MeanPlacesOf(runs);
    const double length = places.Feet.empty() ? 0 : places.Feet.back();
    plot.Axes.Across = {std::string("Distance (") + units.LengthLabel() + ")",
                        {0, std::max(units.LengthOfFeet(length), 1.0)}};
    plot.Axes.Up = AxisOfSpeeds(runs, units);
    if (runs.empty()) return plot;
    plot.Add(NodeLines(*runs.front().Run, places, units));
    AddProfiles(plot, AlignedAt(runs, places), {0, length}, showsRuns, units);
    return plot;
}

}  // namespace vantor
