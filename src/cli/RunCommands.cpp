#include <memory>

#include "analysis/DelayStatistics.h"
#include "cli/Commands.h"
#include "cli/RecordJson.h"
#include "core/RunFile.h"
#include "core/modMain.h"

namespace vantor {
namespace {

std::optional<RunRecord> LoadRun(CommandContext& context, const std::string& path) {
    const NamedFile file = TakeApart(path);
    RunRecord run;
    if (file.Extension == Ver1RunExtension) {
        if (FileExists(context.Files, path)) return ReadVer1Run(context.Files, file.Folder, file.Name);
        TellMissingRun(context.Messages, file.Name);
        return std::nullopt;
    }
    TakeApart(path, RunExtension, "run file");
    if (!ReadRunFile(context.Files, context.Messages, run, file.Folder, file.Name, true)) return std::nullopt;
    return run;
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
    RunRecord run;
    if (!ConvertVer1RunFile(context.Files, context.Messages, run, file.Folder, file.Name)) return Failed;
    context.Print({{"RunName", run.Header.RunName},
                   {"path", file.Folder + file.Name + RunExtension},
                   {"renamed", file.Folder + file.Name + ConvertedRunExtension}});
    return Done;
}

struct DelayOptions {
    std::string Path;
    std::optional<std::int32_t> StartDist;
    std::optional<std::int32_t> EndDist;
    std::optional<std::int32_t> StartSample;
    std::optional<std::int32_t> EndSample;
    std::int32_t IdealSpeed = 0;
    std::optional<std::int16_t> StopSpeed;
};

int ShowDelay(CommandContext& context, const DelayOptions& options) {
    if (!options.StartDist && !options.StartSample) {
        context.Err << "Give --start-dist and --end-dist, or --start-sample and --end-sample.\n";
        return WrongUsage;
    }
    const auto run = LoadRun(context, options.Path);
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
    }
    ComputeRunDelay(*run, settings, plot, entry);
    if (!options.StartSample && plot.CDEndSample == 0)
        context.Err << "The end boundary lies in the run's last second or beyond, where it is not looked for: "
                       "CDEndSample stays 0.\n";
    Json result = RecordAsJson(entry, StudyRunEntryFields);
    result["CDStartSample"] = plot.CDStartSample;
    result["CDEndSample"] = plot.CDEndSample;
    context.Print(result);
    return Done;
}

void AddDelayCommand(CLI::App& group, CommandAction& chosen) {
    auto options = std::make_shared<DelayOptions>();
    CLI::App& delay = AddCommand(group, chosen, "delay", "Control delay and stop delay between two boundaries",
                                 [options](CommandContext& context) { return ShowDelay(context, *options); });
    delay.add_option("FILE", options->Path, "A run file (.rd2 or .rdf)")->required();
    auto* distances = delay.add_option_group("distances");
    auto* startDist = distances->add_option("--start-dist", options->StartDist, "Start boundary, feet");
    auto* endDist = distances->add_option("--end-dist", options->EndDist, "End boundary, feet");
    startDist->needs(endDist);
    endDist->needs(startDist);
    auto* samples = delay.add_option_group("samples");
    auto* startSample = samples->add_option("--start-sample", options->StartSample, "Start boundary, sample from 1");
    auto* endSample = samples->add_option("--end-sample", options->EndSample, "End boundary, sample from 1");
    startSample->needs(endSample);
    endSample->needs(startSample);
    startDist->excludes(startSample);
    delay.add_option("--ideal-speed", options->IdealSpeed, "Ideal speed, miles per hour; 0 computes it");
    delay.add_option("--stop-speed", options->StopSpeed, "Stop speed threshold, miles per hour");
}

}  // namespace

void AddRunCommands(CLI::App& program, CommandAction& chosen) {
    CLI::App* group = program.add_subcommand("run", "One run file");
    group->fallthrough()->require_subcommand(1);

    auto path = std::make_shared<std::string>();
    auto withSamples = std::make_shared<bool>(false);
    CLI::App& show = AddCommand(*group, chosen, "show", "The header of a run file",
                                [=](CommandContext& context) { return ShowRun(context, *path, *withSamples); });
    show.add_option("FILE", *path, "A run file (.rd2 or .rdf)")->required();
    show.add_flag("--samples", *withSamples, "The sample values too");

    CLI::App& convert = AddCommand(*group, chosen, "convert", "Make a version 2 run of a version 1 file",
                                   [=](CommandContext& context) { return ConvertRun(context, *path); });
    convert.add_option("FILE", *path, "A version 1 run file (.rdf)")->required();

    AddDelayCommand(*group, chosen);
}

}  // namespace vantor
