#include <algorithm>
#include <memory>

#include "cli/Commands.h"
#include "core/Paths.h"
#include "core/StudyFile.h"
#include "core/UserChoices.h"
#include "map/BaseMapFile.h"
#include "reports/modReports.h"

namespace vantor {
namespace {

constexpr const char* PdfExtension = ".pdf";
/// The part of the work that reading the runs is.
constexpr double Loaded = 0.3;

struct ReportOptions {
    std::string Path;
    std::string Output;
    std::string PaperName = "letter";
    std::vector<std::string> Only;
    bool IsLandscape = false;
    bool HasNoHeadings = false;
};

ReportChoice ChosenBy(const ReportOptions& options) {
    ReportChoice choice;
    choice.Sheet = options.PaperName == "a4" ? Paper::A4 : Paper::Letter;
    choice.IsLandscape = options.IsLandscape;
    choice.HasHeadings = !options.HasNoHeadings;
    if (options.Only.empty()) return choice;
    for (std::size_t i = 0; i < ReportNames.size(); ++i)
        choice.Reports[i] =
            std::find(options.Only.begin(), options.Only.end(), ReportNames[i].Word) != options.Only.end();
    return choice;
}

int PrintReport(CommandContext& context, const ReportOptions& options) {
    if (!context.TakesOutput(options.Output, HasExtension(options.Output, PdfExtension),
                             "Give the report a name that ends in .pdf."))
        return WrongUsage;
    const NamedFile file = TakeApart(options.Path, StudyExtension, "study file");
    const auto study = LoadStudy(context.Files, file.Folder, file.Name);
    if (!study) {
        context.Err << "Missing Study File: " << file.Name << '\n';
        return Failed;
    }
    ReportData data = LoadReportData(*study, context.State.Settings, context.Files, file.Folder, context.Time.Now(),
                                     context.Work.Part(0, Loaded));
    if (!context.Work.Part(Loaded, 1)(0, 1)) return Stopped;
    data.UnderMap = OpenBaseMap(context.Tiles, ChoiceOf(context.State.Choices, BaseMapKey));
    const PagedDocument document = MakeReport(data, ChosenBy(options), context.Documents.Measure());
    const auto bytes = context.Documents.Pdf(document, context.Work.Part(Loaded, 1));
    if (!context.Work(1, 1)) return Stopped;
    for (const std::string& problem : data.Problems) context.Err << problem << '\n';
    context.PutOutput(options.Output, bytes, {{"pages", document.Pages.size()}});
    return data.Problems.empty() ? Done : Failed;
}

}  // namespace

void AddReportCommand(CLI::App& studyGroup, CommandAction& chosen) {
    auto options = std::make_shared<ReportOptions>();
    CLI::App& report = AddCommand(studyGroup, chosen, "report", "Print the reports on a study as a PDF file",
                                  [options](CommandContext& context) { return PrintReport(context, *options); });
    report.add_option("FILE", options->Path, "A study file (.ld2)")->required();
    report.add_option("--output", options->Output, "The report to write (.pdf); - is standard output")->required();
    report.add_option("--paper", options->PaperName, "letter or a4")
        ->transform(CLI::IsMember({"letter", "a4"}, CLI::ignore_case));
    report.add_flag("--landscape", options->IsLandscape, "Wide pages");
    report.add_flag("--no-headings", options->HasNoHeadings, "Leave out the heading lines of the settings");
    std::vector<std::string> words;
    words.reserve(ReportNames.size());
    for (const ReportName& name : ReportNames) words.emplace_back(name.Word);
    report.add_option("--only", options->Only, "Only this report; may be given again for further ones")
        ->transform(CLI::IsMember(words, CLI::ignore_case))
        ->expected(1)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
}

}  // namespace vantor
