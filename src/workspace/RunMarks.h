#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "core/Progress.h"
#include "core/ports/FileSystem.h"

namespace vantor {

/// Whether a run was driven before or after the change that is studied, as its file says it.
struct RunMark {
    std::string RunName;  ///< of its file, without extension
    std::int16_t Before = 0;
    std::int16_t After = 0;  ///< flags: 0 or -1

    bool operator==(const RunMark&) const = default;
};

inline RunMark MarkOf(const std::string& runName, bool isBefore) {
    return isBefore ? RunMark{runName, -1, 0} : RunMark{runName, 0, -1};
}

/// Writes the marks into the run files in `folder`, all or none, and returns those that were there before; runs that
/// have theirs already are left alone and are not among them. Nothing else of a file changes, in one that was cut short
/// neither. A stop writes and returns nothing. The errors are those of reading a run; 53 for one that is missing.
std::vector<RunMark> WriteRunMarks(FileSystem& files, const std::string& folder, const std::vector<RunMark>& marks,
                                   const Progress& progress = {});

}  // namespace vantor
