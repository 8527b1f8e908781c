#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "core/ports/Spreadsheet.h"

namespace vantor {

/// The bytes of a compound file whose stream "Workbook" holds the sheets as BIFF8 records. `names` has one for each
/// sheet; names and sizes are within the format's limits. Stopped, there are no bytes.
std::vector<std::byte> EncodeXls(const std::vector<Sheet>& sheets, const std::vector<std::string>& names,
                                 const Progress& progress);

}  // namespace vantor
