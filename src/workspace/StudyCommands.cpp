#include "workspace/StudyCommands.h"

#include "analysis/StudyEdits.h"
#include "analysis/StudyTable.h"
#include "core/Backup.h"
#include "core/CurrentRun.h"
#include "core/Paths.h"
#include "core/RunFile.h"
#include "core/StudyFile.h"
#include "core/Text.h"
#include "workspace/StudyGroups.h"
#include "workspace/StudyWorkspace.h"

namespace vantor {
namespace {

std::string NameOfStudy(const ApplicationState& state) {
    return std::string(Trim(state.CurrentStudy.Record.StudyName));
}

/// The study under its name, where it would be saved.
StudyTarget TargetUnderItsName(const AppContext& context) {
    const ApplicationState& state = context.State;
    const std::string name = NameOfStudy(state);
    if (!IsSafeName(name)) return StudyTarget::New;
    return TargetOfStudy(context.Files, state.CurrentStudy, StudyGroupFolder(state), name);
}

/// Where more than the study's own file as it was read would be replaced.
bool ReplacesMore(StudyTarget target) { return target == StudyTarget::Other || target == StudyTarget::Changed; }

/// A second paragraph for the question whether to save, where that would replace more than the study's own file.
std::string WhatIsReplaced(const AppContext& context, StudyTarget target) {
    if (!ReplacesMore(target)) return {};
    const ApplicationState& state = context.State;
    const std::string path = StudyGroupFolder(state) + NameOfStudy(state) + StudyExtension;
    return std::string("\n\n") +
           (target == StudyTarget::Other ? "A study of that name exists already."
                                         : "It has been changed since it was opened.") +
           " It will be kept as " + LastComponent(FreeBackupPath(context.Files, path)) + ".";
}

/// A further paragraph where the study would come to lie in the folder of all Study Groups.
std::string WarningOfRoot(const AppContext& context, StudyTarget target) {
    const ApplicationState& state = context.State;
    if (target != StudyTarget::New || !IsSameFolder(StudyGroupFolder(state), state.Paths.StudyGroupRootPath)) return {};
    return "\n\nThis is the root of all Study Groups, where no runs lie. Save Study As puts the study into a Study "
           "Group.";
}

bool SaveUnderItsName(AppContext& context, StudyTarget target) {
    const std::string name = NameOfStudy(context.State);
    const std::string problem = name.empty() ? NamelessStudyText : NameProblem(name, StudyNameWidth);
    if (!problem.empty()) {
        context.Messages.Tell(problem, MessageIcon::Warning);
        return false;
    }
    // What was asked about may be replaced; what has come since may not.
    SaveStudy(context.State, context.Files, ReplacesMore(target) ? Replacing::AnyFile : Replacing::OwnFile);
    return true;
}

bool ReadRunOfStudy(AppContext& context, const std::string& name) {
    if (!IsSafeName(name)) {
        context.Messages.Tell(UnsafeNameMessage(name), MessageIcon::Warning);
        return false;
    }
    const RunReading reading = ReadCurrentRun(context.State, context.Files, name);
    if (reading) return true;
    if (reading.Outcome != RunOutcome::Missing) throw RunTimeError(*reading.Fault);
    TellMissingRun(context.Messages, name);
    return false;
}

/// Gives run `index` of the study, which is `run`, another name where it is to have one.
void Rename(AppContext& context, int index, RunRecord& run, const std::string& newName) {
    if (newName == RunFileName(context.State.CurrentStudy.Entries[index])) return;
    const std::string problem = RenameRun(context.State, context.Files, run, index, newName);
    if (!problem.empty()) context.Messages.Tell(problem, MessageIcon::Warning);
}

}  // namespace

bool SaveStudyNow(AppContext& context) {
    const StudyTarget target = TargetUnderItsName(context);
    const std::string group = LastComponent(StudyGroupFolder(context.State));
    return context.Messages.Confirm("Do you want to save study: " + NameOfStudy(context.State) + "\n in Study Group: " +
                                    group + " ?" + WhatIsReplaced(context, target) + WarningOfRoot(context, target)) &&
           SaveUnderItsName(context, target);
}

bool MayLeaveStudy(AppContext& context) {
    const SavePrompt prompt = SavePromptNeeded(context.State, context.Files);
    if (prompt == SavePrompt::None) return true;
    const StudyTarget target = TargetUnderItsName(context);
    const std::string question =
        prompt == SavePrompt::NotSavedYet
            ? "This study has not been saved yet.\n  Do you want to save the study?"
            : "One or more study parameters have changed.\n     Do you want to save the study?";
    const MessageAnswer answer = context.Messages.AskToSave(question + WhatIsReplaced(context, target));
    return answer == MessageAnswer::No || (answer == MessageAnswer::Yes && SaveUnderItsName(context, target));
}

RunsForStudy DownloadAndProcess(AppContext& context) {
    auto file = context.OtherScreens.ShowReadTDC();
    if (!file) return {};
    return context.OtherScreens.ShowUploadData({UploadOf::CounterFile, std::move(file)});
}

RunsForStudy ProcessCounterFile(AppContext& context) {
    const auto upload = context.OtherScreens.ShowUploadSelect();
    return upload ? context.OtherScreens.ShowUploadData(*upload) : RunsForStudy();
}

RunsForStudy ImportLog(AppContext& context, LogKind kind) {
    const auto log = context.OtherScreens.ShowLogSelect(kind);
    return log ? ReviewLog(context, kind, *log) : RunsForStudy();
}

RunsForStudy ReviewLog(AppContext& context, LogKind kind, const LogChoice& log) {
    if (!context.OtherScreens.ShowLogReview(kind, log)) return {};
    return context.OtherScreens.ShowUploadData({UploadOf::Log});
}

void ExportRunList(AppContext& context) {
    const Study copy = context.State.CurrentStudy;
    if (copy.Record.RunCount == 0) return context.Messages.Tell(StudyProblem(copy));
    const std::string folder = StudyGroupFolder(context.State);
    const std::string name(Trim(copy.Record.StudyName));
    const std::string path = context.DesktopServices.ChooseFileToSave(
        folder + (IsSafeName(name) ? name : "Run list") + ".xls", "Export to Excel", TableFileKinds());
    if (path.empty()) return;
    bool isWritten = false;
    context.Work.Run("Exporting the run list to " + LastComponent(path),
                     [&, settings = context.State.Settings](FileSystem& files, const Progress& progress) {
                         isWritten =
                             ExportStudy(files, copy, folder, settings, path, context.Sheets, progress).has_value();
                     });
    if (isWritten) context.Messages.Tell("The run list was exported to:\n" + path);
}

void TellMissingRuns(AppContext& context, const std::vector<RunListRow>& rows, std::set<std::string>& told) {
    std::vector<NamedText> missing;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const std::string name = RunFileName(context.State.CurrentStudy.Entries[static_cast<int>(i) + 1]);
        // A study that was cut short has entries without a name: the status bar tells of them.
        if (name.empty() || (rows[i].State != RunState::Missing && IsSafeName(name))) continue;
        if (told.insert(FoldCase(name)).second)
            missing.push_back({name, IsSafeName(name) ? MissingRunText(name) : UnsafeNameMessage(name)});
    }
    context.Messages.WarnOfEach(missing, [] { return true; });
}

