#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "core/Csv.h"
#include "core/ports/Desktop.h"
#include "core/ports/Spreadsheet.h"

namespace vantor {

/// A table that may go out as a workbook or as text; each form is made when it is asked for.
struct OutgoingTable {
    std::function<std::vector<Sheet>()> Sheets;
    std::function<std::vector<SheetRow>()> Rows;  ///< with the row of heads
};

/// .xls, .xlsx and .csv, for a file dialog.
std::vector<FileKind> TableFileKinds();

/// The bytes of a file of the kind that its name's extension says. Error 13 for an extension of no table file.
std::vector<std::byte> EncodeTable(const std::string& path, const OutgoingTable& table, const Spreadsheet& sheets);

}  // namespace vantor
