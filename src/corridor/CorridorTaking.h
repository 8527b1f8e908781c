#pragma once

#include <string>
#include <vector>

#include "core/Progress.h"
#include "core/ports/FileSystem.h"
#include "corridor/Corridor.h"

namespace vantor {

/// What came of runs that were to be taken into a corridor.
struct TakenRuns {
    std::vector<CorridorRun> Runs;
    std::vector<std::string> Refused;  ///< a sentence each
    bool IsWhole = true;               ///< false where it was stopped
};
/// The corridor's records of run files: of the Study Group whose folder they lie in, along the way that they go. A run
/// that is in the corridor, or not in a Study Group of the root, or cannot be read, is refused.
TakenRuns TakeRunFiles(const Corridor& corridor, const std::vector<std::string>& paths, const FileSystem& files,
                       const std::string& groupRoot, const Progress& progress = {});

}  // namespace vantor
