#include <algorithm>
#include <memory>
#include <set>

#include "analysis/StudyEdits.h"
#include "analysis/StudyResults.h"
#include "analysis/StudyTable.h"
#include "cli/Commands.h"
#include "cli/RecordJson.h"
#include "cli/RunExports.h"
#include "cli/StandardInput.h"
#include "cli/StudyChange.h"
#include "core/Csv.h"
#include "core/Paths.h"
#include "core/RunFile.h"
#include "core/StudyFile.h"
#include "core/modMain.h"

namespace vantor {
namespace {

/// A study with the warnings of its runs. Runs that are not there, too, are told of there.
Json StudyAsJson(const Study& study, const std::vector<RunListRow>& rows) {
    Json result = RecordAsJson(study.Record, StudyRecordFields);
    result["entries"] = Json::array();
    for (int i = 1; i <= study.Record.RunCount; ++i) {
        const RunListRow& row = rows[static_cast<std::size_t>(i - 1)];
        Json entry = RecordAsJson(study.Entries[i], StudyRunEntryFields);
        entry["status"] = StateWord(row.State);
        entry["warnings"] = IsThere(row.State) ? row.Warnings : std::vector{row.Facts.Problem};
        result["entries"].push_back(std::move(entry));
    }
    return result;
}

Json LabelAsJson(const std::optional<std::string>& label) { return label ? Json(*label) : Json(nullptr); }

/// A run that is there and cannot be read may be there again the next moment.
bool IsUnsure(const std::vector<RunNotComputed>& failed, const std::vector<RunListRow>& rows) {
    return std::ranges::count(failed, RunOutcome::Unreadable, &RunNotComputed::Outcome) +
               std::ranges::count(rows, RunState::Unreadable, &RunListRow::State) >
           0;
}

}  // namespace

std::optional<Study> LoadNamedStudy(CommandContext& context, const NamedFile& file) {
    auto study = LoadStudy(context.Files, file.Folder, file.Name);
    if (!study) context.Err << "Missing Study File: " << file.Name << '\n';
    if (study && study->MissingEntries != 0)
        context.Err << CutShortText(*study) << '\n' << file.Folder << file.Name << StudyExtension << '\n';
    return study;
}

std::optional<Study> LoadStudyToChange(CommandContext& context, const NamedFile& file) {
    auto study = LoadNamedStudy(context, file);
    if (!study || study->MissingEntries == 0) return study;
    context.Err << "The study is not changed. Open it in the window and delete the entries without a name first.\n";
    return std::nullopt;
}

int FinishStudy(CommandContext& context, const NamedFile& file, Study& study, const std::vector<RunNotComputed>& failed,
                const Json& also) {
    for (const RunNotComputed& run : failed) context.Err << run.Reason << '\n';
    ResultLabels labels;
    const auto rows = MakeRunListRows(study, context.Files, file.Folder, context.State.Settings);
    if (IsUnsure(failed, rows)) {
        static_cast<void>(context.TellOfRuns(rows));
        context.Err << "The study was not saved, because the system refuses a run of it: its average would lack that "
                       "run. Try again, or take the run out of the study.\n";
        return Failed;
    }
    ComputeStudyResults(study, rows, labels);
    WriteStudyFile(context.Files, study, file.Folder, file.Name, Replacing::OwnFile);
    Json result = StudyAsJson(study, rows);
    result["AvgControlDelay"] = LabelAsJson(labels.AvgControlDelay);
    result["AvgStopDelay"] = LabelAsJson(labels.AvgStopDelay);
    result["Ratio"] = LabelAsJson(labels.Ratio);
    result["StopSpeedThreshold"] = context.State.Settings.StopSpeedThreshold;
    result.update(also);
    const ExitStatus status = context.TellOfRuns(rows);
    context.Print(result);
    return failed.empty() ? status : Failed;
}

namespace {

int ShowStudy(CommandContext& context, const std::string& path) {
    const NamedFile file = TakeApart(path, StudyExtension, "study file");
    const auto study = LoadNamedStudy(context, file);
    if (!study) return Failed;
    const auto rows = MakeRunListRows(*study, context.Files, file.Folder, context.State.Settings);
    // What a study says of its runs can be shown without their files.
    static_cast<void>(context.TellOfRuns(rows));
    context.Print(StudyAsJson(*study, rows));
    return Done;
}

/// A run as it is named on the command line: with or without its extension.
std::string RunNameOf(const std::string& argument) {
    return HasExtension(argument, RunExtension) ? BaseName(argument) : argument;
}

int MakeStudy(CommandContext& context, const std::string& directory, const std::string& name,
              const std::vector<std::string>& runs) {
    const std::string folder = AsFolder(directory);
    if (const std::string problem = NameProblem(name, StudyNameWidth); !problem.empty())
        throw RunTimeError(ErrorNumber::PathFileAccessError, problem);
    if (FileExists(context.Files, folder + name + StudyExtension))
        throw RunTimeError(ErrorNumber::FileAlreadyExists,
                           folder + name + StudyExtension + "\nGive the study another name.");
    NewStudy(context.State, context.Time);
    Study& study = context.State.CurrentStudy;
    study.Record.StudyName = name;
    bool allThere = true;
    auto known = RunsByKey(study);
    for (const std::string& argument : runs) {
        const std::string run = RunNameOf(argument);
        const RunReading reading = ReadRun(context.Files, folder, run, RunPart::Header);
        if (!reading) {
            context.Err << (reading.Outcome == RunOutcome::Missing ? MissingRunText(run)
                                                                   : run + ": " + reading.Fault->Message())
                        << '\n';
            allThere = false;
        } else if (known.try_emplace(RunKey(run), 0).second) {
            AppendRun(study, run);
        }
    }
    if (!allThere) return Failed;
    WriteStudyFile(context.Files, study, folder, name, Replacing::OwnFile);
    context.Print(StudyAsJson(study, MakeRunListRows(study, context.Files, folder, context.State.Settings)));
    return Done;
}

int ComputeStudy(CommandContext& context, const std::string& path, std::optional<std::int16_t> stopSpeed) {
    const NamedFile file = TakeApart(path, StudyExtension, "study file");
    const auto lock = context.Files.Lock(file.Folder);
    auto study = LoadStudyToChange(context, file);
    if (!study) return Failed;
    AppSettings& settings = context.State.Settings;
    settings.StopSpeedThreshold = stopSpeed.value_or(settings.StopSpeedThreshold);
    return FinishStudy(context, file, *study, ComputeRuns(*study, context.Files, file.Folder, settings));
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
    const auto runs = RunsByKey(study);
    std::set<int> known(chosen.begin(), chosen.end());
    for (const std::string& argument : options.Runs) {
        const auto run = runs.find(RunKey(RunNameOf(argument)));
        if (run == runs.end()) {
            context.Err << "The study has no run \"" << argument << "\".\n";
            allFound = false;
        } else if (known.insert(run->second).second) {
            chosen.push_back(run->second);
        }
    }
    return allFound ? std::optional(chosen) : std::nullopt;
}

int SetBoundsOfRuns(CommandContext& context, const BoundsOptions& options) {
    if (options.Runs.empty() && !options.All) {
        context.Err << "Name a RUN, or give --all.\n";
        return WrongUsage;
    }
    const NamedFile file = TakeApart(options.Path, StudyExtension, "study file");
    const auto lock = context.Files.Lock(file.Folder);
    auto study = LoadStudyToChange(context, file);
    if (!study) return Failed;
    const auto chosen = ChosenEntries(context, *study, options);
    if (!chosen) return Failed;
    return FinishStudy(context, file, *study,
                       SetBounds(*study, *chosen, {options.StartDist, options.EndDist, options.IdealSpeed},
                                 context.Files, file.Folder, context.State.Settings));
}

/// The runs of a study second by second; those that are not there are told and left out.
int ExportSamplesTo(CommandContext& context, const std::string& path, const ExportArguments& arguments) {
    const NamedFile file = TakeApart(path, StudyExtension, "study file");
    const auto study = LoadNamedStudy(context, file);
    if (!study) return Failed;
    std::vector<ExportedRun> runs;
    ExitStatus status = Done;
    for (const std::string& name : study->RunNames) {
        if (!context.Work(runs.size(), study->RunNames.size())) return Stopped;
        const RunReading reading = ReadRun(context.Files, file.Folder, std::string(Trim(name)), RunPart::Whole);
        if (reading) {
            runs.push_back(ExportOf(reading.Run, context.State.Settings));
            continue;
        }
        status = Failed;
        context.Err << (reading.Outcome == RunOutcome::Missing ? MissingRunText(name) : reading.Fault->Message())
                    << '\n';
    }
    const int written = PutRuns(context, runs, arguments);
    return written == Done ? status : written;
}

int ExportStudyTo(CommandContext& context, const std::string& path, const ExportArguments& arguments, bool asSamples) {
    const std::string& output = arguments.Output;
    const auto form = ExportFormOf(output);
    if (asSamples || (form && *form != ExportForm::Csv)) return ExportSamplesTo(context, path, arguments);
    const auto kinds = TableFileKinds();
    const bool isTable =
        std::ranges::any_of(kinds, [&](const FileKind& kind) { return HasExtension(output, kind.Extension); });
    if (!context.TakesOutput(output, isTable, "A run list is an .xls, .xlsx or .csv file.")) return WrongUsage;
    const NamedFile file = TakeApart(path, StudyExtension, "study file");
    const auto study = LoadNamedStudy(context, file);
    if (!study) return Failed;
    const AppSettings& settings = context.State.Settings;
    std::optional<std::vector<RunListRow>> rows;
    if (output == StandardStream) {
        rows = MakeRunListRows(*study, context.Files, file.Folder, settings, context.Work);
        if (!context.Work(1, 1)) return Stopped;
        const std::string text = CsvText(StudyTable(*study, *rows, {}, UnitsOf(settings)).Rows({}));
        context.Out << text;
    } else {
        rows = ExportStudy(context.Files, *study, file.Folder, settings, output, context.Sheets, context.Work);
        if (!rows) return Stopped;
        context.Print({{"rows", study->Record.RunCount}});
    }
    return context.TellOfRuns(*rows);
}

void AddExportCommand(CLI::App& group, CommandAction& chosen) {
    auto path = std::make_shared<std::string>();
    auto arguments = std::make_shared<ExportArguments>();
    auto asSamples = std::make_shared<bool>(false);
    CLI::App& command =
        AddCommand(group, chosen, "export", "Write the run list as a table, or the runs second by second",
                   [=](CommandContext& context) { return ExportStudyTo(context, *path, *arguments, *asSamples); });
    command.add_option("FILE", *path, "A study file (.ld2)")->required();
    command
        .add_option(
            "--output", arguments->Output,
            "The run list: an .xls, .xlsx or .csv file, - is CSV on standard output; the runs second by second: "
            "a .gpx or .geojson file")
        ->required();
    command.add_flag("--samples", *asSamples, "A .csv file or standard output gets the runs second by second");
    command.add_option("--time-zone", arguments->TimeZone, TimeZoneHelp);
}

void AddBoundsCommand(CLI::App& group, CommandAction& chosen) {
    auto options = std::make_shared<BoundsOptions>();
    CLI::App& bounds = AddCommand(group, chosen, "bounds", "Set the boundaries of runs and compute the study",
                                  [options](CommandContext& context) { return SetBoundsOfRuns(context, *options); });
    bounds.add_option("FILE", options->Path, "A study file (.ld2)")->required();
    bounds.add_option("RUN", options->Runs, "Names of runs of the study");
    bounds.add_option("--start-dist", options->StartDist, "Start boundary, feet")->transform(WholeNumber())->required();
    bounds.add_option("--end-dist", options->EndDist, "End boundary, feet")->transform(WholeNumber())->required();
    bounds.add_option("--ideal-speed", options->IdealSpeed, "Ideal speed, miles per hour; 0 computes it")
        ->transform(WholeNumber());
    bounds.add_flag("--all", options->All, "All runs of the study");
}

}  // namespace

void AddStudyCommands(CLI::App& program, CommandAction& chosen) {
    CLI::App* group = program.add_subcommand("study", "One study file");
    group->fallthrough()->require_subcommand(1);

    auto path = std::make_shared<std::string>();
    auto paths = std::make_shared<std::vector<std::string>>();
    auto name = std::make_shared<std::string>();
    auto runs = std::make_shared<std::vector<std::string>>();
    CLI::App& create = AddCommand(*group, chosen, "new", "Make a study of runs of a Study Group",
                                  [=](CommandContext& context) { return MakeStudy(context, *path, *name, *runs); });
    create.add_option("DIR", *path, "The folder of the Study Group")->required();
    create.add_option("NAME", *name, "The name of the study")->required();
    create.add_option("RUN", *runs, "Names of its runs");

    CLI::App& show = AddCommand(*group, chosen, "show", "A study and its runs",
                                [=](CommandContext& context) { return DoEach(context, *paths, ShowStudy); });
    show.add_option("FILE", *paths, "Study files (.ld2)")->required();

    auto stopSpeed = std::make_shared<std::optional<std::int16_t>>();
    CLI::App& compute =
        AddCommand(*group, chosen, "compute", "Compute the runs whose boundaries are set and the study",
                   [=](CommandContext& context) {
                       return DoEach(context, *paths, [&](CommandContext& each, const std::string& file) {
                           return ComputeStudy(each, file, *stopSpeed);
                       });
                   });
    compute.add_option("FILE", *paths, "Study files (.ld2)")->required();
    compute.add_option("--stop-speed", *stopSpeed, "Stop speed threshold, miles per hour")->transform(WholeNumber());

    AddBoundsCommand(*group, chosen);
    AddExportCommand(*group, chosen);
    AddProposeCommand(*group, chosen);
    AddChartCommand(*group, chosen);
    AddReportCommand(*group, chosen);
    AddStatisticsCommands(*group, chosen);
}

}  // namespace vantor
