#pragma once

#include <filesystem>
#include <vector>

#include "core/Progress.h"

namespace vantor {

/// Waits until all of these files are on the disk, and lets the disk write many of them in one go where the system can.
/// False when it was stopped. Errors name the file.
bool FlushFiles(const std::vector<std::filesystem::path::string_type>& paths, const Progress& progress);

}  // namespace vantor
