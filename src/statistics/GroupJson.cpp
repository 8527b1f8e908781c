#include "statistics/GroupJson.h"

#include "statistics/Figure.h"

namespace vantor {
namespace {

using Json = nlohmann::ordered_json;

template <class Value>
Json OrNull(const std::optional<Value>& value) {
    return value ? Json(*value) : Json(nullptr);
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

}  // namespace

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

Json NeededAsJson(const RunsNeeded& needed) {
    return {{"have", needed.Have},
            {"needed", OrNull(needed.Needed)},
            {"still_needed", OrNull(needed.StillNeeded)},
            {"enough", needed.Enough}};
}

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

Json ComparisonAsJson(const Comparison& compared, Measure measure, const StatisticsOptions& options, bool withHolm) {
    Json entry = {{"welch", WelchAsJson(compared.Welch)}, {"mann_whitney", MannWhitneyAsJson(compared.Ranks)}};
    if (compared.HolmP || withHolm) entry["holm_p"] = OrNull(compared.HolmP);
    entry["text"] = ComparisonText(compared, measure, options, {});
    return entry;
}

Json ComparisonAsJson(const ByMeasure<Comparison>& compared, const StatisticsOptions& options, bool withHolm) {
    Json result = Json::object();
    for (const Measure measure : AllMeasures) {
        const Comparison& each = compared[measure];
        if (each.Welch.NBefore == 0 && each.Welch.NAfter == 0) continue;
        result[KindOf(measure).Key] =
            ComparisonAsJson(each, measure, options, withHolm && measure == Measure::TravelTime);
    }
    return result;
}

}  // namespace vantor
