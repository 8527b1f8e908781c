#include "statistics/TimeSpacePlot.h"

#include <algorithm>
#include <cmath>

namespace vantor {
namespace {

constexpr double RoomAbove = 1.1;  // for the name of the end
constexpr double MeanWidth = 3;
constexpr double RunWidth = 1.25;
constexpr double SecondsPerDay = 24 * SecondsPerHour;

double StartOf(const MeasuredRun& run, TimeSpaceClock clock) {
    if (clock == TimeSpaceClock::FromStart) return 0;
    return (run.RunTime.Days - std::floor(run.RunTime.Days)) * SecondsPerDay;
}

PlotLines NodeLines(const MeasuredRun& run, const MeanPlaces& places, const Units& units) {
    PlotLines lines;
    for (std::size_t i = 1; i < places.Feet.size(); ++i)
        lines.Lines.push_back(
            {units.LengthOfFeet(places.Feet[i]), i < run.NodeNames.size() ? run.NodeNames[i] : std::string()});
    return lines;
}

PlotTrace WayOf(const PlottedRun& run, const MeanPlaces& places, TimeSpaceClock clock, const Units& units) {
    PlotTrace way;
    way.Width = RunWidth;
    const double start = StartOf(*run.Run, clock);
    const auto distances = StretchedDistances(run, places);
    way.Points.reserve(distances.size());
    for (std::size_t i = 0; i < distances.size(); ++i)
        way.Points.push_back({start + static_cast<double>(i), units.LengthOfFeet(distances[i])});
    return way;
}

/// Through the mean times at which the nodes are reached.
PlotTrace MeanWay(const RunsAlike& group, const MeanPlaces& ofAll, const Units& units) {
    PlotTrace way;
    way.Width = MeanWidth;
    way.Ink = group.Look.Ink;
    way.Pattern = group.Look.Pattern;
    way.Marker = group.Look.Marker;
    const MeanPlaces places = MeanPlacesOf(group.Runs);
    for (std::size_t i = 0; i < places.Seconds.size(); ++i)
        way.Points.push_back({places.Seconds[i], units.LengthOfFeet(ofAll.Feet[i])});
    return way;
}

PlotRange TimesOf(const PlottedRuns& runs, TimeSpaceClock clock) {
    PlotRange range{0, 0};
    bool isFirst = true;
    for (const PlottedRun& run : runs) {
        if (!IsDrawn(*run.Run, clock)) continue;
        const double start = StartOf(*run.Run, clock);
        const double end = start + run.Run->Measures.Whole.TravelTime;
        range.Low = isFirst ? start : std::min(range.Low, start);
        range.High = isFirst ? end : std::max(range.High, end);
        isFirst = false;
    }
    return {range.Low, std::max(range.High, range.Low + 1)};
}

void AddLegend(Plot& plot, const std::vector<RunsAlike>& groups, TimeSpaceClock clock) {
    const bool hasMean = clock == TimeSpaceClock::FromStart;
    for (const auto& [look, runs] : groups) {
        const std::string caption = look.Caption;
        plot.Axes.Legend.push_back({caption, look.Ink, RunWidth, look.Pattern});
        if (hasMean)
            plot.Axes.Legend.push_back(
                {groups.size() == 1 ? "Mean" : caption + ", mean", look.Ink, MeanWidth, look.Pattern, look.Marker});
    }
}

}  // namespace

bool IsDrawn(const MeasuredRun& run, TimeSpaceClock clock) {
    return clock == TimeSpaceClock::FromStart || IsValidDate(run.RunTime);
}

std::vector<RunsAlike> GroupsOf(const PlottedRuns& runs) {
    RunsAlike before{BeforeLook, {}};
    RunsAlike after{AfterLook, {}};
    for (const PlottedRun& run : runs) (run.Run->IsBefore ? before : after).Runs.push_back(run);
    if (before.Runs.empty() || after.Runs.empty()) return {{OneLook, runs}};
    return {std::move(before), std::move(after)};
}

Plot TimeSpacePlot(const PlottedRuns& runs, TimeSpaceClock clock, const std::string& title, const Units& units) {
    Plot plot;
    plot.ZoomsUp = true;
    plot.Axes.Title = title;
    const bool fromStart = clock == TimeSpaceClock::FromStart;
    plot.Axes.Across = {fromStart ? "Time from the start (min:s)" : "Time of day", TimesOf(runs, clock),
                        fromStart ? AxisValues::Minutes : AxisValues::Clock};
    const MeanPlaces places = MeanPlacesOf(runs);
    const double length = places.Feet.empty() ? 0 : units.LengthOfFeet(places.Feet.back());
    plot.Axes.Up = {std::string("Distance (") + units.LengthLabel() + ")", {0, std::max(length * RoomAbove, 1.0)}};
    if (runs.empty()) return plot;

    const auto groups = GroupsOf(runs);
    AddLegend(plot, groups, clock);
    plot.Add(NodeLines(*runs.front().Run, places, units));
    for (const PlottedRun& run : runs) {
        plot.Items.push_back({RunInWords(*run.Run)});
        if (!IsDrawn(*run.Run, clock)) continue;
        const RunsLook& look = groups.size() == 1 ? OneLook : run.Run->IsBefore ? BeforeLook : AfterLook;
        PlotTrace way = WayOf(run, places, clock, units);
        way.Item = static_cast<int>(plot.Items.size());
        way.Ink = look.Ink;
        way.Pattern = look.Pattern;
        plot.Add(std::move(way));
    }
    if (fromStart)
        for (const RunsAlike& group : groups) plot.Add(MeanWay(group, places, units));
    return plot;
}

}  // namespace vantor
