#include <algorithm>
#include <memory>
#include <optional>
#include <ostream>

#include "cli/Commands.h"
#include "cli/LogArguments.h"
#include "cli/StatisticsText.h"
#include "core/Counted.h"
#include "core/Numeric.h"
#include "core/Paths.h"
#include "core/RunDirection.h"
#include "core/RunFile.h"
#include "core/StudyGroupFolders.h"
#include "core/Text.h"
#include "core/modMain.h"
#include "corridor/CorridorFigures.h"
#include "corridor/CorridorFile.h"
#include "corridor/CorridorIntake.h"
#include "corridor/CorridorNodes.h"
#include "corridor/CorridorPeriods.h"
#include "corridor/CorridorRules.h"
#include "corridor/CorridorStudies.h"
#include "corridor/CorridorTables.h"
#include "corridor/SignalArrivals.h"
#include "gpsobd/CorridorTracks.h"

namespace vantor {
namespace {

/// A corridor with the place of its file.
struct NamedCorridor {
    std::string Path;
    std::string Root;  ///< the folder of the Study Groups, with a final separator
    Corridor Contents;
    std::optional<FileStamp> Stamp;
};

std::string RootOf(const std::string& path) {
    const std::string folder = FolderOf(path);
    return folder.empty() ? "./" : folder;
}

NamedCorridor Open(const CommandContext& context, const std::string& path) {
    StoredCorridor stored = LoadCorridor(context.Files, path);
    const std::string root = RootOf(path);
    return {root + LastComponent(path), root, std::move(stored.Corridor), stored.Stamp};
}

void Save(const CommandContext& context, NamedCorridor& corridor) {
    const Expected expected = corridor.Stamp ? Expected::Unchanged(*corridor.Stamp) : Expected::Nothing();
    const SavedCorridor saved = SaveCorridor(context.Files, corridor.Path, corridor.Contents, expected);
    corridor.Stamp = saved.Stamp;
    if (!saved.Backup.empty())
        context.Err << "Another program has changed the corridor meanwhile; its file is kept as " << saved.Backup
                    << ".\n";
}

/// The runs of a corridor; nothing where the reading was stopped.
std::optional<std::vector<MatchedRun>> ReadRuns(const CommandContext& context, const NamedCorridor& corridor) {
    MatchedRuns runs =
        ReadCorridorRuns(corridor.Contents, context.Files, corridor.Root, context.State.Settings, context.Work);
    if (!runs.IsWhole || !context.Work(1, 1)) return std::nullopt;
    return std::move(runs.Runs);
}

// ---- new ------------------------------------------------------------------------------------------------------------

struct NewArguments {
    std::string Name;
    std::string NodesFile;
    std::string RunFile;
    std::vector<std::string> Directions;
    std::vector<int> IdealSpeeds;
    std::optional<int> Upstream, Downstream;
    std::vector<std::string> Periods;
};

/// "Main St" or a path with the extension of corridors.
std::string PathOfNew(const std::string& name) {
    const std::string path = name.ends_with(CorridorExtension) ? name : name + CorridorExtension;
    const std::string file = LastComponent(path);
    const std::string problem =
        CorridorNameProblem(std::string_view(file).substr(0, file.size() - std::string_view(CorridorExtension).size()));
    if (!problem.empty()) throw RunTimeError(ErrorNumber::TypeMismatch, problem);
    return path;
}

FoundNodes NodesOf(const CommandContext& context, const NewArguments& arguments) {
    if (arguments.RunFile.empty()) return ReadNodes(context.Files, arguments.NodesFile);
    const RunReading run = ReadRun(context.Files, arguments.RunFile);
    if (!run) throw RunTimeError(*run.Fault);
    return NodesFromRun(run.Run, Way::Forward);
}

void TakeArguments(const NewArguments& arguments, Corridor& corridor) {
    for (std::size_t i = 0; i < arguments.Directions.size(); ++i)
        corridor.Directions.at(i).Name = arguments.Directions[i];
    for (const Way way : BothWays)
        if (!arguments.IdealSpeeds.empty())
            corridor.Of(way).IdealSpeedMph =
                way == Way::Forward ? arguments.IdealSpeeds.front() : arguments.IdealSpeeds.back();
    for (CorridorNode& node : corridor.Nodes) {
        node.Around.UpstreamFt = arguments.Upstream.value_or(node.Around.UpstreamFt);
        node.Around.DownstreamFt = arguments.Downstream.value_or(node.Around.DownstreamFt);
    }
    for (const std::string& text : arguments.Periods) {
        const auto period = PeriodOfText(text);
        if (!period)
            throw RunTimeError(ErrorNumber::TypeMismatch,
                               "\"" + text + "\" is no period. Write its times and its name: \"07:00-09:00 AM\".");
        corridor.Periods.push_back(*period);
    }
}

Json NodesAsJson(const Corridor& corridor) {
    Json nodes = Json::array();
    for (const CorridorNode& node : corridor.Nodes) {
        Json& json = nodes.emplace_back(Json{{"name", node.Name},
                                             {"control", WordOf(node.Control)},
                                             {"distance", node.DistanceFt},
                                             {"upstream", node.Around.UpstreamFt},
                                             {"downstream", node.Around.DownstreamFt}});
        json["latitude"] = node.At ? Json(node.At->Latitude) : Json(nullptr);
        json["longitude"] = node.At ? Json(node.At->Longitude) : Json(nullptr);
        json["speed_limit"] = node.SpeedLimitMph ? Json(*node.SpeedLimitMph) : Json(nullptr);
    }
    return nodes;
}

Json CorridorAsJson(const Corridor& corridor) {
    Json directions = Json::array();
    for (const CorridorDirection& direction : corridor.Directions)
        directions.push_back(
            {{"name", direction.Name},
             {"ideal_speed", direction.IdealSpeedMph ? Json(*direction.IdealSpeedMph) : Json(nullptr)}});
    Json periods = Json::array();
    for (const CorridorPeriod& period : corridor.Periods) periods.push_back(TextOf(period));
    return {{"corridor", corridor.Name},
            {"directions", std::move(directions)},
            {"periods", std::move(periods)},
            {"runs", corridor.Runs.size()},
            {"nodes", NodesAsJson(corridor)}};
}

int NewCorridor(CommandContext& context, const NewArguments& arguments) {
    NamedCorridor corridor;
    corridor.Path = PathOfNew(arguments.Name);
    corridor.Root = RootOf(corridor.Path);
    FoundNodes nodes = NodesOf(context, arguments);
    for (const std::string& remark : nodes.Remarks) context.Err << remark << '\n';
    PutNodes(corridor.Contents, std::move(nodes));
    TakeArguments(arguments, corridor.Contents);
    Save(context, corridor);
    corridor.Contents = LoadCorridor(context.Files, corridor.Path).Corridor;
    context.Print(CorridorAsJson(corridor.Contents));
    return Done;
}

int ShowCorridor(CommandContext& context, const std::string& path) {
    context.Print(CorridorAsJson(Open(context, path).Contents));
    return Done;
}

// ---- match ----------------------------------------------------------------------------------------------------------

struct MatchArguments {
    std::vector<std::string> Paths;
    std::string Group;
    std::string Direction;
    bool AreAfter = false;
    LogArguments Log;
};

std::optional<Way> WayNamed(const Corridor& corridor, const std::string& name) {
    for (const Way way : BothWays)
        if (EqualIgnoringCase(corridor.Of(way).Name, name)) return way;
    return std::nullopt;
}

/// Takes a run file into the corridor; it must lie in a Study Group beside the corridor's file.
void TakeRunFile(CommandContext& context, NamedCorridor& corridor, const std::string& path,
                 const MatchArguments& arguments) {
    const RunReading run = ReadRun(context.Files, path);
    if (!run) throw RunTimeError(*run.Fault);
    const std::string folder = FolderOf(path);
    const std::string group = LastComponent(folder);
    const std::string name = BaseName(path);
    if (!FileExists(context.Files, corridor.Root + group + "/" + name + RunExtension))
        throw RunTimeError(ErrorNumber::PathNotFound, path + ": the run lies in no Study Group beside the corridor (" +
                                                          corridor.Root + "). Upload or copy it into one first.");
    // What the user has set for it stays.
    if (FindCorridorRun(corridor.Contents, group, name) != nullptr) {
        context.Err << name << " is in the corridor already.\n";
        return;
    }
    const std::optional<Way> way = WayNamed(corridor.Contents, arguments.Direction);
    const auto line = CorridorLine::Of(corridor.Contents);
    const RunMatch match = MatchRun(run.Run, corridor.Contents, line ? &*line : nullptr, way);
    for (const std::string& remark : match.Remarks) context.Err << name << ": " << remark << '\n';
    CorridorRun taken = CorridorRunOf(run.Run, group, name, match.Along);
    if (arguments.AreAfter) taken.IsBefore = false;
    TakeRun(corridor.Contents, std::move(taken));
}

/// Takes the passes of a track into the corridor's file, with their runs or not at all; false when it was stopped.
bool TakeTrack(CommandContext& context, NamedCorridor& corridor, const std::string& path,
               const MatchArguments& arguments) {
    const CommandSources sources(context, arguments.Log);
    const CorridorTracks tracks =
        ReadCorridorTracks(sources.All, path, corridor.Contents, context.State.Settings, context.Work.Part(0, 0.8));
    for (const std::string& remark : tracks.Remarks) context.Err << remark << '\n';
    const std::string group = arguments.Group.empty() ? corridor.Contents.Name : arguments.Group;
    if (tracks.Passes.empty()) return true;
    context.Files.CreateFolder(GroupFolder(corridor.Root, group));
    const auto passes = NamePasses(context.Files, corridor.Contents, tracks.Passes, corridor.Root, group);
    if (!TakePassesIntoFile(context.Files, corridor.Path, passes, !arguments.AreAfter, context.Work.Part(0.8, 1)))
        return false;
    corridor = Open(context, corridor.Path);
    return true;
}

int MatchCorridor(CommandContext& context, const std::string& path, const MatchArguments& arguments) {
    NamedCorridor corridor = Open(context, path);
    if (!arguments.Direction.empty() && !WayNamed(corridor.Contents, arguments.Direction)) {
        context.Err << "The corridor has no direction \"" << arguments.Direction << "\": it has "
                    << corridor.Contents.Of(Way::Forward).Name << " and " << corridor.Contents.Of(Way::Back).Name
                    << ".\n";
        return WrongUsage;
    }
    const auto isRun = [](const std::string& file) { return HasExtension(file, RunExtension); };
    for (const std::string& file : arguments.Paths)
        if (isRun(file)) TakeRunFile(context, corridor, file, arguments);
    if (std::ranges::any_of(arguments.Paths, isRun)) Save(context, corridor);
    for (const std::string& file : arguments.Paths)
        if (!isRun(file) && !TakeTrack(context, corridor, file, arguments)) return Stopped;
    const auto runs = ReadRuns(context, corridor);
    if (!runs) return Stopped;
    if (context.AsJson) {
        context.Print(MatchAsJson(corridor.Contents, *runs));
        return Done;
    }
    for (const MatchedRun& run : *runs) {
        const CorridorRun& as = corridor.Contents.Runs[run.Index];
        context.Out << '\n'
                    << Printable(as.Group + ", " + as.Name + ", ") << corridor.Contents.Of(as.Along).Name << '\n';
        if (!run.IsThere()) context.Out << Printable(run.Problem) << '\n';
        for (const std::string& remark : run.Remarks) context.Out << Printable(remark) << '\n';
        PrintTable(context, MatchTable(corridor.Contents, run, UnitsOf(context.State.Settings)));
    }
    return Done;
}

// ---- studies, results, compare --------------------------------------------------------------------------------------

int MakeStudies(CommandContext& context, const std::string& path) {
    const NamedCorridor corridor = Open(context, path);
    const auto runs = ReadRuns(context, corridor);
    if (!runs) return Stopped;
    std::vector<StudyOfNode> studies =
        StudiesOf(corridor.Contents, *runs, context.Files, corridor.Root, context.Time.Now(), context.State.Settings);
    if (!WriteStudies(context.Files, studies, context.Work)) return Stopped;
    Json list = Json::array();
    for (const StudyOfNode& study : studies)
        list.push_back({{"study", study.Folder + study.Name + StudyExtension},
                        {"node", corridor.Contents.Nodes[study.Node].Name},
                        {"direction", corridor.Contents.Of(study.Along).Name},
                        {"period", study.Period},
                        {"runs", study.Contents.Record.RunCount},
                        {"control_delay", study.Contents.Record.StudyAvgControlDelay},
                        {"grade", study.Contents.Record.StudyLOSGrade}});
    context.Print(list);
    return Done;
}

struct ResultArguments {
    std::optional<std::string> Period;
    std::string Condition;

