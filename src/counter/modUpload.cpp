#include "counter/modUpload.h"

#include <set>
#include <utility>

#include "core/Counted.h"
#include "core/Paths.h"
#include "core/RunFile.h"
#include "core/RunRecords.h"
#include "core/Text.h"
#include "core/modMain.h"

namespace vantor {
namespace {

std::string RunPath(const std::string& folder, const std::string& name) { return folder + name + RunExtension; }

/// `doing` is what the user reads meanwhile, "Moving". False when it was stopped.
bool MoveAll(LongWork& work, const std::string& doing, const std::vector<FileMove>& moves) {
    bool isDone = false;
    work.Run(doing + " " + Counted(moves.size(), "run"),
             [&](FileSystem& files, const Progress& progress) { isDone = files.RenameAll(moves, progress); });
    return isDone;
}

}  // namespace

bool RenameRuns(LongWork& work, MessageBoxes& messages, const std::string& folder, const std::vector<UploadRun*>& runs,
                RunNameTemplate& parts) {
    if (!AcceptName(messages, RunNameOf(parts))) return false;
    RunNameTemplate next = parts;
    std::vector<std::string> names;
    std::vector<FileMove> moves;
    for (const UploadRun* run : runs) {
        names.push_back(RunNameOf(next));
        moves.push_back({RunPath(folder, run->Name), RunPath(folder, names.back())});
        next.RunNumber = NextRunNumber(next.RunNumber);
    }
    if (!MoveAll(work, "Renaming", moves)) return false;
    for (std::size_t i = 0; i < runs.size(); ++i)
        runs[i]->PreviousName = std::exchange(runs[i]->Name, std::move(names[i]));
    parts = next;
    return true;
}

bool UndoRename(LongWork& work, const std::string& folder, const std::vector<UploadRun*>& runs) {
    std::vector<UploadRun*> renamed;
    std::vector<FileMove> moves;
    for (UploadRun* run : runs) {
        if (run->PreviousName.empty()) continue;
        renamed.push_back(run);
        moves.push_back({RunPath(folder, run->Name), RunPath(folder, run->PreviousName)});
    }
    if (!MoveAll(work, "Renaming", moves)) return false;
    for (UploadRun* run : renamed) run->Name = std::exchange(run->PreviousName, std::string());
    return true;
}

void DeleteRuns(LongWork& work, const std::string& folder, const std::vector<std::string>& names) {
    work.Run("Deleting " + Counted(names.size(), "run"), [&](FileSystem& files, const Progress& progress) {
        for (std::size_t i = 0; i < names.size() && progress(i, names.size()); ++i)
            DeleteRunFile(files, folder, names[i]);
    });
}

bool CheckStudyGroup(const FileSystem& files, MessageBoxes& messages, const std::string& groupRoot,
                     const std::string& name) {
    const std::string trimmed(Trim(name));
    if (!trimmed.empty() && !AcceptName(messages, trimmed)) return false;
    if (!trimmed.empty() && FolderExists(files, GroupFolder(groupRoot, trimmed))) return true;
    messages.Tell("Check the Current Study Group selected. There seems to be a problem.", MessageIcon::Warning);
    return false;
}

std::optional<std::vector<std::string>> MoveRuns(ApplicationState& state, const FileSystem& files, LongWork& work,
                                                 MessageBoxes& messages, const std::string& groupFolder,
                                                 const std::vector<std::string>& names) {
    const std::string fromFolder = AsFolder(state.Paths.TempRunsPath);
    // Listed once: looking each name up would list the folder for every run.
    std::set<std::string> taken;
    for (const FileInfo& info : files.List(groupFolder)) taken.insert(FoldCase(info.Name));
    std::vector<FileMove> moves;
    std::vector<NamedText> staying;
    for (const std::string& name : names) {
        const std::string target = RunPath(groupFolder, std::string(Trim(name)));
        if (taken.contains(FoldCase(LastComponent(target))))
            staying.push_back({name, "Run " + name + " exists in the selected Study Group."});
        else
            moves.push_back({RunPath(fromFolder, name), target});
    }
    messages.WarnOfEach(staying, [] { return true; });
    if (!MoveAll(work, "Moving", moves)) return std::nullopt;
    if (!moves.empty() && state.CurrentStudy.RunNames.IsEmpty()) state.Paths.LastStudyGroupPath = groupFolder;
    std::vector<std::string> stayed;
    stayed.reserve(staying.size());
    for (NamedText& run : staying) stayed.push_back(std::move(run.Name));
    return stayed;
}

}  // namespace vantor