void ShowRun(AppContext& context, int index, void (Screens::*screen)(int entryIndex)) {
    if (ReadRunOfStudy(context, RunFileName(context.State.CurrentStudy.Entries[index])))
        (context.OtherScreens.*screen)(index);
}

bool ShowNodePlacesOf(AppContext& context, int index) {
    return ReadRunOfStudy(context, RunFileName(context.State.CurrentStudy.Entries[index])) &&
           context.OtherScreens.ShowNodePlaces();
}

void ShowRunDetails(AppContext& context, int index, const std::vector<int>& selected) {
    ApplicationState& state = context.State;
    if (!ReadRunOfStudy(context, RunFileName(state.CurrentStudy.Entries[index]))) return;
    const ProfileChanges changes =
        context.OtherScreens.ShowSpeedProfile({.Run = index, .GoesOn = true, .Selected = selected});
    for (const auto& [run, entry] : changes.Entries) TakeEntry(state, run, entry);

    for (const auto& [run, name] : changes.Names) {
        const std::string oldName = RunFileName(state.CurrentStudy.Entries[run]);
        if (auto named = ReadRunFile(context.Files, context.Messages, StudyGroupFolder(state), oldName))
            Rename(context, run, *named, std::string(Trim(name)));
    }
    const std::string lastName(Trim(state.CurrentRun.Header.RunName));
    state.CurrentRun.Header.RunName = lastName;
    Rename(context, changes.LastRun, state.CurrentRun, lastName);
}

}  // namespace vantor