    CorridorFilter Filter() const {
        CorridorFilter filter{Period};
        if (EqualIgnoringCase(Condition, "before")) filter.Of = CorridorFilter::Condition::Before;
        if (EqualIgnoringCase(Condition, "after")) filter.Of = CorridorFilter::Condition::After;
        return filter;
    }
};

void Tell(const CommandContext& context, const CorridorResults& results) {
    for (const std::string& warning : results.Warnings) context.Err << warning << '\n';
    for (const std::string& run : results.LeftOut) context.Err << run << '\n';
}

int ShowResults(CommandContext& context, const std::string& path, const ResultArguments& arguments) {
    const NamedCorridor corridor = Open(context, path);
    const auto runs = ReadRuns(context, corridor);
    if (!runs) return Stopped;
    const AppSettings& settings = context.State.Settings;
    const CorridorFindings findings = FindingsOf(corridor.Contents, *runs, arguments.Filter());
    Tell(context, findings.All);
    if (context.AsJson) {
        context.Print(ResultsAsJson(corridor.Contents, *runs, arguments.Filter(), findings.All));
        return Done;
    }
    PrintTable(context, DelayTable(corridor.Contents, findings, UnitsOf(settings)));
    PrintTable(context, CorridorSectionsTable(corridor.Contents, findings, UnitsOf(settings)));
    PrintTable(context, ArrivalsTable(corridor.Contents, *runs, findings));
    return Done;
}

int CompareConditionsOf(CommandContext& context, const std::string& path, const ResultArguments& arguments) {
    const NamedCorridor corridor = Open(context, path);
    const auto runs = ReadRuns(context, corridor);
    if (!runs) return Stopped;
    const AppSettings& settings = context.State.Settings;
    const CorridorResults results = ComputeCorridor(corridor.Contents, *runs, arguments.Filter());
    Tell(context, results);
    if (context.AsJson) {
        context.Print(ResultsAsJson(corridor.Contents, *runs, arguments.Filter(), results));
        return Done;
    }
    const StatisticsTable table = CorridorComparedTable(corridor.Contents, results, UnitsOf(settings));
    if (table.Rows.empty()) context.Err << "There are no runs before and after to compare.\n";
    for (const std::string& sentence : ComparedSentences(corridor.Contents, results, UnitsOf(settings)))
        context.Out << Printable(sentence) << '\n';
    PrintTable(context, table);
    return Done;
}

}  // namespace

void AddCorridorCommands(CLI::App& program, CommandAction& chosen) {
    CLI::App* group = program.add_subcommand("corridor", "A street with several nodes and all runs along it");
    group->fallthrough()->require_subcommand(1);
    auto path = std::make_shared<std::string>();
    const auto addFile = [&](CLI::App& command) {
        command.add_option("CORRIDOR", *path, std::string("The corridor (") + CorridorExtension + ")")->required();
    };

    auto made = std::make_shared<NewArguments>();
    CLI::App& create = AddCommand(*group, chosen, "new", "Make a corridor of nodes",
                                  [=](CommandContext& context) { return NewCorridor(context, *made); });
    create.add_option("NAME", made->Name, "Its name, or the path of its file")->required();
    CLI::Option_group* from = create.add_option_group("nodes", "Where its nodes come from");
    from->add_option("--nodes", made->NodesFile, "CSV (name, latitude, longitude) or GeoJSON");
    from->add_option("--from-run", made->RunFile, "The nodes flagged in a run (.rd2)");
    from->require_option(1);
    create.add_option("--directions", made->Directions, "The names of its ways, forward and back: NB,SB")
        ->delimiter(',')
        ->expected(2);
    create.add_option("--ideal-speed", made->IdealSpeeds, "Whole mph, for both ways or one for each: 38,35")
        ->delimiter(',')
        ->expected(1, 2)
        ->check(CLI::Range(1, 200));
    create.add_option("--upstream", made->Upstream, "Feet before each node where delay is measured from")
        ->check(CLI::Range(0, 20000));
    create.add_option("--downstream", made->Downstream, "Feet behind each node where it is measured to")
        ->check(CLI::Range(0, 20000));
    create.add_option("--period", made->Periods, "A time of day: \"07:00-09:00 AM\"; several are allowed");

    addFile(AddCommand(*group, chosen, "show", "Its nodes and settings",
                       [=](CommandContext& context) { return ShowCorridor(context, *path); }));

    auto match = std::make_shared<MatchArguments>();
    CLI::App& matching =
        AddCommand(*group, chosen, "match", "Take runs and tracks in, and tell where each run passes each node",
                   [=](CommandContext& context) { return MatchCorridor(context, *path, *match); });
    addFile(matching);
    matching.add_option("FILE", match->Paths, "Run files of a Study Group, or tracks, which are cut into runs");
    matching.add_option("--group", match->Group,
                        "The Study Group for runs cut from tracks; the corridor's name at first");
    matching.add_option("--direction", match->Direction, "The way of all these runs; else it is found");
    matching.add_flag("--after", match->AreAfter, "These were driven after the change; else before");
    matching.add_option("--time-zone", match->Log.TimeZone, "The zone of the times that runs get, \"Europe/Berlin\"");

    addFile(AddCommand(*group, chosen, "studies", "Write a study for each node, way and period",
                       [=](CommandContext& context) { return MakeStudies(context, *path); }));

    auto results = std::make_shared<ResultArguments>();
    const auto addFilter = [&](CLI::App& command) {
        command.add_option("--period", results->Period, "Only the runs of this time of day");
    };
    CLI::App& show = AddCommand(*group, chosen, "results", "Delays at the nodes and travel times between them",
                                [=](CommandContext& context) { return ShowResults(context, *path, *results); });
    addFile(show);
    addFilter(show);
    show.add_option("--condition", results->Condition, "before or after; both at first")
        ->check(CLI::IsMember({"before", "after", "both"}, CLI::ignore_case));
    CLI::App& compare =
        AddCommand(*group, chosen, "compare", "Before against after, at each node and between them",
                   [=](CommandContext& context) { return CompareConditionsOf(context, *path, *results); });
    addFile(compare);
    addFilter(compare);
    AddCorridorReportCommands(*group, chosen);
}

}  // namespace vantor
