#include <memory>

#include "cli/Commands.h"
#include "cli/StatisticsJson.h"
#include "cli/StatisticsText.h"
#include "core/Numeric.h"
#include "core/Paths.h"
#include "core/StudyFile.h"
#include "core/Text.h"
#include "core/modMain.h"
#include "reports/modReports.h"
#include "statistics/ComparedStudy.h"

namespace vantor {
namespace {

/// What the command line says in place of the study's own choices.
struct GivenOptions {
    std::optional<double> Confidence;
    std::string Error;
    std::optional<double> SpeedError;
    std::optional<double> Stop;
    std::optional<double> Go;
    std::optional<double> FreeFlowSpeed;
};

/// "10%" or "5s"; nothing for any other text.
std::optional<PermittedError> ErrorOfText(std::string_view text) {
    text = Trim(text);
    const bool isPercent = text.ends_with('%');
    if (!isPercent && !text.ends_with('s')) return std::nullopt;
    const auto value = NumberOfText(text.substr(0, text.size() - 1));
    if (!value || *value <= 0) return std::nullopt;
    return PermittedError{isPercent ? PermittedError::Kind::Percent : PermittedError::Kind::Absolute, *value};
}

/// Puts the given options in place of the study's own; false, and a message, for what cannot be.
bool Apply(const GivenOptions& given, StatisticsOptions& options, std::ostream& err) {
    options.Confidence = given.Confidence.value_or(options.Confidence);
    options.SpeedError = given.SpeedError.value_or(options.SpeedError);
    options.Stops.Stop = given.Stop.value_or(options.Stops.Stop);
    options.Stops.Go = given.Go.value_or(options.Stops.Go);
    if (given.FreeFlowSpeed) options.FreeFlowSpeed = given.FreeFlowSpeed;
    std::string problem = ProblemOf(options);
    if (!given.Error.empty()) {
        const auto error = ErrorOfText(given.Error);
        if (error)
            options.Error = *error;
        else
            problem = "--error is a percentage or seconds above 0: \"--error 10%\" or \"--error 5s\".";
    }
    if (!problem.empty()) err << problem << '\n';
    return problem.empty();
}

/// A study, or all runs of a Study Group; nothing, and a message, where there is none.
std::optional<ComparedStudy> Load(CommandContext& context, const std::string& path, bool mayBeFolder) {
    if (mayBeFolder && FolderExists(context.Files, path)) return OpenStudyGroup(context.Files, AsFolder(path));
    const NamedFile file = TakeApart(path, StudyExtension, "study file");
    auto study = OpenStudy(context.Files, file.Folder, file.Name);
    if (!study)
        context.Err << "Missing Study File: " << file.Name << '\n';
    else if (study->Contents.MissingEntries != 0)
        context.Err << CutShortText(study->Contents) << '\n' << file.Folder << file.Name << StudyExtension << '\n';
    return study;
}

/// Names the runs that have no figures; Failed where a file is there that cannot be read as a run.
ExitStatus Tell(const CommandContext& context, const StudyRuns& runs) {
    ExitStatus status = Done;
    for (const MeasuredRun& run : runs.Runs)
        if (!run.Warnings.empty()) context.Err << run.Name << ": " << Joined(run.Warnings, "; ") << '\n';
    for (const RunLeftOut& run : runs.LeftOut) {
        context.Err << run.Problem << '\n';
        if (run.Outcome == RunOutcome::Damaged || run.Outcome == RunOutcome::Unreadable) status = Failed;
    }
    return status;
}

Json LeftOutAsJson(const StudyRuns& runs) {
    Json list = Json::array();
    for (const RunLeftOut& run : runs.LeftOut) list.push_back({{"name", run.Name}, {"problem", run.Problem}});
    return list;
}

int ShowStatistics(CommandContext& context, const std::string& path, const GivenOptions& given) {
    auto loaded = Load(context, path, false);
    if (!loaded) return Failed;
    StatisticsOptions& options = loaded->Contents.Options;
    if (!Apply(given, options, context.Err)) return WrongUsage;
    StudyFigures figures;
    figures.Name = loaded->Name;
    figures.Read = ReadStudyRuns(loaded->Contents, context.Files, loaded->Folder, context.State.Settings, context.Work);
    if (!figures.Read.IsWhole || !context.Work(1, 1)) return Stopped;
    figures.All = ComputeStatistics(figures.Read.Runs, options);
    const auto rest = WithoutSetAside(figures.Read.Runs);
    if (rest.size() != figures.Read.Runs.size()) figures.Without = ComputeStatistics(rest, options);
    const ExitStatus status = Tell(context, figures.Read);
    if (!context.AsJson) {
        PrintStatistics(context, figures);
        return status;
    }
    Json result = {{"study", figures.Name}};
    result.update(
        StatisticsAsJson(figures.All, figures.Read.Runs,
                         ReadRunsToPropose(loaded->Contents, context.Files, loaded->Folder, context.State.Settings)));
    result["left_out"] = LeftOutAsJson(figures.Read);
    if (figures.Without) result["without_set_aside"] = FiguresAsJson(*figures.Without);
    context.Print(result);
    return status;
}

int CompareStudies(CommandContext& context, const std::vector<std::string>& paths, const std::string& output,
                   const GivenOptions& given) {
    if (!output.empty() &&
        !context.TakesOutput(output, HasExtension(output, ".pdf"), "Give the report a name that ends in .pdf."))
        return WrongUsage;
    std::optional<StatisticsOptions> options;
    std::vector<Condition> conditions;
    ExitStatus status = Done;
    for (const std::string& path : paths) {
        auto loaded = Load(context, path, true);
        if (!loaded) return Failed;
        if (!options) {
            options = loaded->Contents.Options;
            if (!Apply(given, *options, context.Err)) return WrongUsage;
        }
        loaded->Contents.Options = *options;
        StudyRuns runs =
            ReadStudyRuns(loaded->Contents, context.Files, loaded->Folder, context.State.Settings, context.Work);
        if (!runs.IsWhole) return Stopped;
        status = std::max(status, Tell(context, runs));
        if (runs.Runs.empty()) context.Err << path << ": there are no runs to compare.\n";
        conditions.push_back(ConditionOf(*loaded, std::move(runs)));
    }
    if (!context.Work(1, 1)) return Stopped;
    const auto compared = CompareConditions(conditions, *options);
    if (!output.empty()) {
        const PagedDocument document = MakeComparisonReport(compared, *options, context.State.Settings,
                                                            context.Time.Now(), {}, context.Documents.Measure());
        context.PutOutput(output, context.Documents.Pdf(document), {{"pages", document.Pages.size()}});
    } else if (context.AsJson)
        context.Print(ConditionsAsJson(compared, *options));
    else
        PrintConditions(context, compared, *options);
    return status;
}

void AddOptions(CLI::App& command, const std::shared_ptr<GivenOptions>& given) {
    command.add_option("--confidence", given->Confidence, "Confidence of intervals and tests, percent");
    command.add_option("--error", given->Error, "Permitted error of a mean: percent or seconds, 10% or 5s");
    command.add_option("--error-speed", given->SpeedError, "Permitted error of a mean speed, miles per hour");
    command.add_option("--stop", given->Stop, "A slower second is stopped, miles per hour");
    command.add_option("--go", given->Go, "A second as fast or faster ends a stop, miles per hour");
    command.add_option("--free-flow", given->FreeFlowSpeed, "Free-flow speed, miles per hour");
}

}  // namespace

void AddStatisticsCommands(CLI::App& studyGroup, CommandAction& chosen) {
    const auto given = std::make_shared<GivenOptions>();
    const auto path = std::make_shared<std::string>();
    const auto paths = std::make_shared<std::vector<std::string>>();
    CLI::App& statistics = AddCommand(studyGroup, chosen, "statistics", "Statistics over the runs of a study",
                                      [=](CommandContext& context) { return ShowStatistics(context, *path, *given); });
    statistics.add_option("FILE", *path, "A study file (.ld2)")->required();
    AddOptions(statistics, given);

    const auto output = std::make_shared<std::string>();
    const auto givenToCompare = std::make_shared<GivenOptions>();
    CLI::App& compare =
        AddCommand(studyGroup, chosen, "compare", "Compare studies, each with the first",
                   [=](CommandContext& context) { return CompareStudies(context, *paths, *output, *givenToCompare); });
    compare.add_option("FILE", *paths, "Two study files (.ld2) or Study Group folders, or more")
        ->required()
        ->expected(2, 1000);
    compare.add_option("--output", *output, "Write the comparison as a report (.pdf); - is standard output");
    AddOptions(compare, givenToCompare);
}

}  // namespace vantor
