#pragma once

#include <bitset>
#include <optional>
#include <string>
#include <vector>

#include "core/ApplicationState.h"
#include "core/ports/FileSystem.h"
#include "core/ports/LongWork.h"
#include "core/ports/MessageBoxes.h"

namespace vantor {

// Names of runs and Study Groups have no extension. Folders end in a separator.

/// What the names of a set of runs are made of.
struct RunNameTemplate {
    std::string BaseName;
    std::string Direction = "NB";
    std::string RunNumber = "001";
};

/// Base name without the blanks around it + "-" + direction + "-" + run number.
std::string RunNameOf(const RunNameTemplate& parts);
/// The run number after this one as three digits: "001" gives "002" and, on purpose, "999" gives "000".
std::string NextRunNumber(const std::string& runNumber);

/// The run numbers 000 to 999 that are taken.
using TakenNumbers = std::bitset<1000>;
/// Takes the number of a run whose name has the template's base name and direction, letter case ignored; other names
/// take none.
void TakeNumberOf(TakenNumbers& taken, const RunNameTemplate& parts, const std::string& name);
/// The lowest number from "001" on from which `count` numbers in a row are free; empty where there are not so many.
std::string FreeRunNumber(const TakenNumbers& taken, std::size_t count);

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

/// The folder of a Study Group, blanks around its name ignored.
std::string GroupFolder(const std::string& groupRoot, const std::string& name);
/// True when a Study Group of that name exists. Anything else is told to the user.
bool CheckStudyGroup(const FileSystem& files, MessageBoxes& messages, const std::string& groupRoot,
                     const std::string& name);
/// Makes the Study Group's folder unless it exists or is that of the current group; true when it was made. A name that
/// cannot be a folder's is told to the user.
bool MakeStudyGroup(FileSystem& files, MessageBoxes& messages, const std::string& groupRoot, const std::string& name,
                    const std::string& currentGroup);

/// Moves run files from the temporary runs folder into a Study Group's folder. A run that exists there is told to the
/// user and stays; of the others all are moved or, after an error or a stop, none. Returns the runs that stayed,
/// nothing after a stop. When the current study has no runs yet, the group becomes the last one used, so that its runs
/// are found.
std::optional<std::vector<std::string>> MoveRuns(ApplicationState& state, const FileSystem& files, LongWork& work,
                                                 MessageBoxes& messages, const std::string& groupFolder,
                                                 const std::vector<std::string>& names);

/// The name of the Study Group that runs were moved to last; empty before the first time.
std::string LastGroupOfRuns(const UserChoices& choices);
/// Keeps that name for the next time.
void RememberGroupOfRuns(ApplicationState& state, FileSystem& files, const std::string& name);

}  // namespace vantor
