#pragma once

#include <optional>
#include <string>
#include <vector>

#include "core/Progress.h"
#include "core/StudyRecords.h"
#include "core/ports/FileSystem.h"
#include "corridor/CorridorRuns.h"

namespace vantor {

/// A study of the runs of one way and period at one node, in the Study Group that they lie in.
struct StudyOfNode {
    std::string Folder;  ///< of the Study Group, with a final separator
    std::string Name;    ///< "Oak St NB AM"
    std::size_t Node = 0;
    Way Along = Way::Forward;
    std::string Period;
    Study Contents;
};

/// One study for each node, way, period and Study Group that has runs of them, with the boundaries and figures of the
/// corridor; runs that it leaves out are not in it. The names of two of a Study Group are never alike, nor those of a
/// study that lies there; a name that does not fit ends in a number.
std::vector<StudyOfNode> StudiesOf(const Corridor& corridor, const std::vector<MatchedRun>& runs,
                                   const FileSystem& files, const std::string& groupRoot, Date today,
                                   const AppSettings& settings);

/// Writes them, and stops at the first that cannot be written; its error is thrown. False when it was stopped.
bool WriteStudies(FileSystem& files, std::vector<StudyOfNode>& studies, const Progress& progress = {});

}  // namespace vantor
