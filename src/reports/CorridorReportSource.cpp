#include "reports/CorridorReportSource.h"

#include <algorithm>
#include <array>

#include "core/Paths.h"
#include "corridor/FiguresFile.h"

namespace vantor {
namespace {

/// By CorridorPart.
constexpr std::array<const char*, CorridorPartNames.size()> Captions = {
    "&Delays and Travel Times", "Se&ctions",
    "Before and &After",        "&Time-Space Diagrams and Speeds",
    "Map of th&e Runs",         "What Hangs on the &Boundaries",
    "Method a&nd Sources",      "&Runs"};

CorridorReportChoice ChosenBy(const PrintChoice& choice) {
    CorridorReportChoice parts;
    static_cast<PageChoice&>(parts) = choice.Pages;
    std::ranges::copy(choice.Parts, parts.Parts.begin());
    return parts;
}

}  // namespace

std::vector<ReportSource::Part> CorridorReportSource::Parts() const {
    std::vector<Part> parts;
    parts.reserve(Captions.size());
    for (const char* caption : Captions) parts.push_back({caption});
    return parts;
}

void CorridorReportSource::Load(const FileSystem&, const Progress&) {
    data_ = MakeCorridorData(from_.Corridor, from_.Settings, from_.Printed);
    data_.UnderMap = OpenBaseMap(tiles_, from_.BaseMap);
}

std::vector<std::string> CorridorReportSource::Problems() const {
    std::vector<std::string> problems;
    for (const MatchedRun& run : from_.Corridor->Runs)
        if (!run.IsThere()) problems.push_back(run.Problem);
    return problems;
}

std::string CorridorReportSource::NoRunsText() const {
    if (!from_.Corridor->Runs.empty()) return {};
    return "This corridor has no runs.\nClose this window, take runs or tracks into the corridor, and print then.";
}

PagedDocument CorridorReportSource::Make(const PrintChoice& choice, const TextMeasure& measure) const {
    return MakeCorridorReport(data_, ChosenBy(choice), measure);
}

std::string CorridorReportSource::PathToSave() const {
    const std::string& name = from_.Corridor->Of.Name;
    return from_.Corridor->Root + (name.empty() ? "Corridor" : WithSafeCharacters(name));
}

bool CorridorReportSource::Save(FileSystem& files, const std::string& path, const PrintChoice& choice,
                                const DocumentWriter& writer, const Progress& progress) const {
    CorridorReportData data = data_;
    data.FiguresFile = LastComponent(FiguresPathOf(path));
    const auto bytes = writer.Pdf(MakeCorridorReport(data, ChosenBy(choice), writer.Measure()), progress);
    if (!progress(1, 1)) return false;
    return WriteWithFigures(files, path, bytes, FiguresOf(data));
}

}  // namespace vantor
