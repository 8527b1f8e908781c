#include "core/TableFile.h"

#include <span>

#include "core/Paths.h"
#include "core/RunTimeError.h"

namespace vantor {

std::vector<FileKind> TableFileKinds() {
    return {{"Excel Spreadsheet files", ".xls"}, {"Excel workbooks", ".xlsx"}, {"Comma-separated values", ".csv"}};
}

namespace {

constexpr double Made = 0.4;
constexpr double Encoded = 0.9;

/// What is made in memory or in temporary files does not know the file that it is for.
std::vector<std::byte> EncodeWorkbook(const std::string& path, const OutgoingTable& table, const Spreadsheet& sheets,
                                      WorkbookFormat format, const Progress& progress) {
    try {
        return sheets.Encode(table.Sheets(progress.Part(0, Made)), format, progress.Part(Made, Encoded));
    } catch (const RunTimeError& error) {
        const std::string reason = error.Place().empty() ? "The workbook could not be made." : error.Place();
        throw RunTimeError(error.Number(), reason + "\n" + path);
    }
}

std::vector<std::byte> EncodeTable(const std::string& path, const OutgoingTable& table, const Spreadsheet& sheets,
                                   const Progress& progress) {
    if (HasExtension(path, ".xls")) return EncodeWorkbook(path, table, sheets, WorkbookFormat::Xls, progress);
    if (HasExtension(path, ".xlsx")) return EncodeWorkbook(path, table, sheets, WorkbookFormat::Xlsx, progress);
    if (!HasExtension(path, ".csv"))
        throw RunTimeError(ErrorNumber::TypeMismatch,
                           path + "\nGive the file a name that ends in .xls, .xlsx or .csv.");
    const std::string text = CsvText(table.Rows(progress.Part(0, Encoded)));
    const auto bytes = std::as_bytes(std::span(text));
    return {bytes.begin(), bytes.end()};
}

}  // namespace

bool WriteTable(FileSystem& files, const std::string& path, const OutgoingTable& table, const Spreadsheet& sheets,
                const Progress& progress) {
    const std::vector<std::byte> bytes = EncodeTable(path, table, sheets, progress);
    const Progress writing = progress.Part(Encoded, 1);
    if (!writing(0, 1)) return false;
    const auto batch = files.BeginWrites();
    batch->Add(path, bytes, AsItStands(files, path));
    return batch->Commit(writing);
}

}  // namespace vantor
