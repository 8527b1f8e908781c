#include "workspace/StudyWorkspace.h"

#include <algorithm>

#include "core/Backup.h"
#include "core/Paths.h"
#include "core/RunFile.h"
#include "core/Settings.h"
#include "core/StudyCompanion.h"
#include "core/StudyFile.h"
#include "core/Text.h"
#include "core/modMain.h"
#include "workspace/StudyGroups.h"

namespace vantor {
namespace {

bool HasSameRuns(const Study& left, const Study& right) {
    if (left.Record.RunCount != right.Record.RunCount) return false;
    for (int i = 1; i <= left.Record.RunCount; ++i)
        if (left.Entries[i] != right.Entries[i]) return false;
    return true;
}

/// Whether the file of that name holds the study's runs. A damaged one must not keep the user from leaving.
bool IsSavedAs(const Study& study, const FileSystem& files, const std::string& folder, const std::string& name) {
    try {
        const auto saved = LoadStudy(files, folder, name);
        return saved && HasSameRuns(*saved, study);
    } catch (const RunTimeError&) {
        return false;
    }
}

void MarkSaved(ApplicationState& state, const std::string& folder, const std::string& name) {
    state.Paths.LastStudyGroupPath = folder;
    state.Paths.LastStudyName = name;
    state.StudyUnchanged = true;
    state.StudyFieldsEdited = false;
}

}  // namespace

bool LastStudyExists(const ApplicationState& state, const FileSystem& files) {
    const std::string& name = state.Paths.LastStudyName;
    return name != NoStudyName && IsSafeName(name) &&
           FileExists(files, StudyGroupFolder(state) + name + StudyExtension);
}

SavePrompt SavePromptNeeded(const ApplicationState& state, const FileSystem& files) {
    if (state.StudyUnchanged) return SavePrompt::None;
    const std::string name(Trim(state.CurrentStudy.Record.StudyName));
    const std::string folder = StudyGroupFolder(state);
    if (!IsSafeName(name) || !FileExists(files, folder + name + StudyExtension)) return SavePrompt::NotSavedYet;
    const bool differs = state.StudyFieldsEdited || !IsSavedAs(state.CurrentStudy, files, folder, name);
    return differs ? SavePrompt::ParametersChanged : SavePrompt::None;
}

std::string StudyProblem(const Study& study) {
    if (study.Record.RunCount == 0)
        return "You need to select one or more runs before continuing.\n"
               "Click the Add Runs buttons in the center window.";
    if (Trim(study.Record.StudyName).empty()) return NamelessStudyText;
    return {};
}

bool OpenStudy(ApplicationState& state, FileSystem& files, Desktop& desktop, const Clock& clock,
               const std::string& folder, const std::string& name) {
    if (!ReadStudyFile(state, files, desktop, clock, folder, name)) return false;
    MarkSaved(state, folder, name);
    SaveSettings(state, files);
    return true;
}

void SaveStudy(ApplicationState& state, FileSystem& files, Replacing replacing) {
    SaveStudyAs(state, files, StudyGroupFolder(state), std::string(Trim(state.CurrentStudy.Record.StudyName)),
                replacing);
}

void SaveStudyAs(ApplicationState& state, FileSystem& files, const std::string& folder, const std::string& name,
                 Replacing replacing) {
    if (!IsSafeName(name)) throw RunTimeError(ErrorNumber::PathFileAccessError, UnsafeNameMessage(name));
    Study study = state.CurrentStudy;
    study.Record.StudyName = name;
    state.Replaced = WriteStudyFile(files, study, folder, name, replacing);
    state.CurrentStudy = std::move(study);
    MarkSaved(state, folder, name);
    SaveSettings(state, files);
}

void PutReplacedStudyBack(ApplicationState& state, FileSystem& files) {
    const std::string& path = state.CurrentStudy.Stored->Path;
    const std::string companion = FolderOf(path) + BaseName(path) + CompanionExtension;
    const auto lock = files.Lock(FolderOf(path));
    const auto batch = files.BeginWrites();
    batch->Add(path, ReadWholeFile(files, state.Replaced.Path), AddBackup(*batch, files, path).Original);
    const bool hadCompanion = !state.Replaced.Companion.empty();
    const bool hasCompanion = FileExists(files, companion);
    if (hadCompanion || hasCompanion)
        batch->Add(companion, hadCompanion ? ReadWholeFile(files, state.Replaced.Companion) : EncodeCompanion(Study()),
                   hasCompanion ? AddBackup(*batch, files, companion).Original : Expected::Nothing());
    batch->Commit();
    state.Replaced = {};
    state.CurrentStudy.Stored.reset();
    state.StudyUnchanged = false;
    state.StudyFieldsEdited = true;
}

int AddRuns(ApplicationState& state, const std::vector<std::string>& runNames) {
    int added = 0;
    auto known = RunsByKey(state.CurrentStudy);
    for (const std::string& name : runNames) {
        if (!known.try_emplace(RunKey(name), 0).second) continue;
        AppendRun(state.CurrentStudy, name);
        ++added;
    }
    if (added > 0) state.StudyUnchanged = false;
    return added;
}

void DeleteRuns(ApplicationState& state, const std::vector<int>& runs) {
    for (auto run = runs.rbegin(); run != runs.rend(); ++run) RemoveRun(state.CurrentStudy, *run);
    if (!runs.empty()) state.StudyUnchanged = false;
}

int MoveRuns(ApplicationState& state, const std::vector<int>& runs, int before) {
    Study& study = state.CurrentStudy;
    std::vector<StudyRunEntry> moved;
    moved.reserve(runs.size());
    for (const int run : runs) moved.push_back(study.Entries[run]);
    const OneBased<std::string> names = study.RunNames;
    for (auto run = runs.rbegin(); run != runs.rend(); ++run) RemoveRun(study, *run);
    const auto inFront = std::ranges::count_if(runs, [before](int run) { return run < before; });
    const int first = before - static_cast<int>(inFront);
    for (std::size_t i = 0; i < moved.size(); ++i) InsertRun(study, first + static_cast<int>(i), moved[i]);
    if (study.RunNames != names) state.StudyUnchanged = false;
    return first;
}

std::string RenameRun(ApplicationState& state, FileSystem& files, RunRecord& run, int index,
                      const std::string& newName) {
    std::string problem = RunNameProblem(state, files, newName);
    if (!problem.empty()) return problem;
    WriteRunFile(files, run, StudyGroupFolder(state), newName, Expected::Nothing());
    state.CurrentStudy.Entries[index].EntryRunName = newName;
    state.CurrentStudy.RunNames[index] = newName;
    state.StudyUnchanged = false;
    return {};
}

}  // namespace vantor
