#include "gpsobd/forms/ReviewExport.h"

#include "core/Paths.h"
#include "core/RunTimeError.h"
#include "core/TableFile.h"
#include "core/forms/WaitCursor.h"

namespace vantor {
namespace {

/// Rows below the heads that an .xls file holds.
constexpr int MostXlsRows = 65535;

std::vector<SheetRow> CsvRows(const ReviewGrid& grid) {
    std::vector<SheetRow> rows(1);
    for (int column = 1; column <= grid.ColumnCount(); ++column) rows.front().push_back({grid.Column(column).Caption});
    for (int row = 1; row <= grid.RowCount(); ++row) {
        SheetRow& fields = rows.emplace_back();
        for (int column = 1; column <= grid.ColumnCount(); ++column)
            fields.push_back({grid.FullText(row, column), std::holds_alternative<double>(grid.Value(row, column))});
    }
    return rows;
}

}  // namespace

void ReviewExport::ToXls() const {
    std::string path = PathWith(".xls");
    if (grid_.RowCount() > MostXlsRows) {
        path = PathWith(".xlsx");
        if (!context_.Messages.Confirm("The log has " + std::to_string(grid_.RowCount()) +
                                       " rows, an .xls file holds " + std::to_string(MostXlsRows) +
                                       ".\nDo you want to export it to this file instead?\n" + path))
            return;
    }
    try {
        Write(path);
    } catch (const RunTimeError&) {
        return context_.Messages.Tell("Problem Exporting File. Contact Technical Support.", MessageIcon::Critical);
    }
    context_.Messages.Tell("Excel File Successfully Exported.");
}

std::string ReviewExport::ToNamedFile() const {
    const std::string path = context_.DesktopServices.ChooseFileToSave(PathWith(".xlsx"), "Export", TableFileKinds());
    if (!path.empty()) Write(path);
    return path;
}

std::string ReviewExport::PathWith(const char* extension) const {
    return AsFolder(context_.State.SelectedDataFolder) + context_.State.SelectedDataFile + extension;
}

void ReviewExport::Write(const std::string& path) const {
    const WaitCursor wait;
    const OutgoingTable table{[this] { return std::vector{grid_.AsSheet()}; }, [this] { return CsvRows(grid_); }};
    WriteFile(context_.Files, path, EncodeTable(path, table, context_.Sheets), AsItStands(context_.Files, path));
}

}  // namespace vantor
