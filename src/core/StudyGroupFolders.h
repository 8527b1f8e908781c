#pragma once

#include <string>
#include <vector>

#include "core/ApplicationState.h"
#include "core/ports/FileSystem.h"
#include "core/ports/MessageBoxes.h"

namespace vantor {

/// Whether a name can be that of a run or a Study Group: it is stored in studies and settings, so it must be storable
/// as well as safe. One that cannot be is told to the user.
bool AcceptName(MessageBoxes& messages, const std::string& name);

/// The folders directly below the root by name, hidden ones left out. Empty when the root cannot be read.
std::vector<std::string> ListStudyGroups(const FileSystem& files, const std::string& root);

/// The folder of a Study Group, blanks around its name ignored.
std::string GroupFolder(const std::string& groupRoot, const std::string& name);
/// Makes the Study Group's folder unless it exists or is that of the current group; true when it was made. A name that
/// cannot be a folder's is told to the user.
bool MakeStudyGroup(FileSystem& files, MessageBoxes& messages, const std::string& groupRoot, const std::string& name,
                    const std::string& currentGroup);

/// The name of the Study Group that runs were moved to last; empty before the first time.
std::string LastGroupOfRuns(const UserChoices& choices);
/// Keeps that name for the next time.
void RememberGroupOfRuns(ApplicationState& state, FileSystem& files, const std::string& name);

}  // namespace vantor
