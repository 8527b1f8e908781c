#include <memory>

#include "cli/Commands.h"
#include "core/RunDecoding.h"
#include "core/RunFile.h"
#include "core/modMain.h"
#include "editing/SensorData.h"

namespace vantor {
namespace {

struct RepairOptions {
    std::vector<std::string> Paths;
    std::optional<std::string> Output;         ///< nothing for a repair in place
    std::optional<std::int16_t> SmoothFactor;  ///< nothing for De-Spike
};

WordChanges RepairsOf(const SensorData& data, const RunRecord& run, const RepairOptions& options) {
    return options.SmoothFactor ? data.Smooth(run.SampleValues, *options.SmoothFactor) : data.DeSpike(run.SampleValues);
}

NamedFile TakeApartOutput(CommandContext& context, const std::string& path) {
    const NamedFile file = TakeApart(path, RunExtension, "run file");
    if (FileExists(context.Files, path))
        throw RunTimeError(ErrorNumber::FileAlreadyExists, path + "\nGive the repaired run another name.");
    return file;
}

void Write(CommandContext& context, RunRecord& run, const NamedFile& file, const Expected& expected) {
    DecodeEditedRun(run);
    if (expected.File)
        ReplaceRunFile(context.Files, run, file.Folder, file.Name, expected);
    else
        WriteRunFile(context.Files, run, file.Folder, file.Name, expected);
}

int RepairRun(CommandContext& context, const RepairOptions& options, const std::string& path) {
    const NamedFile source = TakeApart(path, RunExtension, "run file");
    const bool isInPlace = !options.Output;
    const NamedFile target = isInPlace ? source : TakeApartOutput(context, *options.Output);
    const Expected there = isInPlace ? AsItStands(context.Files, path) : Expected::Nothing();
    auto run = ReadRunFile(context.Files, context.Messages, source.Folder, source.Name);
    if (!run) return Failed;
    const SensorData data(run->Header.CalConstant, context.State.Settings);
    const WordChanges changes = RepairsOf(data, *run, options);
    for (const WordChange& change : changes) run->SampleValues[change.Point] = change.New;
    // A run without faults stays as it is, without a backup.
    if (!isInPlace || !changes.empty()) Write(context, *run, target, there);
    context.Print({{"changed", changes.size()}});
    return Done;
}

int RepairRuns(CommandContext& context, const RepairOptions& options) {
    if (options.Output && options.Paths.size() > 1) {
        context.Err << "--output is for one FILE. Leave it out to repair several in place.\n";
        return WrongUsage;
    }
    return DoEach(context, options.Paths,
                  [&](CommandContext& each, const std::string& path) { return RepairRun(each, options, path); });
}

CLI::App& AddRepair(CLI::App& runGroup, CommandAction& chosen, const char* name, const char* description,
                    const std::shared_ptr<RepairOptions>& options) {
    CLI::App& command = AddCommand(runGroup, chosen, name, description,
                                   [options](CommandContext& context) { return RepairRuns(context, *options); });
    command.add_option("FILE", options->Paths, "Run files (.rd2); as they were they stay as .rd2.bak, .bak2 and so on")
        ->required();
    command.add_option("--output", options->Output,
                       "Leave the one FILE as it is and write the repaired run there (.rd2)");
    return command;
}

}  // namespace

void AddRepairCommands(CLI::App& runGroup, CommandAction& chosen) {
    AddRepair(runGroup, chosen, "despike", "Replace the samples whose speed jumps off from their neighbours'",
              std::make_shared<RepairOptions>());
    const auto options = std::make_shared<RepairOptions>();
    AddRepair(runGroup, chosen, "smooth", "Replace the samples whose speed differs from the one before", options)
        .add_option("--factor", options->SmoothFactor, "The difference from which a sample is replaced, miles per hour")
        ->transform(WholeNumber())
        ->required();
}

}  // namespace vantor
