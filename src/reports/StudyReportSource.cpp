#include "reports/StudyReportSource.h"

#include <algorithm>
#include <array>

#include "core/Paths.h"
#include "core/StudyFile.h"
#include "core/Text.h"

namespace vantor {
namespace {

/// By ReportKind.
constexpr std::array<const char*, ReportNames.size()> Captions = {"Co&ver",
                                                                  "Study S&ummary",
                                                                  "S&tatistics over Runs",
                                                                  "Before and &After",
                                                                  "Control &Delay and Running Average",
                                                                  "Time-Space D&iagram and Speeds",
                                                                  "Map of th&e Runs",
                                                                  "Speed Pro&files",
                                                                  "Method a&nd Grades",
                                                                  "Detailed Statistics by &Run"};

}  // namespace

std::vector<ReportSource::Part> StudyReportSource::Parts() const {
    std::vector<Part> parts;
    parts.reserve(Captions.size());
    const ReportChoice usual;
    for (std::size_t i = 0; i < Captions.size(); ++i) parts.push_back({Captions[i], usual.Reports[i]});
    return parts;
}

void StudyReportSource::Load(const FileSystem& files, const Progress& progress) {
    data_ = LoadReportData(from_.Contents, from_.Settings, files, from_.Folder, from_.Printed, progress);
    data_.UnderMap = OpenBaseMap(tiles_, from_.BaseMap);
}

std::vector<std::string> StudyReportSource::Problems() const {
    std::vector<std::string> problems;
    for (const ReportRun& run : data_.Runs)
        if (!run.Problem.empty())
            problems.push_back(run.Problem + ": " + RunFileName(data_.Contents.Entries[run.Number]));
    return problems;
}

std::string StudyReportSource::NoRunsText() const {
    if (!data_.Runs.empty()) return {};
    return "This study has no runs.\nClose this window, add runs with Add Run, and print then.";
}

PagedDocument StudyReportSource::Make(const PrintChoice& choice, const TextMeasure& measure) const {
    ReportChoice reports;
    static_cast<PageChoice&>(reports) = choice.Pages;
    std::ranges::copy(choice.Parts, reports.Reports.begin());
    return MakeReport(data_, reports, measure);
}

std::string StudyReportSource::PathToSave() const {
    const std::string study(Trim(data_.Contents.Record.StudyName));
    return from_.Folder + (study.empty() ? "Report" : WithSafeCharacters(study));
}

bool StudyReportSource::Save(FileSystem& files, const std::string& path, const PrintChoice& choice,
                             const DocumentWriter& writer, const Progress& progress) const {
    const auto bytes = writer.Pdf(Make(choice, writer.Measure()), progress);
    if (!progress(1, 1)) return false;
    WriteFile(files, path, bytes, AsItStands(files, path));
    return true;
}

}  // namespace vantor
