#include "workspace/StudyCommands.h"

#include "analysis/StudyTable.h"
#include "core/Paths.h"
#include "core/RunFile.h"
#include "core/StudyFile.h"
#include "core/Text.h"
#include "workspace/StudyGroups.h"
#include "workspace/StudyWorkspace.h"

namespace vantor {
namespace {

constexpr std::size_t StudyNameWidth = 32;

bool SaveUnderItsName(AppContext& context) {
    const std::string name(Trim(context.State.CurrentStudy.Record.StudyName));
    const std::string problem = NameProblem(name, StudyNameWidth);
    if (!problem.empty()) {
        context.Messages.Tell(problem, MessageIcon::Warning);
        return false;
    }
    SaveStudy(context.State, context.Files);
    return true;
}

bool ReadRunOfStudy(AppContext& context, const std::string& name) {
    if (!IsSafeName(name)) {
        context.Messages.Tell(UnsafeNameMessage(name), MessageIcon::Warning);
        return false;
    }
    return ReadRunFile(context.Files, context.Messages, context.State.CurrentRun, StudyGroupFolder(context.State), name,
                       true);
}

}  // namespace

bool SaveStudyNow(AppContext& context) {
    const std::string name(Trim(context.State.CurrentStudy.Record.StudyName));
    const std::string group = LastComponent(StudyGroupFolder(context.State));
    return context.Messages.Confirm("Do you want to save study: " + name + "\n in Study Group: " + group + " ?") &&
           SaveUnderItsName(context);
}

bool MayLeaveStudy(AppContext& context) {
    const SavePrompt prompt = SavePromptNeeded(context.State, context.Files);
    if (prompt == SavePrompt::None) return true;
    const bool saves = context.Messages.Confirm(
        prompt == SavePrompt::NotSavedYet
            ? "This study has not been saved yet.\n  Do you want to save the study?"
            : "One or more study parameters have changed.\n     Do you want to save the study?");
    return !saves || SaveUnderItsName(context);
}

void DownloadAndProcess(AppContext& context) {
    context.State.GpsObdUpload = false;
    context.State.CounterFileChosen = false;
    if (context.OtherScreens.ShowReadTDC()) context.OtherScreens.ShowUploadData();
}

void ProcessRuns(AppContext& context) {
    ApplicationState& state = context.State;
    struct ModeEnds {
        bool& Mode;
        ~ModeEnds() { Mode = false; }
    } const modeEnds{state.TemporaryRunsMode};

    state.CounterFileChosen = !state.TemporaryRunsMode && context.OtherScreens.ShowUploadSelect();
    if (state.TemporaryRunsMode || state.CounterFileChosen) context.OtherScreens.ShowUploadData();
}

void ImportLog(AppContext& context, LogKind kind) {
    context.State.GpsObdUpload = true;
    if (context.OtherScreens.ShowLogSelect(kind) && context.OtherScreens.ShowLogReview(kind))
        context.OtherScreens.ShowUploadData();
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
    context.Work.Run(
        "Exporting the run list to " + LastComponent(path), [&](FileSystem& files, const Progress& progress) {
            const auto bytes = EncodeTable(path, StudyTable(copy, files, folder, progress), context.Sheets);
            if (!progress(1, 1)) return;
            WriteFile(files, path, bytes);
            isWritten = true;
        });
    if (isWritten) context.Messages.Tell("The run list was exported to:\n" + path);
}

void ShowRun(AppContext& context, int index, void (Screens::*screen)(int entryIndex)) {
    if (ReadRunOfStudy(context, RunFileName(context.State.CurrentStudy.Entries[index])))
        (context.OtherScreens.*screen)(index);
}

void ShowRunDetails(AppContext& context, int index) {
    ApplicationState& state = context.State;
    const StudyRunEntry before = state.CurrentStudy.Entries[index];
    const std::string name = RunFileName(before);
    if (!ReadRunOfStudy(context, name)) return;
    context.OtherScreens.ShowSpeedProfile(index);

    if (state.CurrentStudy.Entries[index] != before) state.StudyUnchanged = false;
    const std::string newName(Trim(state.CurrentRun.Header.RunName));
    state.CurrentRun.Header.RunName = newName;
    if (newName == name) return;
    const std::string problem = RenameCurrentRun(state, context.Files, index, newName);
    if (!problem.empty()) context.Messages.Tell(problem, MessageIcon::Warning);
}

}  // namespace vantor
