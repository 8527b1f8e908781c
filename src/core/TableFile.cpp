#include "core/TableFile.h"

#include <span>

#include "core/Paths.h"
#include "core/RunTimeError.h"

namespace vantor {

std::vector<FileKind> TableFileKinds() {
    return {{"Excel Spreadsheet files", ".xls"}, {"Excel workbooks", ".xlsx"}, {"Comma-separated values", ".csv"}};
}

std::vector<std::byte> EncodeTable(const std::string& path, const OutgoingTable& table, const Spreadsheet& sheets) {
    if (HasExtension(path, ".xls")) return sheets.Encode(table.Sheets(), WorkbookFormat::Xls);
    if (HasExtension(path, ".xlsx")) return sheets.Encode(table.Sheets(), WorkbookFormat::Xlsx);
    if (!HasExtension(path, ".csv"))
        throw RunTimeError(ErrorNumber::TypeMismatch,
                           path + "\nGive the file a name that ends in .xls, .xlsx or .csv.");
    const std::string text = CsvText(table.Rows());
    const auto bytes = std::as_bytes(std::span(text));
    return {bytes.begin(), bytes.end()};
}

}  // namespace vantor
