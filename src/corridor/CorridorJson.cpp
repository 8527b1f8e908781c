#include "corridor/CorridorJson.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "core/Date.h"
#include "core/JsonFacts.h"
#include "core/RunTimeError.h"
#include "core/StudyOptionsJson.h"
#include "core/Text.h"
#include "corridor/CorridorLine.h"
#include "corridor/CorridorPeriods.h"
#include "corridor/CorridorRules.h"
#include "corridor/JsonPlace.h"

namespace vantor {
namespace {

using Json = nlohmann::ordered_json;

constexpr int Version = 1;
constexpr std::array<const char*, 2> WayWords = {"forward", "back"};
constexpr std::array<const char*, 2> ConditionWords = {"before", "after"};  ///< of what is before, and what is not
constexpr const char* AlignmentName = "alignment";
// What OtherFacts of a corridor has of its file, of its alignment, and the features that are neither line nor node.
constexpr const char* FileRest = "file";
constexpr const char* LineRest = "line";
constexpr const char* OtherFeatures = "features";

const char* WordOf(Way way) { return WayWords.at(static_cast<std::size_t>(way)); }
const char* ConditionOf(bool isBefore) { return ConditionWords.at(isBefore ? 0 : 1); }

Json JsonOf(const Position& position) { return {NumberJson(position.Longitude), NumberJson(position.Latitude)}; }

Json JsonOf(const SignalTiming& timing) {
    Json json = Json::object();
    if (timing.Of) json["direction"] = WordOf(*timing.Of);
    if (timing.IsBefore) json["condition"] = ConditionOf(*timing.IsBefore);
    if (!timing.Period.empty()) json["period"] = timing.Period;
    json["cycleSeconds"] = NumberJson(timing.CycleSeconds);
    json["greenStartSeconds"] = NumberJson(timing.GreenStartSeconds);
    json["greenSeconds"] = NumberJson(timing.GreenSeconds);
    return json;
}

SignalTiming TimingFrom(const JsonPlace& json) {
    SignalTiming timing;
    if (json["direction"].IsThere()) timing.Of = static_cast<Way>(json["direction"].Word(WayWords, 0));
    if (json["condition"].IsThere()) timing.IsBefore = json["condition"].Word(ConditionWords, 0) == 0;
    timing.Period = json["period"].Text();
    timing.CycleSeconds = json["cycleSeconds"].Number();
    timing.GreenStartSeconds = json["greenStartSeconds"].Number(0);
    timing.GreenSeconds = json["greenSeconds"].Number();
    return timing;
}

Json Feature(Json geometry, Json properties) {
    return {{"type", "Feature"}, {"geometry", std::move(geometry)}, {"properties", std::move(properties)}};
}

Json JsonOf(const CorridorNode& node) {
    Json facts = {{"name", node.Name},
                  {"control", WordOf(node.Control)},
                  {"distanceFt", NumberJson(node.DistanceFt)},
                  {"upstreamFt", node.Around.UpstreamFt},
                  {"downstreamFt", node.Around.DownstreamFt}};
    if (node.SpeedLimitMph) facts["speedLimitMph"] = *node.SpeedLimitMph;
    for (const SignalTiming& timing : node.Timings) facts["timings"].push_back(JsonOf(timing));
    return Feature(node.At ? Json{{"type", "Point"}, {"coordinates", JsonOf(*node.At)}} : Json(), std::move(facts));
}

Band BandFrom(const JsonPlace& json) {
    Band band;
    band.UpstreamFt = json["upstreamFt"].Whole(band.UpstreamFt);
    band.DownstreamFt = json["downstreamFt"].Whole(band.DownstreamFt);
    return band;
}

/// A node that is not the first needs a distance or, as all others, a position.
CorridorNode NodeFrom(const JsonPlace& feature, std::size_t number) {
    CorridorNode node;
    const JsonPlace facts = feature["properties"];
    node.Name = facts["name"].Text();
    if (node.Name.empty()) node.Name = "Node " + std::to_string(number);
    if (feature["geometry"].IsThere()) node.At = feature["geometry"]["coordinates"].Place();
    node.Control = static_cast<NodeControl>(facts["control"].Word(NodeControlWords, 0));
    node.DistanceFt = facts["distanceFt"].Number(0);
    node.Around = BandFrom(facts);
    if (facts["speedLimitMph"].IsThere()) node.SpeedLimitMph = facts["speedLimitMph"].Whole();
    for (std::size_t i = 0; i < facts["timings"].Size(); ++i)
        node.Timings.push_back(TimingFrom(facts["timings"].At(i)));
    const Json rest = RestOf(feature.Value(), JsonOf(node));
    node.OtherFacts = rest.is_null() ? std::string() : rest.dump();
    return node;
}

Json LineJson(const std::vector<Position>& line) {
    Json points = Json::array();
    for (const Position& point : line) points.push_back(JsonOf(point));
    return Feature({{"type", "LineString"}, {"coordinates", std::move(points)}}, {{"name", AlignmentName}});
}

std::vector<Position> LineFrom(const JsonPlace& feature) {
    const JsonPlace points = feature["geometry"]["coordinates"];
    if (points.Size() > MostLinePoints)
        points.Refuse("has " + std::to_string(points.Size()) + " points, and at most 20,000 can be used");
    std::vector<Position> line;
    for (std::size_t i = 0; i < points.Size(); ++i) line.push_back(points.At(i).Place());
    if (line.size() < 2) points.Refuse("has fewer than two points");
    return line;
}

Json JsonOf(const CorridorDirection& direction) {
    Json json = {{"name", direction.Name}};
    if (direction.IdealSpeedMph) json["idealSpeedMph"] = *direction.IdealSpeedMph;
    return json;
}

CorridorDirection DirectionFrom(const JsonPlace& json, CorridorDirection direction) {
    if (json["name"].IsThere()) direction.Name = json["name"].Text();
    if (json["idealSpeedMph"].IsThere()) direction.IdealSpeedMph = json["idealSpeedMph"].Whole();
    return direction;
}

int MinuteFrom(const JsonPlace& json) {
    const auto minute = MinuteOfText(json.Text());
    if (!minute) json.Refuse("is no time of day such as \"07:00\"");
    return *minute;
}

Json JsonOf(const TrackSource& source) {
    Json json = {{"file", source.File}, {"hash", HashText(source.Hash)}};
    if (IsValidDate(source.From)) json["from"] = IsoDateTime(source.From);
    if (IsValidDate(source.To)) json["to"] = IsoDateTime(source.To);
    return json;
}

Date MomentFrom(const JsonPlace& json) {
    if (!json.IsThere()) return {};
    const std::string text = json.Text();
    constexpr std::string_view Shape = "0000-00-00T00:00:00";
    const auto fits = [](char shape, char character) { return shape == '0' ? IsDigit(character) : shape == character; };
    const auto number = [&text](std::size_t at, std::size_t digits) { return std::stoi(text.substr(at, digits)); };
    if (!std::ranges::equal(Shape, text, fits)) json.Refuse("is no moment such as \"2026-11-22T08:00:00\"");
    // Days count from 1900 on; before, their fractions are no times of day.
    if (number(0, 4) < 1900) json.Refuse("is a moment before 1900");
    try {
        const Date day = DateOf(number(0, 4), number(5, 2), number(8, 2));
        return {day.Days + TimeOf(number(11, 2), number(14, 2), number(17, 2)).Days};
    } catch (const RunTimeError&) {
        json.Refuse("is a moment that does not exist");
    }
}

Json JsonOf(const CorridorRun& run) {
    Json json = {{"group", run.Group},
                 {"name", run.Name},
                 {"movement", HashText(run.Movement)},
                 {"direction", WordOf(run.Along)},
                 {"condition", ConditionOf(run.IsBefore)}};
    if (!run.Period.empty()) json["period"] = run.Period;
    if (!run.SetAside.empty()) json["setAside"] = run.SetAside;
    for (const OwnBand& own : run.OwnBands)
        json["ownBands"].push_back(
            {{"node", own.Node + 1}, {"upstreamFt", own.Around.UpstreamFt}, {"downstreamFt", own.Around.DownstreamFt}});
    for (const SetNode& set : run.SetNodes)
        json["setNodes"].push_back({{"node", set.Node + 1}, {"sample", set.Sample}});
    if (run.Source) json["source"] = JsonOf(*run.Source);
    return json;
}

std::size_t NodeIndexFrom(const JsonPlace& json) {
    const std::int32_t number = json.Whole();
    if (number < 1) json.Refuse("is no number of a node, from 1");
    return static_cast<std::size_t>(number) - 1;
}

CorridorRun RunFrom(const JsonPlace& json) {
    CorridorRun run;
    run.Group = json["group"].Text();
    run.Name = json["name"].Text();
    run.Movement = json["movement"].Hash();
    run.Along = static_cast<Way>(json["direction"].Word(WayWords, 0));
    run.IsBefore = json["condition"].Word(ConditionWords, 0) == 0;
    run.Period = json["period"].Text();
    run.SetAside = json["setAside"].Text();
    const JsonPlace bands = json["ownBands"];
    for (std::size_t i = 0; i < bands.Size(); ++i)
        run.OwnBands.push_back({NodeIndexFrom(bands.At(i)["node"]), BandFrom(bands.At(i))});
    const JsonPlace set = json["setNodes"];
    for (std::size_t i = 0; i < set.Size(); ++i)
        run.SetNodes.push_back({NodeIndexFrom(set.At(i)["node"]), set.At(i)["sample"].Whole()});
    if (const JsonPlace source = json["source"]; source.IsThere())
        run.Source = {source["file"].Text(), source["hash"].Hash(), MomentFrom(source["from"]),
                      MomentFrom(source["to"])};
    const Json rest = RestOf(json.Value(), JsonOf(run));
    run.OtherFacts = rest.is_null() ? std::string() : rest.dump();
    return run;
}

/// All but the features and the runs.
Json SettingsJson(const Corridor& corridor) {
    Json settings = {{"version", Version}};
    for (const Way way : BothWays) settings["directions"][WordOf(way)] = JsonOf(corridor.Of(way));
    for (const CorridorPeriod& period : corridor.Periods)
        settings["periods"].push_back(
            {{"name", period.Name}, {"from", ClockText(period.From)}, {"to", ClockText(period.To)}});
    settings["matching"] = {{"toleranceFt", NumberJson(corridor.Matching.ToleranceFt)},
                            {"leadFt", NumberJson(corridor.Matching.LeadFt)}};
    if (corridor.BandsMayOverlap) settings["bandsMayOverlap"] = true;
    if (corridor.Options != StatisticsOptions()) settings["statistics"] = vantor::JsonOf(corridor.Options);
    settings["runs"] = Json::array();
    return {{"type", "FeatureCollection"}, {"features", Json::array()}, {"vantor", std::move(settings)}};
}

void ReadSettings(const JsonPlace& settings, Corridor& corridor) {
    const JsonPlace version = settings["version"];
    if (version.Whole(Version) != Version)
        version.Refuse("is not 1: a later version of the program wrote the file, and only that can read it");
    for (const Way way : BothWays)
        corridor.Of(way) = DirectionFrom(settings["directions"][WordOf(way)], corridor.Of(way));
    const JsonPlace periods = settings["periods"];
    for (std::size_t i = 0; i < periods.Size(); ++i) {
        const JsonPlace period = periods.At(i);
        corridor.Periods.push_back({period["name"].Text(), MinuteFrom(period["from"]), MinuteFrom(period["to"])});
    }
    MatchOptions& matching = corridor.Matching;
    matching.ToleranceFt = settings["matching"]["toleranceFt"].Number(matching.ToleranceFt);
    matching.LeadFt = settings["matching"]["leadFt"].Number(matching.LeadFt);
    corridor.BandsMayOverlap = settings["bandsMayOverlap"].Flag(false);
    if (const JsonPlace options = settings["statistics"]; options.IsThere()) {
        try {
            corridor.Options = OptionsFrom(options.Value());
        } catch (const Json::exception&) {
            options.Refuse("has an option that is of another kind than it should be");
        }
    }
    for (std::size_t i = 0; i < settings["runs"].Size(); ++i) corridor.Runs.push_back(RunFrom(settings["runs"].At(i)));
}

bool IsAlignment(const JsonPlace& feature) {
    if (feature["geometry"]["type"].Text() != "LineString") return false;
    const JsonPlace facts = feature["properties"];
    const auto tells = [&facts](const char* member) {
        return facts[member].IsThere() && facts[member].Value() == AlignmentName;
    };
    return tells("name") || tells("role");
}

/// What it cannot use is in the list that it returns.
Json ReadFeatures(const JsonPlace& features, Corridor& corridor, Json& lineRest) {
    Json others = Json::array();
    bool lacksDistances = false;
    for (std::size_t i = 0; i < features.Size(); ++i) {
        const JsonPlace feature = features.At(i);
        const JsonPlace geometry = feature["geometry"];
        if (feature["type"].Text() != "Feature") feature.Refuse("is no GeoJSON Feature");
        if (!geometry.IsThere() || geometry["type"].Text() == "Point") {
            if (corridor.Nodes.size() == MostNodes)
                feature.Refuse("is one node more than the 188 that a run names; divide the corridor into two");
            corridor.Nodes.push_back(NodeFrom(feature, corridor.Nodes.size() + 1));
            lacksDistances = lacksDistances || !feature["properties"]["distanceFt"].IsThere();
        } else if (corridor.Alignment.empty() && IsAlignment(feature)) {
            corridor.Alignment = LineFrom(feature);
            lineRest = RestOf(feature.Value(), LineJson(corridor.Alignment));
        } else {
            others.push_back(feature.Value());
        }
    }
    if (!lacksDistances || corridor.Nodes.size() < 2) return others;
    if (!std::ranges::all_of(corridor.Nodes, [](const CorridorNode& node) { return node.At.has_value(); }))
        features.Refuse("have a node without \"distanceFt\", and not all of them have positions to measure it");
    MeasureNodes(corridor);
    return others;
}

Corridor CorridorFrom(const Json& file) {
    const JsonPlace whole(&file, "");
    if (!file.is_object() || whole["type"].Text() != "FeatureCollection" || !whole["features"].IsThere())
        throw std::invalid_argument("The file is no GeoJSON FeatureCollection.");
    Corridor corridor;
    Json facts = Json::object();
    Json lineRest;
    Json others = ReadFeatures(whole["features"], corridor, lineRest);
    ReadSettings(whole["vantor"], corridor);
    if (Json rest = RestOf(file, SettingsJson(corridor)); !rest.is_null()) facts[FileRest] = std::move(rest);
    if (!lineRest.is_null()) facts[LineRest] = std::move(lineRest);
    if (!others.empty()) facts[OtherFeatures] = std::move(others);
    if (!facts.empty()) corridor.OtherFacts = facts.dump();
    return corridor;
}

/// Where in a text a byte stands, for the user.
std::string LineText(std::span<const std::byte> file, std::size_t byte) {
    const auto before = file.first(std::min(byte, file.size()));
    return std::to_string(1 + std::ranges::count(before, std::byte{'\n'}));
}

[[noreturn]] void RefuseFile(const std::string& reason, const std::string& path) {
    throw RunTimeError(ErrorNumber::TypeMismatch,
                       reason + "\n" + path + "\nCorrect the file, or take one of its backups (.bak) in its place.");
}

template <class Record>
Json WithRest(const Record& record) {
    Json json = JsonOf(record);
    PutRest(json, ObjectFromText(record.OtherFacts));
    return json;
}

}  // namespace

std::vector<std::byte> EncodeCorridor(const Corridor& corridor) {
    const Json facts = ObjectFromText(corridor.OtherFacts);
    Json file = SettingsJson(corridor);
    Json& features = file["features"];
    for (const CorridorNode& node : corridor.Nodes) features.push_back(WithRest(node));
    if (!corridor.Alignment.empty()) {
        Json line = LineJson(corridor.Alignment);
        PutRest(line, facts.value(LineRest, Json()));
        features.push_back(std::move(line));
    }
    for (const Json& other : facts.value(OtherFeatures, Json::array())) features.push_back(other);
    for (const CorridorRun& run : corridor.Runs) file["vantor"]["runs"].push_back(WithRest(run));
    PutRest(file, facts.value(FileRest, Json()));
    return JsonBytes(file);
}

Corridor DecodeCorridor(std::span<const std::byte> file, const std::string& path) {
    constexpr std::size_t MostBytes = 64 << 20;
    if (file.size() > MostBytes) RefuseFile("The file is larger than 64 MB: it is no corridor.", path);
    try {
        Corridor corridor = CorridorFrom(JsonFromBytes(file));
        if (const std::string problem = ProblemOf(corridor); !problem.empty()) RefuseFile(problem, path);
        return corridor;
    } catch (const Json::parse_error& error) {
        RefuseFile("The file is no JSON: line " + LineText(file, error.byte) + " cannot be read.", path);
    } catch (const Json::exception&) {
        RefuseFile("The file has a number that is too large.", path);
    } catch (const std::invalid_argument& error) {
        RefuseFile(error.what(), path);
    }
}

}  // namespace vantor
