#include "gpsobd/forms/ReviewExport.h"

#include "core/Paths.h"
#include "core/RunTimeError.h"
#include "core/TableFile.h"

namespace vantor {
namespace {

/// Rows below the heads that an .xls file holds.
constexpr int MostXlsRows = 65535;

std::vector<SheetRow> CsvRows(const ReviewGrid& grid, const Progress& progress) {
    std::vector<SheetRow> rows(1);
    for (int column = 1; column <= grid.ColumnCount(); ++column) rows.front().push_back({grid.Column(column).Caption});
    const auto count = static_cast<std::uint64_t>(grid.RowCount());
    for (int row = 1; row <= grid.RowCount() && progress(rows.size(), count); ++row) {
        SheetRow& fields = rows.emplace_back();
        for (int column = 1; column <= grid.ColumnCount(); ++column)
            fields.push_back({grid.FullText(row, column), std::holds_alternative<double>(grid.Value(row, column))});
    }
    return rows;
}

}  // namespace

void ReviewExport::ToXls() const {
    std::string path = logPath_ + ".xls";
    if (grid_.RowCount() > MostXlsRows) {
        path = logPath_ + ".xlsx";
        if (!context_.Messages.Confirm("The log has " + std::to_string(grid_.RowCount()) +
                                       " rows, an .xls file holds " + std::to_string(MostXlsRows) +
                                       ".\nDo you want to export it to this file instead?\n" + path))
            return;
    }
    bool isWritten = false;
    try {
        isWritten = Write(path);
    } catch (const RunTimeError&) {
        return context_.Messages.Tell("Problem Exporting File. Contact Technical Support.", MessageIcon::Critical);
    }
    if (isWritten) context_.Messages.Tell("Excel File Successfully Exported.");
}

std::string ReviewExport::ToNamedFile() const {
    const std::string path = context_.DesktopServices.ChooseFileToSave(logPath_ + ".xlsx", "Export", TableFileKinds());
    return !path.empty() && Write(path) ? path : std::string();
}

bool ReviewExport::Write(const std::string& path) const {
    const OutgoingTable table{[this](const Progress& progress) { return std::vector{grid_.AsSheet(progress)}; },
                              [this](const Progress& progress) { return CsvRows(grid_, progress); }};
    bool isWritten = false;
    context_.Work.Run("Exporting the log to " + LastComponent(path),
                      [&, path](FileSystem& files, const Progress& progress) {
                          isWritten = WriteTable(files, path, table, context_.Sheets, progress);
                      });
    return isWritten;
}

}  // namespace vantor
