#include <algorithm>
#include <array>
#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "cli/Commands.h"
#include "core/Counted.h"
#include "core/JsonFacts.h"
#include "core/Paths.h"
#include "core/RunTimeError.h"
#include "core/Text.h"
#include "core/UserChoices.h"
#include "corridor/CorridorFile.h"
#include "corridor/CorridorGeoJson.h"
#include "corridor/CorridorVerify.h"
#include "corridor/FiguresFile.h"
#include "map/BaseMapFile.h"
#include "reports/CorridorReport.h"

namespace vantor {
namespace {

constexpr const char* PdfExtension = ".pdf";
constexpr std::array<const char*, 5> OutputExtensions = {PdfExtension, ".xlsx", ".xls", ".geojson", ".json"};
/// The part of the work that reading the runs is.
constexpr double Read = 0.5;

struct ReportArguments {
    std::string Corridor;
    std::string Output;
    std::optional<std::string> Period;
    std::string Condition;
    std::string PaperName = "letter";
    std::vector<std::string> Only;
    bool IsLandscape = false;
    bool HasNoHeadings = false;

    CorridorFilter Filter() const {
        CorridorFilter filter{Period};
        if (Condition == "before") filter.Of = CorridorFilter::Condition::Before;
        if (Condition == "after") filter.Of = CorridorFilter::Condition::After;
        return filter;
    }
};

/// The folder of the Study Groups beside a corridor, with a final separator.
std::string RootOf(const std::string& path) {
    const std::string folder = FolderOf(path);
    return folder.empty() ? "./" : folder;
}

CorridorReportChoice ChosenBy(const ReportArguments& arguments) {
    CorridorReportChoice choice;
    choice.Sheet = arguments.PaperName == "a4" ? Paper::A4 : Paper::Letter;
    choice.IsLandscape = arguments.IsLandscape;
    choice.HasHeadings = !arguments.HasNoHeadings;
    if (arguments.Only.empty()) return choice;
    for (std::size_t i = 0; i < CorridorPartNames.size(); ++i)
        choice.Parts[i] = std::ranges::find(arguments.Only, CorridorPartNames[i].Word) != arguments.Only.end();
    return choice;
}

/// What the report has beside its bytes, for the result.
struct MadeReport {
    std::vector<std::byte> Bytes;
    Json Facts;
};

MadeReport MakeReport(CommandContext& context, const CorridorReportData& data, const ReportArguments& arguments) {
    const Progress work = context.Work.Part(Read, 1);
    if (HasExtension(arguments.Output, PdfExtension)) {
        const PagedDocument document = MakeCorridorReport(data, ChosenBy(arguments), context.Documents.Measure());
        return {context.Documents.Pdf(document, work), {{"pages", document.Pages.size()}}};
    }
    if (HasExtension(arguments.Output, ".xlsx") || HasExtension(arguments.Output, ".xls")) {
        const std::vector<Sheet> sheets = CorridorSheets(data);
        const auto format = HasExtension(arguments.Output, ".xls") ? WorkbookFormat::Xls : WorkbookFormat::Xlsx;
        return {context.Sheets.Encode(sheets, format, work), {{"sheets", sheets.size()}}};
    }
    const Json features = FindingsGeoJson(*data.Of, data.All());
    return {JsonBytes(features), {{"features", features["features"].size()}}};
}

int ReportCorridor(CommandContext& context, const ReportArguments& arguments) {
    const bool isKnown = std::ranges::any_of(OutputExtensions, [&](const char* extension) {
        return HasExtension(arguments.Output, extension) && !HasExtension(arguments.Output, FiguresExtension) &&
               !HasExtension(arguments.Output, CorridorExtension);
    });
    if (!isKnown) {
        context.Err << arguments.Output << "\nGive the report a name that ends in .pdf, .xlsx, .xls or .geojson"
                    << ": the figures are written beside it.\n";
        return WrongUsage;
    }
    auto corridor = std::make_shared<ReportedCorridor>();
    corridor->Of = LoadCorridor(context.Files, arguments.Corridor).Corridor;
    corridor->Root = RootOf(arguments.Corridor);
    corridor->Filter = arguments.Filter();
    MatchedRuns runs = ReadCorridorRuns(corridor->Of, context.Files, corridor->Root, context.State.Settings,
                                        context.Work.Part(0, Read));
    if (!runs.IsWhole || !context.Work.Part(0, Read)(1, 1)) return Stopped;
    corridor->Runs = std::move(runs.Runs);
    const auto isTaken = [&](const MatchedRun& run) { return corridor->Filter.Takes(run); };
    if (arguments.Period && std::ranges::none_of(corridor->Runs, isTaken)) {
        context.Err << "The corridor has no such runs of the period \"" << Printable(*arguments.Period)
                    << "\". Its runs have: " << Printable(Joined(PeriodsOf(corridor->Runs), ", ")) << ".\n";
        return Failed;
    }

    CorridorReportData data = MakeCorridorData(corridor, context.State.Settings, context.Time.Now());
    data.FiguresFile = LastComponent(FiguresPathOf(arguments.Output));
    data.UnderMap = OpenBaseMap(context.Tiles, ChoiceOf(context.State.Choices, BaseMapKey));
    MadeReport report = MakeReport(context, data, arguments);
    if (!context.Work(1, 1)) return Stopped;
    if (!WriteWithFigures(context.Files, arguments.Output, report.Bytes, FiguresOf(data))) return Stopped;
    for (const std::string& run : data.All().All.LeftOut) context.Err << Printable(run) << '\n';
    report.Facts["figures"] = FiguresPathOf(arguments.Output);
    context.Print(report.Facts);
    return Done;
}

// ---- verify ---------------------------------------------------------------------------------------------------------

struct VerifyArguments {
    std::string Report;
    std::string Corridor;
};

int VerifyReport(CommandContext& context, const VerifyArguments& arguments) {
    const std::string path = FiguresPathOf(arguments.Report);
    const FiguresFile figures = LoadFigures(context.Files, path);
    const std::string root = RootOf(arguments.Corridor.empty() ? path : arguments.Corridor);
    const Verification verification = VerifyFigures(figures, context.Files, root, context.Work);
    if (!verification.IsWhole || !context.Work(1, 1)) return Stopped;
    const auto& difference = verification.Difference;
    if (context.AsJson) {
        Json json = {{"same", !difference}, {"compared", verification.Compared}};
        if (difference)
            json.update({{"place", difference->Place},
                         {"reported", difference->Reported},
                         {"computed", difference->Computed},
                         {"causes", verification.Causes}});
        context.Print(json);
    } else if (!difference) {
        context.Out << "same\n";
    } else {
        context.Out << Printable(difference->Place) << ": " << Printable(difference->Reported) << " in the report, "
                    << Printable(difference->Computed) << " now\n";
        for (const std::string& cause : verification.Causes) context.Out << Printable(cause) << '\n';
        if (verification.Causes.empty())
            context.Out
                << "The runs are those of the report: its file of figures was changed, or another version of the "
                   "program computes it otherwise.\n";
    }
    return difference ? Failed : Done;
}

}  // namespace

void AddCorridorReportCommands(CLI::App& corridorGroup, CommandAction& chosen) {
    auto arguments = std::make_shared<ReportArguments>();
    CLI::App& report =
        AddCommand(corridorGroup, chosen, "report", "Write the report as PDF, workbook or GeoJSON, and its figures",
                   [=](CommandContext& context) { return ReportCorridor(context, *arguments); });
    report.add_option("CORRIDOR", arguments->Corridor, std::string("The corridor (") + CorridorExtension + ")")
        ->required();
    report.add_option("--output", arguments->Output, "The report to write (.pdf, .xlsx, .xls, .geojson)")->required();
    report.add_option("--period", arguments->Period, "Only the runs of this time of day");
    report.add_option("--condition", arguments->Condition, "before or after; both at first")
        ->transform(CLI::IsMember({"before", "after", "both"}, CLI::ignore_case));
    report.add_option("--paper", arguments->PaperName, "letter or a4")
        ->transform(CLI::IsMember({"letter", "a4"}, CLI::ignore_case));
    report.add_flag("--landscape", arguments->IsLandscape, "Wide pages");
    report.add_flag("--no-headings", arguments->HasNoHeadings, "Leave out the heading lines of the settings");
    std::vector<std::string> words;
    words.reserve(CorridorPartNames.size());
    for (const CorridorPartName& name : CorridorPartNames) words.emplace_back(name.Word);
    report.add_option("--only", arguments->Only, "Only this part of a PDF file; may be given again for further ones")
        ->transform(CLI::IsMember(words, CLI::ignore_case))
        ->expected(1)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);

    auto verify = std::make_shared<VerifyArguments>();
    CLI::App& verifying =
        AddCommand(corridorGroup, chosen, "verify", "Compute the figures of a report again from the runs, and compare",
                   [=](CommandContext& context) { return VerifyReport(context, *verify); });
    verifying
        .add_option("REPORT", verify->Report,
                    std::string("The figures (") + FiguresExtension + "), or the report that they lie beside")
        ->required();
    verifying.add_option("--corridor", verify->Corridor, "The corridor, where it lies elsewhere than the figures");
}

}  // namespace vantor
