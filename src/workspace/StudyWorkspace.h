#pragma once

#include <string>
#include <vector>

#include "core/ApplicationState.h"
#include "core/StudyFile.h"
#include "core/ports/Clock.h"
#include "core/ports/Desktop.h"
#include "core/ports/FileSystem.h"

namespace vantor {

/// The name that stands for no last study.
inline constexpr const char* NoStudyName = "blank";
/// True when the last study's file is there to be opened.
bool LastStudyExists(const ApplicationState& state, const FileSystem& files);

/// The question to ask before the current study is left. A saved study that cannot be read counts as another one.
enum class SavePrompt { None, NotSavedYet, ParametersChanged };
SavePrompt SavePromptNeeded(const ApplicationState& state, const FileSystem& files);

inline constexpr const char* NamelessStudyText =
    "You need to give this study a name before continuing.\nClick in the Name input box and enter a name.";
/// What keeps the study from being evaluated, as the text to show; empty when nothing does.
std::string StudyProblem(const Study& study);

/// Makes the study of that file the current and the last one. A missing file beeps, gives an empty study and false.
bool OpenStudy(ApplicationState& state, FileSystem& files, Desktop& desktop, const Clock& clock,
               const std::string& folder, const std::string& name);

/// Writes the current study under its name into its Study Group, which becomes the last study; it is unchanged then.
/// `replacing` as of WriteStudyFile; the backup that was kept is the state's Replaced. Error 75 for a name that
/// cannot be a file's.
void SaveStudy(ApplicationState& state, FileSystem& files, Replacing replacing = Replacing::OwnFile);
/// As SaveStudy, under another name and in another Study Group, whatever is there. On an error the study keeps its old
/// ones. The runs are looked for in the group of the study.
void SaveStudyAs(ApplicationState& state, FileSystem& files, const std::string& folder, const std::string& name,
                 Replacing replacing = Replacing::AnyFile);
/// Puts the study that the last save replaced back into its place; what was saved there is kept as the next backup. The
/// current study stays as it is, and is not saved then.
void PutReplacedStudyBack(ApplicationState& state, FileSystem& files);

/// Appends the runs that the study does not have yet and returns their number; the study is changed then.
int AddRuns(ApplicationState& state, const std::vector<std::string>& runNames);
/// Removes runs (from 1, in rising order) from the study, not from the disk.
void DeleteRuns(ApplicationState& state, const std::vector<int>& runs);
/// Moves runs (from 1, in rising order) together to before run `before`, or behind the last one with RunCount + 1, and
/// returns what run the first of them is then. The order of the runs is that of the running average.
int MoveRuns(ApplicationState& state, const std::vector<int>& runs, int before);
/// Writes `run`, which is run `index` of the study, under a new name into the Study Group and makes it the
/// name of that run; the study is changed then. The old file stays, for other studies may use it. Returns what keeps
/// the run from taking the name, as the text to show, with nothing done; empty when nothing does.
std::string RenameRun(ApplicationState& state, FileSystem& files, RunRecord& run, int index,
                      const std::string& newName);

}  // namespace vantor
