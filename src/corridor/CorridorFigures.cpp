#include "corridor/CorridorFigures.h"

#include <cmath>

#include "corridor/SignalArrivals.h"
#include "statistics/GroupJson.h"

namespace vantor {
namespace {

using Json = nlohmann::ordered_json;

Json NullableText(const std::optional<std::string>& text) { return text ? Json(*text) : Json(nullptr); }

Json NamesOf(const std::vector<std::size_t>& indexes, const std::vector<MatchedRun>& runs) {
    Json names = Json::array();
    for (const std::size_t index : indexes) names.push_back(runs[index].Measured.Name);
    return names;
}

/// Turns what is known of one way into JSON.
class WayWriter {
public:
    WayWriter(const Corridor& corridor, const std::vector<MatchedRun>& runs) : corridor_(corridor), runs_(runs) {}

    Json Write(const WayFigures& way) const {
        const CorridorDirection& direction = corridor_.Of(way.Along);
        Json nodes = Json::array();
        for (const NodeFigures& node : way.Nodes) nodes.push_back(NodeAsJson(node, way.Runs));
        Json sections = Json::array();
        for (const SectionFigures& section : way.Sections) sections.push_back(SectionAsJson(section));
        return {{"direction", direction.Name},
                {"ideal_speed", direction.IdealSpeedMph ? Json(*direction.IdealSpeedMph) : Json(nullptr)},
                {"runs", NamesOf(way.Runs, runs_)},
                {"nodes", std::move(nodes)},
                {"sections", std::move(sections)},
                {"total", SectionAsJson(way.Total)}};
    }

private:
    Json NodeAsJson(const NodeFigures& figures, const std::vector<std::size_t>& all) const {
        const GroupStatistics& group = figures.Figures;
        Json json = {{"name", corridor_.Nodes[figures.Node].Name},
                     {"control_delay", SummaryAsJson(group.Of[Measure::ControlDelay])},
                     {"study_control_delay", NullableText(figures.AsStudy.AvgControlDelay)},
                     {"study_grade", NullableText(figures.AsStudy.LOSGrade)},
                     {"study_stop_delay", NullableText(figures.AsStudy.AvgStopDelay)},
                     {"stop_delay", SummaryAsJson(figures.StopDelay)},
                     {"runs_needed", NeededAsJson(group.Needed[Measure::ControlDelay])},
                     {"warnings", group.Warnings},
                     {"without", WithoutAsJson(figures)},
                     {"arrivals", ArrivalsAsJson(ArrivalsAt(corridor_, runs_, all, figures.Node), runs_)}};
        json["sensitivity"] = nullptr;
        if (figures.Moved)
            json["sensitivity"] = {{"least", figures.Moved->Least},
                                   {"most", figures.Moved->Most},
                                   {"grade_of_least", std::string(1, figures.Moved->GradeOfLeast)},
                                   {"grade_of_most", std::string(1, figures.Moved->GradeOfMost)}};
        if (figures.Compared)
            json["comparison"] = ComparisonAsJson(*figures.Compared, Measure::ControlDelay, corridor_.Options);
        return json;
    }

    Json WithoutAsJson(const NodeFigures& figures) const {
        Json list = Json::array();
        for (const std::size_t index : figures.Without)
            list.push_back(
                {{"run", runs_[index].Measured.Name}, {"problem", runs_[index].Delays[figures.Node].Problem}});
        return list;
    }

    Json SectionAsJson(const SectionFigures& section) const {
        if (corridor_.Nodes.empty()) return nullptr;
        Json json = {{"from", corridor_.Nodes[section.From].Name}, {"to", corridor_.Nodes[section.To].Name}};
        json.update(GroupAsJson(section.Figures));
        if (section.Compared) json["comparison"] = ComparisonAsJson(*section.Compared, corridor_.Options, true);
        return json;
    }

