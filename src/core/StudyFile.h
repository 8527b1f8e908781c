#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "core/ApplicationState.h"
#include "core/ports/Clock.h"
#include "core/ports/Desktop.h"
#include "core/ports/FileSystem.h"

namespace vantor {

/// The folder of the current study's Study Group, with a final separator.
std::string StudyGroupFolder(const ApplicationState& state);

// In all of these `folder` ends in a separator and `name` has no extension.

/// Makes the current study an empty one, unchanged.
void NewStudy(ApplicationState& state, const Clock& clock);

/// A study as its file and its companion hold it; nothing when there is no such file. Missing bytes at the end read as
/// zero; a damaged companion is as none. Error 9 when the file tells of fewer than no runs.
std::optional<Study> LoadStudy(const FileSystem& files, const std::string& folder, const std::string& name);

/// Loads folder + name + ".ld2" as the current study, unchanged. A missing file gives a beep, an empty study and
/// false.
bool ReadStudyFile(ApplicationState& state, const FileSystem& files, Desktop& desktop, const Clock& clock,
                   const std::string& folder, const std::string& name);

/// The header and the run names of a study alone; names are cut at 32 characters.
struct StudyRunNames {
    StudyRecord Header;
    OneBased<std::string> RunNames;
};
/// Nothing for a missing file, at which the caller beeps.
[[nodiscard]] std::optional<StudyRunNames> ReadStudyRunNames(const FileSystem& files, const std::string& folder,
                                                             const std::string& name);

/// How the file that a study would be written to stands to it.
enum class StudyTarget {
    New,      ///< there is none
    Own,      ///< the one that the study was read from or written to last
    Other,    ///< that of another study
    Changed,  ///< its own, which another program has changed since
};
StudyTarget TargetOfStudy(const FileSystem& files, const Study& study, const std::string& folder,
                          const std::string& name);

enum class Replacing { OwnFile, AnyFile };

/// Writes the study to folder + name + ".ld2" and its companion beside it. Its own file is replaced wholly. Another
/// one, or its own that was changed since, is error 58 or 75 where only the own may be replaced; where any may be, it
/// is kept as a numbered backup, which is returned.
ReplacedStudy WriteStudyFile(FileSystem& files, Study& study, const std::string& folder, const std::string& name,
                             Replacing replacing);

/// "3 of 8 entries are there" of a study whose file is too short for the runs that it tells of.
std::string CutShortText(const Study& study);

/// Makes a study of run names that are new to it; a name is cut at its field's width.
void AppendRun(Study& study, const std::string& runName);
/// Puts a run that was removed back as run `index` (from 1).
void InsertRun(Study& study, int index, const StudyRunEntry& entry);
/// Removes run `index` (from 1) from the study; its file stays.
void RemoveRun(Study& study, int index);
/// The run of that name, from 1; 0 when the study has none. Letter case is ignored, as for files.
int FindRun(const Study& study, std::string_view runName);

/// What the names of one run have in common: letter case and blanks around it are ignored.
std::string RunKey(std::string_view runName);
/// The runs of a study, from 1, by the keys of their names, to look many up.
std::unordered_map<std::string, int> RunsByKey(const Study& study);

/// What keeps a run of the study from taking a new name, as the text to show; empty when nothing does. The name must be
/// free in the study and in its Study Group.
std::string RunNameProblem(const ApplicationState& state, const FileSystem& files, const std::string& name);

/// The name of an entry's run file, without extension: the entry's first 32 characters.
std::string RunFileName(const StudyRunEntry& entry);

}  // namespace vantor
