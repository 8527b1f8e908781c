#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "core/ports/Spreadsheet.h"

namespace vantor {

/// The bytes of an Office Open XML workbook. `names` has one for each sheet; names and sizes are within the format's
/// limits. Stopped, there are no bytes.
std::vector<std::byte> EncodeXlsx(const std::vector<Sheet>& sheets, const std::vector<std::string>& names,
                                  const Progress& progress);

}  // namespace vantor
