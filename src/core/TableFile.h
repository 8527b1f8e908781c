#pragma once

#include <functional>
#include <string>
#include <vector>

#include "core/Csv.h"
#include "core/Progress.h"
#include "core/ports/Desktop.h"
#include "core/ports/FileSystem.h"
#include "core/ports/Spreadsheet.h"

namespace vantor {

/// A table that may go out as a workbook or as text; each form is made when it is asked for. Stopped, it need not be
/// whole.
struct OutgoingTable {
    std::function<std::vector<Sheet>(const Progress&)> Sheets;
    std::function<std::vector<SheetRow>(const Progress&)> Rows;  ///< with the row of heads
};

/// .xls, .xlsx and .csv, for a file dialog.
std::vector<FileKind> TableFileKinds();

/// Writes a file of the kind that its name's extension says, whatever is there. False when it was stopped: nothing is
/// written then. Error 13 for an extension of no table file.
bool WriteTable(FileSystem& files, const std::string& path, const OutgoingTable& table, const Spreadsheet& sheets,
                const Progress& progress = {});

}  // namespace vantor
