#pragma once

#include <string>
#include <vector>

#include "core/AppContext.h"
#include "core/Csv.h"

namespace vantor {

/// Copies rows for a spreadsheet.
void CopySheet(AppContext& context, const std::vector<SheetRow>& rows);
/// Saves them as CSV in a file that the user names, beginning at the path `start`, which has no extension.
void SaveSheetAsCsv(AppContext& context, const std::vector<SheetRow>& rows, const std::string& start,
                    const std::string& title);

}  // namespace vantor
