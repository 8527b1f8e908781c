#include "platform/SpreadsheetWriter.h"

#include "core/RunTimeError.h"
#include "platform/SheetText.h"
#include "platform/XlsWriter.h"
#include "platform/XlsxWriter.h"

namespace vantor {
namespace {

struct FormatLimits {
    const char* Extension;
    std::size_t Rows;  ///< below the heads
    std::size_t Columns;
    const char* Remedy;
};

constexpr FormatLimits LimitsOf(WorkbookFormat format) {
    if (format == WorkbookFormat::Xls) return {".xls", 65535, 256, "Choose .xlsx or .csv instead."};
    return {".xlsx", 1048575, 16384, "Choose .csv instead."};
}

[[noreturn]] void ThrowTooMany(const std::string& sheet, std::size_t count, std::size_t most, const std::string& what,
                               const FormatLimits& limits) {
    throw RunTimeError(ErrorNumber::Overflow, "The sheet \"" + sheet + "\" has " + std::to_string(count) + " " + what +
                                                  ", but an " + limits.Extension + " file holds " +
                                                  std::to_string(most) + ". " + limits.Remedy);
}

void CheckSize(const Sheet& sheet, const std::string& name, const FormatLimits& limits) {
    const std::size_t columns = sheet.Columns.size();
    if (sheet.Rows.size() > limits.Rows)
        ThrowTooMany(name, sheet.Rows.size(), limits.Rows, "rows below its heads", limits);
    if (columns > limits.Columns) ThrowTooMany(name, columns, limits.Columns, "columns", limits);
    for (std::size_t row = 0; row < sheet.Rows.size(); ++row)
        if (sheet.Rows[row].size() > columns)
            throw RunTimeError(ErrorNumber::SubscriptOutOfRange,
                               "Row " + std::to_string(row + 1) + " of the sheet \"" + name + "\" has " +
                                   std::to_string(sheet.Rows[row].size()) + " cells under " + std::to_string(columns) +
                                   " heads.");
}

}  // namespace

std::vector<std::byte> SpreadsheetWriter::Encode(const std::vector<Sheet>& sheets, WorkbookFormat format,
                                                 const Progress& progress) const {
    // No spreadsheet opens a workbook without a sheet.
    if (sheets.empty()) return Encode({Sheet{}}, format, progress);
    const std::vector<std::string> names = SheetNames(sheets);
    for (std::size_t i = 0; i < sheets.size(); ++i) CheckSize(sheets[i], names[i], LimitsOf(format));
    return format == WorkbookFormat::Xls ? EncodeXls(sheets, names, progress) : EncodeXlsx(sheets, names, progress);
}

}  // namespace vantor