    const Corridor& corridor_;
    const std::vector<MatchedRun>& runs_;
};

const char* WordOf(CorridorFilter::Condition condition) {
    switch (condition) {
        case CorridorFilter::Condition::Before: return "before";
        case CorridorFilter::Condition::After: return "after";
        case CorridorFilter::Condition::Both: break;
    }
    return "both";
}

Json PassageAsJson(const MatchedRun& run, const Corridor& corridor, std::size_t node) {
    const NodePassage& passage = run.Match.Nodes[node];
    Json json = {{"name", corridor.Nodes[node].Name}, {"index", node}, {"source", WordOf(passage.Source)}};
    json["residual_ft"] = passage.Residual ? Json(*passage.Residual) : Json(nullptr);
    if (!passage.IsKnown()) return json;
    json["sample"] = passage.Sample;
    json["distance"] = passage.Feet;
    const NodeDelay& delay = run.Delays[node];
    json["band"] = {{"start", delay.Measured.StartFt},
                    {"end", delay.Measured.EndFt},
                    {"own", delay.Measured.IsOwn},
                    {"cut", delay.Measured.IsCut}};
    json["covered"] = delay.HasFigure();
    json["control_delay"] = delay.HasFigure() ? Json(delay.Row.Entry.ControlDelay) : Json(nullptr);
    json["stop_delay"] = delay.HasFigure() ? Json(delay.Row.Entry.StopDelay) : Json(nullptr);
    if (!delay.HasFigure()) json["problem"] = delay.Problem;
    if (!delay.Row.Warnings.empty()) json["warnings"] = delay.Row.Warnings;
    return json;
}

Json SourceAsJson(const TrackSource& source) {
    return {{"file", source.File}, {"from", IsoDateTime(source.From)}, {"to", IsoDateTime(source.To)}};
}

Json RunAsJson(const MatchedRun& run, const Corridor& corridor) {
    const CorridorRun& as = corridor.Runs[run.Index];
    Json json = {{"run", as.Name}, {"group", as.Group}};
    if (!run.IsThere()) {
        json["problem"] = run.Problem;
        return json;
    }
    const RunHeader& header = run.Read->Run.Header;
    json["direction"] = static_cast<int>(run.Match.Along);
    json["direction_name"] = corridor.Of(run.Match.Along).Name;
    json["before"] = as.IsBefore;
    json["period"] = run.Period;
    json["start"] =
        IsoDateTime({std::floor(header.RunDate.Days) + header.RunTime.Days - std::floor(header.RunTime.Days)});
    json["set_aside"] = as.SetAside.empty() ? Json(nullptr) : Json(as.SetAside);
    json["source"] = as.Source ? SourceAsJson(*as.Source) : Json(nullptr);
    json["remarks"] = run.Remarks;
    json["nodes"] = Json::array();
    for (std::size_t passed = 0; passed < corridor.Nodes.size(); ++passed)
        json["nodes"].push_back(PassageAsJson(run, corridor, NodeAlong(corridor, run.Match.Along, passed)));
    return json;
}

}  // namespace

Json ResultsAsJson(const Corridor& corridor, const std::vector<MatchedRun>& runs, const CorridorFilter& filter,
                   const CorridorResults& results) {
    Json json = {{"corridor", corridor.Name},
                 {"condition", WordOf(filter.Of)},
                 {"period", filter.Period ? Json(*filter.Period) : Json(nullptr)},
                 {"confidence", corridor.Options.Confidence}};
    json["ways"] = Json::array();
    for (const WayFigures& way : results.Ways) json["ways"].push_back(WayWriter(corridor, runs).Write(way));
    json["warnings"] = results.Warnings;
    json["left_out"] = results.LeftOut;
    return json;
}

Json MatchAsJson(const Corridor& corridor, const std::vector<MatchedRun>& runs) {
    Json passes = Json::array();
    for (const MatchedRun& run : runs) passes.push_back(RunAsJson(run, corridor));
    return {{"corridor", corridor.Name}, {"passes", std::move(passes)}};
}

}  // namespace vantor
