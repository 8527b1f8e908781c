#pragma once

#include <optional>
#include <string>
#include <vector>

#include "core/ApplicationState.h"
#include "core/RunNames.h"
#include "core/StudyGroupFolders.h"
#include "core/ports/FileSystem.h"
#include "core/ports/LongWork.h"
#include "core/ports/MessageBoxes.h"

namespace vantor {

// Names of runs and Study Groups have no extension. Folders end in a separator.

/// A run waiting in the temporary runs folder.
struct UploadRun {
    std::string Name;
    std::string PreviousName;  ///< before its renaming; empty when it was not renamed
};

/// Renames run files by the template in the order given, all or none, and moves the template on. A name that cannot be
/// a file's is told to the user before any file is touched and gives false, as a stop does. A file of the new name is
/// error 58.
bool RenameRuns(LongWork& work, MessageBoxes& messages, const std::string& folder, const std::vector<UploadRun*>& runs,
                RunNameTemplate& parts);
/// Gives those of the runs that were renamed their previous names back, all or none. False when it was stopped.
bool UndoRename(LongWork& work, const std::string& folder, const std::vector<UploadRun*>& runs);
/// Deletes run files one after the other; those that are gone already are passed over. An error or a stop leaves its
/// run and those after it.
void DeleteRuns(LongWork& work, const std::string& folder, const std::vector<std::string>& names);

/// True when a Study Group of that name exists. Anything else is told to the user.
bool CheckStudyGroup(const FileSystem& files, MessageBoxes& messages, const std::string& groupRoot,
                     const std::string& name);
/// Moves run files from the temporary runs folder into a Study Group's folder. A run that exists there is told to the
/// user and stays; of the others all are moved or, after an error or a stop, none. Returns the runs that stayed,
/// nothing after a stop. When the current study has no runs yet, the group becomes the last one used, so that its runs
/// are found.
std::optional<std::vector<std::string>> MoveRuns(ApplicationState& state, const FileSystem& files, LongWork& work,
                                                 MessageBoxes& messages, const std::string& groupFolder,
                                                 const std::vector<std::string>& names);

}  // namespace vantor
