#include "cli/StatisticsJson.h"

#include <algorithm>

#include "core/Numeric.h"
#include "statistics/Figure.h"
#include "statistics/GroupJson.h"

namespace vantor {
namespace {

template <class Value>
Json OrNull(const std::optional<Value>& value) {
    return value ? Json(*value) : Json(nullptr);
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
