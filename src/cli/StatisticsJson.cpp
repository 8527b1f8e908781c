#include "cli/StatisticsJson.h"

#include <algorithm>

#include "core/Numeric.h"
#include "statistics/Figure.h"

namespace vantor {
namespace {

template <class Value>
Json OrNull(const std::optional<Value>& value) {
    return value ? Json(*value) : Json(nullptr);
}

Json SummaryAsJson(const Summary& summary) {
    return {{"n", summary.N},
            {"mean", OrNull(summary.Mean)},
            {"sd", OrNull(summary.Sd)},
            {"se", OrNull(summary.Se)},
            {"cv", OrNull(summary.Cv)},
            {"half_width", OrNull(summary.HalfWidth)},
            {"low", OrNull(summary.Low)},
            {"high", OrNull(summary.High)},
            {"min", OrNull(summary.Min)},
            {"max", OrNull(summary.Max)},
            {"median", OrNull(summary.Median)}};
}

Json ReliabilityAsJson(const Reliability& times) {
    if (!times.P50) return Json::object();
    return {{"p10", OrNull(times.P10)},
            {"p15", OrNull(times.P15)},
            {"p50", OrNull(times.P50)},
            {"p80", OrNull(times.P80)},
            {"p85", OrNull(times.P85)},
            {"p90", OrNull(times.P90)},
            {"p95", OrNull(times.P95)},
            {"buffer_index", OrNull(times.BufferIndex)},
            {"lottr", OrNull(times.Lottr)},
            {"travel_time_index", OrNull(times.TravelTimeIndex)},
            {"planning_time_index", OrNull(times.PlanningTimeIndex)}};
}

Json NeededAsJson(const RunsNeeded& needed) {
    return {{"have", needed.Have},
            {"needed", OrNull(needed.Needed)},
            {"still_needed", OrNull(needed.StillNeeded)},
            {"enough", needed.Enough}};
}

Json OutliersAsJson(const GroupStatistics& group) {
    if (!group.Outlier) return {{"grubbs", nullptr}};
    Json indexes = Json::array();
    if (group.Outlier->IsOutlier()) indexes.push_back(group.Outlier->Index);
    return {{"grubbs", indexes},
            {"farthest", group.FarthestRun},
            {"g", group.Outlier->G},
            {"critical", group.Outlier->Critical}};
}

bool HasControlDelay(const GroupStatistics& group) { return group.Of[Measure::ControlDelay].N > 0; }

Json GroupAsJson(const GroupStatistics& group) {
    Json result = {{"n", group.N},
                   {"rests_on", group.RestsOn.Text()},
                   {"directions", group.RestsOn.Directions},
                   {"warnings", group.Warnings}};
    for (const Measure measure : AllMeasures)
        if (measure != Measure::ControlDelay || HasControlDelay(group))
            result[KindOf(measure).Key] = SummaryAsJson(group.Of[measure]);
    result["average_travel_speed"] = OrNull(group.AverageTravelSpeed);
    result["average_travel_speed_low"] = OrNull(group.SpeedLow);
    result["average_travel_speed_high"] = OrNull(group.SpeedHigh);
    result["average_running_speed"] = OrNull(group.AverageRunningSpeed);
    result["percent_stopped"] = OrNull(group.PercentStopped);
    result["stops_per_mile"] = OrNull(group.StopsPerMile);
    result["mean_length"] = OrNull(group.MeanLength);
    result["median_interval"] = group.MedianTime ? Json{{"low", group.MedianTime->Low},
                                                        {"high", group.MedianTime->High},
                                                        {"coverage", group.MedianTime->Coverage}}
                                                 : Json(nullptr);
    result["reliability"] = ReliabilityAsJson(group.Times);
    result["runs_needed"] = NeededAsJson(group.Needed[Measure::TravelTime]);
    if (HasControlDelay(group)) result["runs_needed_control_delay"] = NeededAsJson(group.Needed[Measure::ControlDelay]);
    result["runs_needed_travel_speed"] = NeededAsJson(group.Needed[Measure::TravelSpeed]);
    result["outliers"] = OutliersAsJson(group);
    return result;
}

Json WelchAsJson(const WelchTest& test) {
    return {{"n_before", test.NBefore},
            {"n_after", test.NAfter},
            {"mean_before", OrNull(test.MeanBefore)},
            {"mean_after", OrNull(test.MeanAfter)},
            {"difference", OrNull(test.Difference)},
            {"percent", OrNull(test.Percent)},
            {"se", OrNull(test.Se)},
            {"t", OrNull(test.T)},
            {"df", OrNull(test.Df)},
            {"p", OrNull(test.P)},
            {"low", OrNull(test.Low)},
            {"high", OrNull(test.High)}};
}

Json MannWhitneyAsJson(const MannWhitneyTest& test) {
    return {{"u_before", OrNull(test.UBefore)},
            {"u_after", OrNull(test.UAfter)},
            {"p", OrNull(test.P)},
            {"exact", test.Exact},
            {"shift", OrNull(test.Shift)},
            {"smallest_p", OrNull(test.SmallestP)}};
}

Json ComparisonAsJson(const ByMeasure<Comparison>& compared, const StatisticsOptions& options, bool withHolm) {
    Json result = Json::object();
    for (const Measure measure : AllMeasures) {
        const Comparison& each = compared[measure];
        if (each.Welch.NBefore == 0 && each.Welch.NAfter == 0) continue;
        Json& entry = result[KindOf(measure).Key];
        entry = {{"welch", WelchAsJson(each.Welch)}, {"mann_whitney", MannWhitneyAsJson(each.Ranks)}};
        if (each.HolmP || (withHolm && measure == Measure::TravelTime)) entry["holm_p"] = OrNull(each.HolmP);
        entry["text"] = ComparisonText(each, measure, options, {});
    }
    return result;
}

void AddGroups(Json& into, const GroupedStatistics& grouped) {
    into["all"] = GroupAsJson(grouped.All);
    into["before"] = GroupAsJson(grouped.Before);
    into["after"] = GroupAsJson(grouped.After);
}

Json SectionsAsJson(const std::vector<SectionOverRuns>& sections, const StatisticsOptions& options) {
    Json list = Json::array();
    for (const SectionOverRuns& section : sections) {
        Json each = {{"from", section.From}, {"to", section.To}};
        AddGroups(each, section);
        each["comparison"] = ComparisonAsJson(section.Compared, options, true);
        list.push_back(std::move(each));
    }
    return list;
}

void AddPiece(Json& into, const PieceMeasures& piece) {
    into["travel_time"] = piece.TravelTime;
    into["distance"] = piece.Distance;
    into["stopped_time"] = piece.StoppedTime;
    into["running_time"] = piece.RunningTime();
    into["stops"] = piece.Stops;
    into["percent_stopped"] = OrNull(piece.PercentStopped());
    into["travel_speed"] = OrNull(piece.TravelSpeed());
    into["running_speed"] = OrNull(piece.RunningSpeed());
}

void AddEvents(Json& into, const RunEvents& found) {
    into["events"] = Json::array();
    for (const DelayEvent& event : found.Events)
        into["events"].push_back({{"onset", event.Onset},
                                  {"lowest", event.Lowest},
                                  {"end", event.End},
                                  {"onset_distance", event.OnsetDistance},
                                  {"end_distance", event.EndDistance},
                                  {"onset_speed", event.OnsetSpeed},
                                  {"end_speed", event.EndSpeed}});
    into["event_of_node"] = Json::array();
    for (const auto& event : found.EventOfNode) into["event_of_node"].push_back(OrNull(event));
}

Json RunAsJson(const MeasuredRun& run) {
    Json result = {{"name", run.Name},
                   {"date", IsValidDate(run.RunDate) ? Json(ShortDate(run.RunDate)) : Json(nullptr)},
                   {"time", IsValidDate(run.RunTime) ? Json(ShortTime(run.RunTime)) : Json(nullptr)},
                   {"before", run.IsBefore},
                   {"period", run.Period},
                   {"direction", run.Direction},
                   {"set_aside", run.SetAside}};
    AddPiece(result, run.Measures.Whole);
    result["control_delay"] = OrNull(run.ValueOf(Measure::ControlDelay));
    result["node_times"] = run.Measures.NodeTimes;
    result["node_distances"] = run.Measures.NodeDistances;
    result["sections"] = Json::array();
    for (const PieceMeasures& section : run.Measures.Sections) AddPiece(result["sections"].emplace_back(), section);
    result["warnings"] = run.Warnings;
    return result;
}

Json OptionsAsJson(const StatisticsOptions& options) {
    const bool isPercent = options.Error.Of == PermittedError::Kind::Percent;
    return {{"confidence", options.Confidence},
            {"error", SignificantDigits(options.Error.Value, 6) + (isPercent ? "%" : "s")},
            {"error_speed", options.SpeedError},
            {"stop", options.Stops.Stop},
            {"go", options.Stops.Go},
            {"free_flow", OrNull(options.FreeFlowSpeed)}};
}

/// How sure the mean travel time was after each run, in the order driven.
Json SoFarAsJson(const std::vector<MeasuredRun>& runs, const StatisticsOptions& options) {
    Json list = Json::array();
    for (const RunsSoFar& soFar : TravelTimesSoFar(runs, options))
        list.push_back({{"n", soFar.Of.N},
                        {"mean", OrNull(soFar.Of.Mean)},
                        {"half_width", OrNull(soFar.Of.HalfWidth)},
                        {"needed", OrNull(soFar.Needed.Needed)},
                        {"still_needed", OrNull(soFar.Needed.StillNeeded)}});
    return list;
}

Json NodeCountsAsJson(const StudyStatistics& statistics) {
    Json counts = Json::array();
    for (const NodeCount& each : statistics.NodeCounts) counts.push_back({{"nodes", each.Nodes}, {"runs", each.Runs}});
    return counts;
}

}  // namespace

Json FiguresAsJson(const StudyStatistics& statistics) {
    Json result = Json::object();
    AddGroups(result["groups"], statistics.Whole);
    result["comparison"] = ComparisonAsJson(statistics.Whole.Compared, statistics.Options, false);
    result["comparison_warnings"] = statistics.Whole.Warnings;
    result["node_counts"] = NodeCountsAsJson(statistics);
    result["sections_comparable"] = statistics.SectionsComparable;
    // Where they are not those of all runs, they have a name that says so.
    result[statistics.SectionsComparable ? "sections" : "sections_of_most_runs"] =
        SectionsAsJson(statistics.Sections, statistics.Options);
    return result;
}

Json StatisticsAsJson(const StudyStatistics& statistics, const std::vector<MeasuredRun>& runs,
                      const std::vector<RunToPropose>& events) {
    Json result = {{"options", OptionsAsJson(statistics.Options)}, {"runs", Json::array()}};
    for (const MeasuredRun& run : runs) {
        Json& each = result["runs"].emplace_back(RunAsJson(run));
        const auto found = std::ranges::find(events, run.Entry, &RunToPropose::Run);
        if (found != events.end()) AddEvents(each, found->Found);
    }
    result["contradictory_flags"] = statistics.ContradictoryFlags;
    result.update(FiguresAsJson(statistics));
    result["running_travel_time"] = SoFarAsJson(runs, statistics.Options);
    result["warnings"] = statistics.Warnings;
    return result;
}

Json ConditionsAsJson(const std::vector<ConditionStatistics>& conditions, const StatisticsOptions& options) {
    Json result = {{"options", OptionsAsJson(options)}, {"conditions", Json::array()}};
    for (const ConditionStatistics& condition : conditions) {
        Json each = {{"name", condition.Name}, {"figures", GroupAsJson(condition.Figures)}};
        each["comparison"] = ComparisonAsJson(condition.Compared, options, false);
        each["sections"] = SectionsAsJson(condition.Sections, options);
        each["warnings"] = condition.Warnings;
        each["remarks"] = condition.Remarks;
        result["conditions"].push_back(std::move(each));
    }
    return result;
}

}  // namespace vantor
