#include "corridor/FiguresFile.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <stdexcept>
#include <string_view>
#include <utility>

#include "core/ContentHash.h"
#include "core/JsonFacts.h"
#include "core/Paths.h"
#include "core/RunTimeError.h"
#include "corridor/CorridorFigures.h"
#include "corridor/CorridorJson.h"
#include "corridor/JsonPlace.h"

namespace vantor {
namespace {

using Json = nlohmann::ordered_json;

constexpr int Version = 1;
constexpr const char* Kind = "figures of a corridor";
constexpr std::array<const char*, 3> Conditions = {"both", "before", "after"};  ///< by CorridorFilter::Condition

Json FilterAsJson(const CorridorFilter& filter) {
    return {{"period", filter.Period ? Json(*filter.Period) : Json(nullptr)},
            {"condition", Conditions.at(static_cast<std::size_t>(filter.Of))}};
}

CorridorFilter FilterFrom(const JsonPlace& json) {
    CorridorFilter filter;
    if (json["period"].IsThere()) filter.Period = json["period"].Text();
    filter.Of = static_cast<CorridorFilter::Condition>(json["condition"].Word(Conditions, 0));
    return filter;
}

/// The hash is that of the run as it was read; nothing for one that cannot be.
Json RunsAsJson(const ReportedCorridor& corridor) {
    Json runs = Json::array();
    for (const MatchedRun& run : corridor.Runs) {
        const CorridorRun& as = corridor.Of.Runs[run.Index];
        const bool isRead = run.Read && *run.Read;
        runs.push_back({{"group", as.Group},
                        {"name", as.Name},
                        {"movement", isRead ? Json(HashText(MovementHash(run.Read->Run))) : Json(nullptr)}});
    }
    return runs;
}

Json PartAsJson(const ReportedCorridor& corridor, const PartOfFindings& part) {
    const auto results = [&](CorridorFilter::Condition condition, const CorridorResults& of) {
        return ResultsAsJson(corridor.Of, corridor.Runs, {part.Filter.Period, condition}, of);
    };
    Json json = FilterAsJson(part.Filter);
    json["all"] = results(part.Filter.Of, part.Findings.All);
    if (part.Findings.Before) json["before"] = results(CorridorFilter::Condition::Before, *part.Findings.Before);
    if (part.Findings.After) json["after"] = results(CorridorFilter::Condition::After, *part.Findings.After);
    return json;
}

/// The reasons why runs cannot be read name their files, which may lie elsewhere when the figures are compared.
void TakeOutRoot(Json& json, const std::string& root) {
    if (json.is_structured()) {
        for (Json& part : json) TakeOutRoot(part, root);
    } else if (json.is_string() && !root.empty()) {
        auto& text = json.get_ref<std::string&>();
        for (std::size_t at = text.find(root); at != std::string::npos; at = text.find(root, at))
            text.erase(at, root.size());
    }
}

[[noreturn]] void Refuse(const std::string& reason, const std::string& path) {
    throw RunTimeError(ErrorNumber::TypeMismatch, reason + "\n" + path + "\nName the file of figures (" +
                                                      FiguresExtension + ") that was written with the report.");
}

FiguresFile FiguresFrom(Json contents, const std::string& path) {
    FiguresFile file;
    file.Contents = std::move(contents);
    const JsonPlace whole(&file.Contents, "");
    if (!file.Contents.is_object() || whole["kind"].Text() != Kind)
        throw std::invalid_argument("The file holds no figures of a corridor.");
    if (whole["version"].Whole() != Version)
        whole["version"].Refuse("is not 1: a later version of the program wrote the file, and only that can read it");
    if (!whole["definition"].IsThere()) whole["definition"].Refuse("is missing");
    file.Of = DecodeCorridor(JsonBytes(whole["definition"].Value()), path);
    file.Of.Name = whole["corridor"].Text();
    file.Filter = FilterFrom(whole["filter"]);
    const JsonPlace settings = whole["settings"];
    file.Settings.SpeedFactor = static_cast<float>(settings["speed_factor"].Number());
    file.Settings.StopSpeedThreshold = static_cast<std::int16_t>(settings["stop_speed_threshold"].Whole());
    file.Settings.MetricUnits = settings["metric_units"].Flag(false) ? -1 : 0;
    return file;
}

}  // namespace

std::string FiguresPathOf(const std::string& report) {
    if (HasExtension(report, FiguresExtension)) return report;
    return FolderOf(report) + BaseName(report) + FiguresExtension;
}

std::vector<PartOfFindings> FindingsByPeriod(const ReportedCorridor& corridor) {
    std::vector<PartOfFindings> parts;
    const auto add = [&](const CorridorFilter& filter) {
        parts.push_back({filter, FindingsOf(corridor.Of, corridor.Runs, filter)});
    };
    add(corridor.Filter);
    const std::vector<std::string> periods = PeriodsOf(corridor.Runs);
    if (!corridor.Filter.Period && periods.size() > 1)
        for (const std::string& period : periods) add({period, corridor.Filter.Of});
    return parts;
}

Json FiguresAsJson(const ReportedCorridor& corridor, const std::vector<PartOfFindings>& findings,
                   const AppSettings& settings, Date made) {
    Json json = {{"kind", Kind}, {"version", Version}, {"corridor", corridor.Of.Name}, {"made", IsoDateTime(made)}};
    json["settings"] = {{"speed_factor", settings.SpeedFactor},
                        {"stop_speed_threshold", settings.StopSpeedThreshold},
                        {"metric_units", settings.MetricUnits != 0}};
    json["filter"] = FilterAsJson(corridor.Filter);
    json["figures"] = Json::array();
    for (const PartOfFindings& part : findings) json["figures"].push_back(PartAsJson(corridor, part));
    json["runs"] = RunsAsJson(corridor);
    json["passes"] = MatchAsJson(corridor.Of, corridor.Runs)["passes"];
    TakeOutRoot(json, corridor.Root);
    json["definition"] = JsonFromBytes(EncodeCorridor(corridor.Of));
    return json;
}

FiguresFile LoadFigures(const FileSystem& files, const std::string& path) {
    const std::vector<std::byte> bytes = ReadWholeFile(files, path);
    try {
        return FiguresFrom(JsonFromBytes(bytes), path);
    } catch (const Json::exception&) {
        Refuse("The file is no JSON that can be read.", path);
    } catch (const std::invalid_argument& error) {
        Refuse(error.what(), path);
    }
}

bool WriteWithFigures(FileSystem& files, const std::string& report, std::span<const std::byte> bytes,
                      const Json& figures, const Progress& progress) {
    const std::string beside = FiguresPathOf(report);
    const std::vector<std::byte> text = JsonBytes(figures);
    const auto batch = files.BeginWrites();
    batch->Add(report, bytes, AsItStands(files, report));
    batch->Add(beside, text, AsItStands(files, beside));
    return batch->Commit(progress);
}

}  // namespace vantor
