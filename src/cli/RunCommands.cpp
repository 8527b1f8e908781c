#include <memory>

#include "analysis/RunFacts.h"
#include "analysis/RunStatistics.h"
#include "analysis/StudyEdits.h"
#include "cli/Commands.h"
#include "cli/RecordJson.h"
#include "cli/RunExports.h"
#include "core/Numeric.h"
#include "core/RunFile.h"
#include "core/modMain.h"

namespace vantor {
namespace {

constexpr const char* RunFilesHelp = "Run files (.rd2 or .rdf); - is standard input with a .rd2";

std::optional<RunRecord> LoadRun(CommandContext& context, const std::string& path) {
    const NamedFile file = TakeApart(path);
    if (file.Extension == Ver1RunExtension) {
        if (FileExists(context.Files, path)) return ReadVer1Run(context.Files, file.Folder, file.Name);
        TellMissingRun(context.Messages, file.Name);
        return std::nullopt;
    }
    TakeApart(path, RunExtension, "run file");
    RunReading reading = ReadRun(context.Files, path);
    if (reading.Outcome == RunOutcome::Missing) {
        TellMissingRun(context.Messages, file.Name);
        return std::nullopt;
    }
    if (!reading) throw RunTimeError(*reading.Fault);
    if (reading.IsCut())
        context.Err << file.Name << ": " << CutText(reading.SamplesInFile, reading.Run.Header.SampleCount)
                    << "; the missing ones are read as zero\n";
    return std::move(reading.Run);
}

int ShowRun(CommandContext& context, const std::string& path, bool withSamples) {
    const auto run = LoadRun(context, path);
    if (!run) return Failed;
    Json result = RecordAsJson(run->Header, RunHeaderFields);
    if (withSamples) {
        result["SampleValues"] = Json::array();
        for (const std::int16_t value : run->SampleValues) result["SampleValues"].push_back(value);
    }
    context.Print(result);
    return Done;
}

int ConvertRun(CommandContext& context, const std::string& path) {
    const NamedFile file = TakeApart(path, Ver1RunExtension, "version 1 run file");
    const auto run = ConvertVer1RunFile(context.Files, context.Messages, file.Folder, file.Name);
    if (!run) return Failed;
    context.Print({{"RunName", run->Header.RunName},
                   {"path", file.Folder + file.Name + RunExtension},
                   {"renamed", file.Folder + file.Name + ConvertedRunExtension}});
    return Done;
}

struct DelayOptions {
    std::vector<std::string> Paths;
    std::optional<std::int32_t> StartDist;
    std::optional<std::int32_t> EndDist;
    std::optional<std::int32_t> StartSample;
    std::optional<std::int32_t> EndSample;
    std::int32_t IdealSpeed = 0;
    std::optional<std::int16_t> StopSpeed;
};

std::vector<std::string> WarningsOf(const RunRecord& run, const StudyRunEntry& entry, const AppSettings& settings) {
    RunReading reading;
    reading.Outcome = RunOutcome::Run;
    reading.Run = run;
    reading.SamplesInFile = run.Header.SampleCount;
    return RunWarnings(entry, FactsOf(reading, entry, settings));
}

int ShowDelay(CommandContext& context, const DelayOptions& options, const std::string& path) {
    const auto run = LoadRun(context, path);
    if (!run) return Failed;
    AppSettings settings = context.State.Settings;
    settings.StopSpeedThreshold = options.StopSpeed.value_or(settings.StopSpeedThreshold);
    StudyRunEntry entry;
    entry.EntryRunName = run->Header.RunName;
    entry.IdealSpeedUser = options.IdealSpeed;
    PlotState plot;
    if (options.StartSample) {
        plot = {BoundaryAxis::Time, *options.StartSample, *options.EndSample};
    } else {
        entry.CDStartDist = *options.StartDist;
        entry.CDEndDist = *options.EndDist;
        // As a study's run is computed: a boundary that no scan finds keeps the sample where it was placed.
        plot = PlacedBoundaries(*run, entry);
    }
    ComputeEntry(*run, settings, plot, entry);
    Json result = RecordAsJson(entry, StudyRunEntryFields);
    result["warnings"] = WarningsOf(*run, entry, settings);
    for (const auto& warning : result["warnings"]) context.Err << warning.get<std::string>() << '\n';
    result["CDStartSample"] = plot.CDStartSample;
    result["CDEndSample"] = plot.CDEndSample;
    context.Print(result);
    return Done;
}

int ShowDelays(CommandContext& context, const DelayOptions& options) {
    if (!options.StartDist && !options.StartSample) {
        context.Err << "Give --start-dist and --end-dist, or --start-sample and --end-sample.\n";
        return WrongUsage;
    }
    return DoEach(
        context, options.Paths,
        [&](CommandContext& each, const std::string& path) { return ShowDelay(each, options, path); }, RunExtension);
}

void AddDelayCommand(CLI::App& group, CommandAction& chosen) {
    auto options = std::make_shared<DelayOptions>();
    CLI::App& delay = AddCommand(group, chosen, "delay", "Control delay and stop delay between two boundaries",
                                 [options](CommandContext& context) { return ShowDelays(context, *options); });
    delay.add_option("FILE", options->Paths, RunFilesHelp)->required();
    auto* distances = delay.add_option_group("distances");
    auto* startDist =
        distances->add_option("--start-dist", options->StartDist, "Start boundary, feet")->transform(WholeNumber());
    auto* endDist =
        distances->add_option("--end-dist", options->EndDist, "End boundary, feet")->transform(WholeNumber());
    startDist->needs(endDist);
    endDist->needs(startDist);
    auto* samples = delay.add_option_group("samples");
    auto* startSample = samples->add_option("--start-sample", options->StartSample, "Start boundary, sample from 1")
                            ->transform(WholeNumber());
    auto* endSample = samples->add_option("--end-sample", options->EndSample, "End boundary, sample from 1")
                          ->transform(WholeNumber());
    startSample->needs(endSample);
    endSample->needs(startSample);
    startDist->excludes(startSample);
    delay.add_option("--ideal-speed", options->IdealSpeed, "Ideal speed, miles per hour; 0 computes it")
        ->transform(WholeNumber());
    delay.add_option("--stop-speed", options->StopSpeed, "Stop speed threshold, miles per hour")
        ->transform(WholeNumber());
}

Json AsJson(const SectionStatistics& section, const std::vector<DelayKey>& keys) {
    Json result = Json::object();
    if (section.Number != 0) result["Section"] = section.Number;
    result["FromName"] = section.FromName;
    result["ToName"] = section.ToName;
    result["Length"] = section.Length;
    result["TravelTime"] = section.TravelTime;
    result["RunningTime"] = section.RunningTime();
    result["StoppedTime"] = section.StoppedTime;
    result["Stops"] = section.Stops;
    result["MeanRunningSpeed"] = Round32(section.MeanRunningSpeed() * 100) / 100.0;
    result["DelaySeconds"] = Json::array();
    for (const DelayKey& key : keys)
        result["DelaySeconds"].push_back(
            {{"Key", key.Key}, {"Label", key.Label}, {"Seconds", section.DelaySeconds[key.Key]}});
    result["NoKeySeconds"] = section.DelaySeconds[0];
    return result;
}

/// The lines of a table with its heads as keys.
Json AsTable(const std::vector<SheetRow>& rows) {
    Json table = Json::array();
    for (std::size_t i = 1; i < rows.size(); ++i) {
        Json line = Json::object();
        for (std::size_t column = 0; column < rows[i].size(); ++column) {
            const SheetField& field = rows[i][column];
            line[rows[0][column].Text] = field.IsNumber ? Json::parse(field.Text) : Json(field.Text);
        }
        table.push_back(line);
    }
    return table;
}

int ShowStatistics(CommandContext& context, const std::string& path) {
    const auto run = LoadRun(context, path);
    if (!run) return Failed;
    const RunStatistics statistics = ComputeRunStatistics(*run, context.State.Settings);
    if (!context.AsJson) {
        context.Print(AsTable(StatisticsSheet(statistics, UnitsOf(context.State.Settings), nullptr)));
        return Done;
    }
    Json result = {{"RunName", run->Header.RunName}, {"Sections", Json::array()}};
    for (const SectionStatistics& section : statistics.Sections)
        result["Sections"].push_back(AsJson(section, statistics.Keys));
    result["Total"] = AsJson(statistics.Total, statistics.Keys);
    context.Print(result);
    return Done;
}

int ExportRuns(CommandContext& context, const std::vector<std::string>& paths, const ExportArguments& arguments) {
    std::vector<ExportedRun> runs;
    for (const std::string& path : paths) {
        if (!context.Work(runs.size(), paths.size())) return Stopped;
        const auto run = LoadRun(context, path);
        if (!run) return Failed;
        runs.push_back(ExportOf(*run, context.State.Settings));
    }
    return PutRuns(context, runs, arguments);
}

void AddExportCommand(CLI::App& group, CommandAction& chosen) {
    auto paths = std::make_shared<std::vector<std::string>>();
    auto arguments = std::make_shared<ExportArguments>();
    CLI::App& command = AddCommand(group, chosen, "export", "Write runs second by second for other programs",
                                   [=](CommandContext& context) { return ExportRuns(context, *paths, *arguments); });
    command.add_option("FILE", *paths, RunFilesHelp)->required();
    command
        .add_option("--output", arguments->Output,
                    "A .gpx or .geojson file, which need positions, or a .csv file; - is CSV on standard output")
        ->required();
    command.add_option("--time-zone", arguments->TimeZone, TimeZoneHelp);
}

}  // namespace

void AddRunCommands(CLI::App& program, CommandAction& chosen) {
    CLI::App* group = program.add_subcommand("run", "One run file");
    group->fallthrough()->require_subcommand(1);

    auto paths = std::make_shared<std::vector<std::string>>();
    auto withSamples = std::make_shared<bool>(false);
    CLI::App& show = AddCommand(*group, chosen, "show", "The header of a run file", [=](CommandContext& context) {
        const auto showOne = [&](CommandContext& each, const std::string& file) {
            return ShowRun(each, file, *withSamples);
        };
        return DoEach(context, *paths, showOne, RunExtension);
    });
    show.add_option("FILE", *paths, RunFilesHelp)->required();
    show.add_flag("--samples", *withSamples, "The sample values too");

    CLI::App& convert = AddCommand(*group, chosen, "convert", "Make a version 2 run of a version 1 file",
                                   [=](CommandContext& context) { return DoEach(context, *paths, ConvertRun); });
    convert.add_option("FILE", *paths, "Version 1 run files (.rdf)")->required();

    AddDelayCommand(*group, chosen);

    CLI::App& stats =
        AddCommand(*group, chosen, "stats", "Travel time, stops and delay by section and in all",
                   [=](CommandContext& context) { return DoEach(context, *paths, ShowStatistics, RunExtension); });
    stats.add_option("FILE", *paths, RunFilesHelp)->required();
    AddExportCommand(*group, chosen);
    AddRepairCommands(*group, chosen);
}

}  // namespace vantor
