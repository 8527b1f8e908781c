#include <span>

#include "reports/ReportContents.h"
#include "reports/ReportTable.h"
#include "reports/ReportText.h"

namespace vantor {
namespace {

constexpr double RunGap = 12;
constexpr double TableGap = 2;

/// The first three columns are the section's number and the names of its nodes.
constexpr std::size_t NameColumns = 3;
/// Where the seconds by key begin.
constexpr std::size_t FirstKeyColumn = 9;

ReportTable TableOf(const RunStatistics& statistics, const Units& units) {
    const std::vector<SheetRow> sheet = StatisticsSheet(statistics, units, nullptr);
    ReportTable table;
    for (const SheetField& head : sheet.front()) {
        const bool isName = table.Columns.size() < NameColumns;
        table.Columns.push_back({head.Text, isName ? TextSide::Left : TextSide::Right, isName});
    }
    for (const SheetRow& fields : std::span(sheet).subspan(1)) {
        table.Rows.emplace_back();
        for (const SheetField& field : fields) table.Rows.back().push_back(field.Text);
    }
    table.HasTotal = true;
    return table;
}

/// The figures of a run in one table; where it is too wide, the seconds by key follow in tables of their own.
std::vector<ReportTable> TablesOf(const RunStatistics& statistics, const Units& units, const ReportPages& pages) {
    const ReportTable table = TableOf(statistics, units);
    auto tables = SplitToWidth(table, pages.Width(), pages.Measure());
    if (tables.size() == 1) return tables;
    std::vector<std::size_t> figures;
    std::vector<std::size_t> keys;
    for (std::size_t column = 0; column < table.Columns.size(); ++column) {
        if (column < FirstKeyColumn) figures.push_back(column);
        if (column < NameColumns || column >= FirstKeyColumn) keys.push_back(column);
    }
    tables = SplitToWidth(WithColumns(table, keys), pages.Width(), pages.Measure(), NameColumns);
    tables.insert(tables.begin(), WithColumns(table, figures));
    return tables;
}

void AddRun(ReportPages& pages, const ReportData& data, const ReportRun& run) {
    const bool withName = data.Settings.ShowRunNamesOnStats != 0;
    const double line = pages.Measure().LineHeight(BodyStyle);
    if (!run.Problem.empty() || run.Statistics.Sections.empty()) {
        AddRunHeading(pages, data, run, withName, line);
        return pages.AddText(run.Problem.empty() ? "This run has no samples." : run.Problem, BodyStyle);
    }
    std::vector<TableLayout> layouts;
    double height = 0;
    for (const ReportTable& part : TablesOf(run.Statistics, UnitsOf(data.Settings), pages)) {
        layouts.emplace_back(part, pages.Width(), pages.Measure());
        height += layouts.back().Height() + TableGap;
    }
    // A run stays on one page, unless that would leave much of the page before it empty.
    const bool staysTogether = height <= pages.WholePage() / 2;
    AddRunHeading(pages, data, run, withName, staysTogether ? height : layouts.front().HeightOfStart());
    for (const TableLayout& layout : layouts) {
        layout.AddTo(pages);
        pages.Skip(TableGap);
    }
}

}  // namespace

void AddRunHeading(ReportPages& pages, const ReportData& data, const ReportRun& run, bool withName, double following) {
    const double height = RunHeadingHeight(pages);
    pages.Need(height + following);
    const double y = pages.Take(height);
    const CanvasBox box{pages.Left(), y, pages.Width(), height};
    const std::string summary = RunSummary(data, run);
    const double summaryWidth = pages.Measure().TextWidth(summary, CaptionStyle) + RunGap;
    pages.DrawText({box.X, box.Y, box.Width - summaryWidth, height}, RunTitle(data, run, withName), SectionStyle);
    pages.DrawText(box, summary, OnSide(CaptionStyle, TextSide::Right));
}

double RunHeadingHeight(const ReportPages& pages) { return pages.Measure().LineHeight(SectionStyle) + 2; }

void AddRunStatistics(ReportPages& pages, const ReportData& data) {
    for (const ReportRun& run : data.Runs) {
        AddRun(pages, data, run);
        pages.Skip(RunGap);
    }
}

}  // namespace vantor
