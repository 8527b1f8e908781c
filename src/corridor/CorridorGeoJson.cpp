#include "corridor/CorridorGeoJson.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "core/ContentHash.h"
#include "core/JsonFacts.h"
#include "core/Position.h"
#include "corridor/CorridorLine.h"

namespace vantor {
namespace {

using Json = nlohmann::ordered_json;

Json Nullable(const std::optional<double>& value) { return value ? Json(*value) : Json(nullptr); }
Json PlaceJson(const Position& place) { return {place.Longitude, place.Latitude}; }

Json Feature(Json geometry, Json properties) {
    return {{"type", "Feature"}, {"geometry", std::move(geometry)}, {"properties", std::move(properties)}};
}

/// "NB_before_" of "NB before": what is put before the names of properties.
std::string PrefixOf(const FindingsRow& row) {
    std::string prefix = row.Name + "_";
    std::ranges::replace(prefix, ' ', '_');
    return prefix;
}

void AddDelay(Json& facts, const std::string& prefix, const NodeFigures& figures) {
    const Summary& delay = figures.Figures.Of[Measure::ControlDelay];
    facts[prefix + "runs"] = delay.N;
    facts[prefix + "control_delay"] = Nullable(delay.Mean);
    facts[prefix + "low"] = Nullable(delay.Low);
    facts[prefix + "high"] = Nullable(delay.High);
    facts[prefix + "grade"] = figures.AsStudy.LOSGrade ? Json(*figures.AsStudy.LOSGrade) : Json(nullptr);
    facts[prefix + "stop_delay"] = Nullable(figures.StopDelay.Mean);
    facts[prefix + "least"] = figures.Moved ? Json(figures.Moved->Least) : Json(nullptr);
    facts[prefix + "most"] = figures.Moved ? Json(figures.Moved->Most) : Json(nullptr);
    facts[prefix + "grade_changes"] = figures.Moved && figures.Moved->ChangesGrade();
}

Json NodeFeature(const Corridor& corridor, std::size_t node, const std::vector<FindingsRow>& rows) {
    const CorridorNode& at = corridor.Nodes[node];
    Json facts = {{"role", "node"}, {"name", at.Name}, {"control", WordOf(at.Control)}, {"distance_ft", at.DistanceFt}};
    for (const FindingsRow& row : rows)
        for (const NodeFigures& figures : row.Results->Of(row.Along).Nodes)
            if (figures.Node == node) AddDelay(facts, PrefixOf(row), figures);
    return Feature(at.At ? Json{{"type", "Point"}, {"coordinates", PlaceJson(*at.At)}} : Json(nullptr),
                   std::move(facts));
}

/// The line of the street from one node to another; null where one of them has no position.
Json LineBetween(const Corridor& corridor, const CorridorLine* line, std::size_t from, std::size_t to) {
    const CorridorNode& first = corridor.Nodes[std::min(from, to)];
    const CorridorNode& last = corridor.Nodes[std::max(from, to)];
    if (!first.At || !last.At || line == nullptr) return nullptr;
    std::vector<Position> points = {*first.At};
    const double begin = *line->Nodes()[std::min(from, to)];
    const double end = *line->Nodes()[std::max(from, to)];
    std::size_t near = 0;
    for (const Position& point : corridor.Alignment) {
        const double along = line->FootOf(point, near).Along;
        if (along > begin && along < end) points.push_back(point);
    }
    points.push_back(*last.At);
    if (from > to) std::ranges::reverse(points);
    Json places = Json::array();
    for (const Position& point : points) places.push_back(PlaceJson(point));
    return {{"type", "LineString"}, {"coordinates", std::move(places)}};
}

Json SectionFeature(const Corridor& corridor, const CorridorLine* line, const FindingsRow& row,
                    const SectionFigures& section) {
    const GroupStatistics& group = section.Figures;
    const Summary& time = group.Of[Measure::TravelTime];
    return Feature(LineBetween(corridor, line, section.From, section.To),
                   {{"role", "section"},
                    {"way", row.Name},
                    {"from", corridor.Nodes[section.From].Name},
                    {"to", corridor.Nodes[section.To].Name},
                    {"runs", group.N},
                    {"length_ft", Nullable(group.MeanLength)},
                    {"travel_time", Nullable(time.Mean)},
                    {"low", Nullable(time.Low)},
                    {"high", Nullable(time.High)},
                    {"running_time", Nullable(group.Of[Measure::RunningTime].Mean)},
                    {"stopped_time", Nullable(group.Of[Measure::StoppedTime].Mean)},
                    {"stops", Nullable(group.Of[Measure::Stops].Mean)},
                    {"travel_speed", Nullable(group.AverageTravelSpeed)},
                    {"running_speed", Nullable(group.AverageRunningSpeed)}});
}

/// Parted where the run has no positions; null where fewer than two of them follow each other anywhere.
Json TrackGeometry(const RunRecord& run) {
    Json lines = Json::array();
    Json line = Json::array();
    const auto end = [&] {
        if (line.size() > 1) lines.push_back(std::move(line));
        line = Json::array();
    };
    for (const RunSample& sample : run.RunSamples) {
        if (const auto at = PositionOf(sample))
            line.push_back(PlaceJson(*at));
        else
            end();
    }
    end();
    if (lines.empty()) return nullptr;
    if (lines.size() == 1) return {{"type", "LineString"}, {"coordinates", std::move(lines[0])}};
    return {{"type", "MultiLineString"}, {"coordinates", std::move(lines)}};
}

void AddTrack(Json& features, const ReportedCorridor& corridor, const MatchedRun& run) {
    if (!run.IsThere()) return;
    Json geometry = TrackGeometry(run.Read->Run);
    if (geometry.is_null()) return;
    const CorridorRun& as = corridor.Of.Runs[run.Index];
    Json facts = {{"role", "track"},
                  {"run", as.Name},
                  {"group", as.Group},
                  {"direction", corridor.Of.Of(run.Match.Along).Name},
                  {"condition", as.IsBefore ? "before" : "after"},
                  {"period", run.Period},
                  {"set_aside", as.SetAside.empty() ? Json(nullptr) : Json(as.SetAside)},
                  {"movement", HashText(MovementHash(run.Read->Run))}};
    for (std::size_t node = 0; node < corridor.Of.Nodes.size(); ++node)
        facts["delay at " + corridor.Of.Nodes[node].Name] =
            run.Delays[node].HasFigure() ? Json(run.Delays[node].Row.Entry.ControlDelay) : Json(nullptr);
    features.push_back(Feature(std::move(geometry), std::move(facts)));
}

}  // namespace

Json FindingsGeoJson(const ReportedCorridor& corridor, const CorridorFindings& findings) {
    const Corridor& of = corridor.Of;
    const auto line = CorridorLine::Of(of);
    const std::vector<FindingsRow> rows = RowsOf(of, findings);
    Json features = Json::array();
    for (std::size_t node = 0; node < of.Nodes.size(); ++node) features.push_back(NodeFeature(of, node, rows));
    for (const FindingsRow& row : rows)
        for (const SectionFigures& section : row.Results->Of(row.Along).Sections)
            features.push_back(SectionFeature(of, line ? &*line : nullptr, row, section));
    for (const MatchedRun& run : corridor.Runs)
        if (corridor.Filter.Takes(run)) AddTrack(features, corridor, run);
    return {{"type", "FeatureCollection"}, {"name", of.Name}, {"features", std::move(features)}};
}

}  // namespace vantor
