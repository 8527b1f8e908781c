#include "core/TableFile.h"

#include <span>

#include "core/Paths.h"
#include "core/RunTimeError.h"

namespace vantor {

std::vector<FileKind> TableFileKinds() {
    return {{"Excel Spreadsheet files", ".xls"}, {"Excel workbooks", ".xlsx"}, {"Comma-separated values", ".csv"}};
}

namespace {

/// What is made in memory or in temporary files does not know the file that it is for.
std::vector<std::byte> EncodeWorkbook(const std::string& path, const OutgoingTable& table, const Spreadsheet& sheets,
                                      WorkbookFormat format) {
    try {
        return sheets.Encode(table.Sheets(), format);
    } catch (const RunTimeError& error) {
        const std::string reason = error.Place().empty() ? "The workbook could not be made." : error.Place();
        throw RunTimeError(error.Number(), reason + "\n" + path);
    }
}

}  // namespace

std::vector<std::byte> EncodeTable(const std::string& path, const OutgoingTable& table, const Spreadsheet& sheets) {
    if (HasExtension(path, ".xls")) return EncodeWorkbook(path, table, sheets, WorkbookFormat::Xls);
    if (HasExtension(path, ".xlsx")) return EncodeWorkbook(path, table, sheets, WorkbookFormat::Xlsx);
    if (!HasExtension(path, ".csv"))
        throw RunTimeError(ErrorNumber::TypeMismatch,
                           path + "\nGive the file a name that ends in .xls, .xlsx or .csv.");
    const std::string text = CsvText(table.Rows());
    const auto bytes = std::as_bytes(std::span(text));
    return {bytes.begin(), bytes.end()};
}

}  // namespace vantor
