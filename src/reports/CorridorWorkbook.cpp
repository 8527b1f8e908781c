#include <algorithm>
#include <string>
#include <utility>

#include "core/Text.h"
#include "core/Units.h"
#include "corridor/CorridorReportTables.h"
#include "reports/CorridorReport.h"
#include "statistics/Figure.h"

namespace vantor {
namespace {

Sheet SheetFrom(std::string name, const StatisticsTable& table) {
    constexpr int LeastWidth = 8;
    constexpr int MostWidth = 40;
    Sheet sheet;
    sheet.Name = std::move(name);
    for (const std::string& head : table.Heads)
        sheet.Columns.push_back({head, "General", std::max(LeastWidth, static_cast<int>(head.size()) + 1)});
    for (const auto& cells : table.Rows) {
        auto& row = sheet.Rows.emplace_back();
        for (std::size_t i = 0; i < cells.size(); ++i) {
            const StatisticsCell& cell = cells[i];
            int& width = sheet.Columns[i].Width;
            width = std::clamp(static_cast<int>(cell.Text.size()) + 1, width, std::max(width, MostWidth));
            if (cell.Number)
                row.emplace_back(*cell.Number);
            else if (cell.Text.empty() || cell.Text == NoValueText)
                row.emplace_back(std::monostate());
            else
                row.emplace_back(cell.IsWeak ? "(" + std::string(Trim(cell.Text)) + ")" : std::string(Trim(cell.Text)));
        }
    }
    return sheet;
}

}  // namespace

std::vector<Sheet> CorridorSheets(const CorridorReportData& data) {
    const Corridor& corridor = data.Of->Of;
    const Units units = UnitsOf(data.Settings);
    std::vector<Sheet> sheets;
    for (const PartOfFindings& part : data.Findings) {
        const CorridorFindings& findings = part.Findings;
        const bool isFirst = &part == &data.Findings.front();
        const std::string of = isFirst ? "" : part.Filter.Period->empty() ? ", no period" : ", " + *part.Filter.Period;
        const auto add = [&](const std::string& name, const StatisticsTable& table) {
            if (!table.Rows.empty()) sheets.push_back(SheetFrom(name + of, table));
        };
        add("Matrix", DelayTable(corridor, findings, units));
        add("Delays", NodeDelaysTable(corridor, findings, units));
        add("Sensitivity", SensitivityTable(corridor, findings, units));
        add("Sections", SectionFiguresTable(corridor, findings, units));
        add("Before and after", ComparedFiguresTable(corridor, findings.All, units));
    }
    for (const auto& [name, table] :
         {std::pair("Runs", RunsTable(*data.Of)), std::pair("Nodes of runs", NodesOfRunsTable(*data.Of, units)),
          std::pair("Bands", BandsTable(corridor, units)), std::pair("Tracks", TracksTable(corridor))})
        if (!table.Rows.empty()) sheets.push_back(SheetFrom(name, table));
    return sheets;
}

}  // namespace vantor
