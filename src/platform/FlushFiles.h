#pragma once

#include <filesystem>
#include <vector>

#include "core/Progress.h"

namespace vantor {

struct FileToFlush {
    std::filesystem::path::string_type Path;
    std::filesystem::path::string_type Target;  ///< the file that errors name
};

/// Waits until all of these files are on the disk, and lets the disk write many of them in one go where the system can.
/// False when it was stopped.
bool FlushFiles(const std::vector<FileToFlush>& files, const Progress& progress);

}  // namespace vantor
