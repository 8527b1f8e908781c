#include <algorithm>
#include <memory>

#include "analysis/DelayStatistics.h"
#include "analysis/StudyResults.h"
#include "analysis/StudyTable.h"
#include "cli/Commands.h"
#include "cli/RecordJson.h"
#include "core/Paths.h"
#include "core/RunFile.h"
#include "core/StudyFile.h"
#include "core/modMain.h"

namespace vantor {
namespace {

Json StudyAsJson(const Study& study) {
    Json result = RecordAsJson(study.Record, StudyRecordFields);
    result["entries"] = Json::array();
    for (int i = 1; i <= study.Record.RunCount; ++i)
        result["entries"].push_back(RecordAsJson(study.Entries[i], StudyRunEntryFields));
    return result;
}

Json LabelAsJson(const std::optional<std::string>& label) { return label ? Json(*label) : Json(nullptr); }

std::optional<Study> LoadNamedStudy(CommandContext& context, const NamedFile& file) {
    auto study = LoadStudy(context.Files, file.Folder, file.Name);
    if (!study) context.Err << "Missing Study File: " << file.Name << '\n';
    return study;
}

int ShowStudy(CommandContext& context, const std::string& path) {
    const auto study = LoadNamedStudy(context, TakeApart(path, StudyExtension, "study file"));
    if (!study) return Failed;
    context.Print(StudyAsJson(*study));
    return Done;
}

/// A run as it is named on the command line: with or without its extension.
std::string RunNameOf(const std::string& argument) {
    return HasExtension(argument, RunExtension) ? BaseName(argument) : argument;
}

int MakeStudy(CommandContext& context, const std::string& directory, const std::string& name,
              const std::vector<std::string>& runs) {
    const std::string folder = AsFolder(directory);
    if (!IsSafeName(name)) throw RunTimeError(ErrorNumber::PathFileAccessError, UnsafeNameMessage(name));
    if (FileExists(context.Files, folder + name + StudyExtension))
        throw RunTimeError(ErrorNumber::FileAlreadyExists,
                           folder + name + StudyExtension + "\nGive the study another name.");
    NewStudy(context.State, context.Time);
    Study& study = context.State.CurrentStudy;
    study.Record.StudyName = name;
    bool allThere = true;
    for (const std::string& argument : runs) {
        const std::string run = RunNameOf(argument);
        if (!ReadRunHeader(context.Files, folder, run)) {
            TellMissingRun(context.Messages, run);
            allThere = false;
        } else if (FindRun(study, run) == 0) {
            AppendRun(study, run);
        }
    }
    if (!allThere) return Failed;
    WriteStudyFile(context.Files, study, folder, name);
    context.Print(StudyAsJson(study));
    return Done;
}

/// Computes one run of the study from its boundaries. An entry that cannot be computed stays as it was; the run is
/// named on standard error then and the answer is false.
bool ComputeEntry(CommandContext& context, const std::string& folder, const StudyRunEntry& wanted,
                  StudyRunEntry& entry) {
    const std::string name = RunFileName(entry);
    try {
        RunRecord run;
        if (!ReadRunFile(context.Files, context.Messages, run, folder, name, true)) return false;
        StudyRunEntry computed = wanted;
        PlotState plot = PlacedBoundaries(run, computed);
        ComputeRunDelay(run, context.State.Settings, plot, computed);
        entry = computed;
        return true;
    } catch (const RunTimeError& error) {
        context.Err << name << ": " << error.Message() << '\n';
        return false;
    }
}

/// Averages the study, writes it and prints it with what the window's labels show.
void FinishStudy(CommandContext& context, const NamedFile& file, Study& study) {
    ResultLabels labels;
    ComputeStudyResults(study, MakeRunListRows(study, context.Files, file.Folder), labels);
    WriteStudyFile(context.Files, study, file.Folder, file.Name);
    Json result = StudyAsJson(study);
    result["AvgControlDelay"] = LabelAsJson(labels.AvgControlDelay);
    result["AvgStopDelay"] = LabelAsJson(labels.AvgStopDelay);
    result["Ratio"] = LabelAsJson(labels.Ratio);
    context.Print(result);
}

int ComputeStudy(CommandContext& context, const std::string& path, std::optional<std::int16_t> stopSpeed) {
    const NamedFile file = TakeApart(path, StudyExtension, "study file");
    auto study = LoadNamedStudy(context, file);
    if (!study) return Failed;
    context.State.Settings.StopSpeedThreshold = stopSpeed.value_or(context.State.Settings.StopSpeedThreshold);
    bool allDone = true;
    for (int i = 1; i <= study->Record.RunCount; ++i) {
        StudyRunEntry& entry = study->Entries[i];
        if (HasBothBoundaries(entry))
            allDone = ComputeEntry(context, file.Folder, StudyRunEntry(entry), entry) && allDone;
    }
    FinishStudy(context, file, *study);
    return allDone ? Done : Failed;
}

struct BoundsOptions {
    std::string Path;
    std::vector<std::string> Runs;
    std::int32_t StartDist = 0;
    std::int32_t EndDist = 0;
    std::optional<std::int32_t> IdealSpeed;
    bool All = false;
};

std::optional<std::vector<int>> ChosenEntries(CommandContext& context, const Study& study,
                                              const BoundsOptions& options) {
    std::vector<int> chosen;
    for (int i = 1; options.All && i <= study.Record.RunCount; ++i) chosen.push_back(i);
    bool allFound = true;
    for (const std::string& argument : options.Runs) {
        const int index = FindRun(study, RunNameOf(argument));
        if (index == 0) {
            context.Err << "The study has no run \"" << argument << "\".\n";
            allFound = false;
        } else if (std::find(chosen.begin(), chosen.end(), index) == chosen.end()) {
            chosen.push_back(index);
        }
    }
    return allFound ? std::optional(chosen) : std::nullopt;
}

int SetBounds(CommandContext& context, const BoundsOptions& options) {
    if (options.Runs.empty() && !options.All) {
        context.Err << "Name a RUN, or give --all.\n";
        return WrongUsage;
    }
    const NamedFile file = TakeApart(options.Path, StudyExtension, "study file");
    auto study = LoadNamedStudy(context, file);
    if (!study) return Failed;
    const auto chosen = ChosenEntries(context, *study, options);
    if (!chosen) return Failed;
    bool allDone = true;
    for (const int index : *chosen) {
        StudyRunEntry wanted = study->Entries[index];
        wanted.CDStartDist = options.StartDist;
        wanted.CDEndDist = options.EndDist;
        wanted.IdealSpeedUser = options.IdealSpeed.value_or(wanted.IdealSpeedUser);
        allDone = ComputeEntry(context, file.Folder, wanted, study->Entries[index]) && allDone;
    }
    FinishStudy(context, file, *study);
    return allDone ? Done : Failed;
}

int ExportStudy(CommandContext& context, const std::string& path, const std::string& output) {
    const auto kinds = TableFileKinds();
    if (std::ranges::none_of(kinds, [&](const FileKind& kind) { return HasExtension(output, kind.Extension); })) {
        context.Err << output << "\nA run list is an .xls, .xlsx or .csv file.\n";
        return WrongUsage;
    }
    const NamedFile file = TakeApart(path, StudyExtension, "study file");
    const auto study = LoadNamedStudy(context, file);
    if (!study) return Failed;
    const auto bytes =
        EncodeTable(output, StudyTable(*study, context.Files, file.Folder, context.Work), context.Sheets);
    if (!context.Work(1, 1)) return Stopped;
    WriteFile(context.Files, output, bytes);
    context.Print({{"rows", study->Record.RunCount}});
    return Done;
}

void AddExportCommand(CLI::App& group, CommandAction& chosen) {
    auto path = std::make_shared<std::string>();
    auto output = std::make_shared<std::string>();
    CLI::App& command = AddCommand(group, chosen, "export", "Write the run list to a workbook or a CSV file",
                                   [=](CommandContext& context) { return ExportStudy(context, *path, *output); });
    command.add_option("FILE", *path, "A study file (.ld2)")->required();
    command.add_option("--output", *output, "The table: an .xls, .xlsx or .csv file")->required();
}

void AddBoundsCommand(CLI::App& group, CommandAction& chosen) {
    auto options = std::make_shared<BoundsOptions>();
    CLI::App& bounds = AddCommand(group, chosen, "bounds", "Set the boundaries of runs and compute the study",
                                  [options](CommandContext& context) { return SetBounds(context, *options); });
    bounds.add_option("FILE", options->Path, "A study file (.ld2)")->required();
    bounds.add_option("RUN", options->Runs, "Names of runs of the study");
    bounds.add_option("--start-dist", options->StartDist, "Start boundary, feet")->required();
    bounds.add_option("--end-dist", options->EndDist, "End boundary, feet")->required();
    bounds.add_option("--ideal-speed", options->IdealSpeed, "Ideal speed, miles per hour; 0 computes it");
    bounds.add_flag("--all", options->All, "All runs of the study");
}

}  // namespace

void AddStudyCommands(CLI::App& program, CommandAction& chosen) {
    CLI::App* group = program.add_subcommand("study", "One study file");
    group->fallthrough()->require_subcommand(1);

    auto path = std::make_shared<std::string>();
    auto name = std::make_shared<std::string>();
    auto runs = std::make_shared<std::vector<std::string>>();
    CLI::App& create = AddCommand(*group, chosen, "new", "Make a study of runs of a Study Group",
                                  [=](CommandContext& context) { return MakeStudy(context, *path, *name, *runs); });
    create.add_option("DIR", *path, "The folder of the Study Group")->required();
    create.add_option("NAME", *name, "The name of the study")->required();
    create.add_option("RUN", *runs, "Names of its runs");

    CLI::App& show = AddCommand(*group, chosen, "show", "A study and its runs",
                                [=](CommandContext& context) { return ShowStudy(context, *path); });
    show.add_option("FILE", *path, "A study file (.ld2)")->required();

    auto stopSpeed = std::make_shared<std::optional<std::int16_t>>();
    CLI::App& compute = AddCommand(*group, chosen, "compute", "Compute the runs whose boundaries are set and the study",
                                   [=](CommandContext& context) { return ComputeStudy(context, *path, *stopSpeed); });
    compute.add_option("FILE", *path, "A study file (.ld2)")->required();
    compute.add_option("--stop-speed", *stopSpeed, "Stop speed threshold, miles per hour");

    AddBoundsCommand(*group, chosen);
    AddExportCommand(*group, chosen);
    AddChartCommand(*group, chosen);
    AddReportCommand(*group, chosen);
}

}  // namespace vantor
