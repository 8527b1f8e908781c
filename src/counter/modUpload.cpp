#include "counter/modUpload.h"

#include <set>
#include <utility>

#include "core/Counted.h"
#include "core/Numeric.h"
#include "core/Paths.h"
#include "core/RunFile.h"
#include "core/RunRecords.h"
#include "core/Text.h"
#include "core/Windows1252.h"
#include "core/modMain.h"

namespace vantor {
namespace {

constexpr const char* LastGroupKey = "LastGroupOfRuns";

std::string RunPath(const std::string& folder, const std::string& name) { return folder + name + RunExtension; }

/// Names are stored in studies and settings, so they must be storable as well as safe.
bool AcceptName(MessageBoxes& messages, const std::string& name) {
    if (!IsSafeName(name)) {
        messages.Tell(UnsafeNameMessage(name), MessageIcon::Warning);
        return false;
    }
    // What cannot be stored becomes a question mark, which a safe name has not.
    if (Windows1252FromUtf8(name).find('?') != std::string::npos) {
        messages.Tell("\"" + name + "\" has letters that cannot be stored.\nUse other letters and try again.",
                      MessageIcon::Warning);
        return false;
    }
    return true;
}

/// `doing` is what the user reads meanwhile, "Moving". False when it was stopped.
bool MoveAll(LongWork& work, const std::string& doing, const std::vector<FileMove>& moves) {
    bool isDone = false;
    work.Run(doing + " " + Counted(moves.size(), "run"),
             [&](FileSystem& files, const Progress& progress) { isDone = files.RenameAll(moves, progress); });
    return isDone;
}

}  // namespace

std::string RunNameOf(const RunNameTemplate& parts) {
    return std::string(Trim(parts.BaseName)) + "-" + parts.Direction + "-" + parts.RunNumber;
}

std::string NextRunNumber(const std::string& runNumber) {
    const std::string digits = "000" + std::to_string(Add32(Round32(Val(runNumber)), 1));
    return digits.substr(digits.size() - 3);
}

void TakeNumberOf(TakenNumbers& taken, const RunNameTemplate& parts, const std::string& name) {
    constexpr std::size_t Digits = 3;
    // Told by its length, nearly every name: there may be a hundred thousand.
    const std::size_t stem = Trim(parts.BaseName).size() + parts.Direction.size() + 2;
    if (name.size() != stem + Digits) return;
    const auto number = CountOfText(name.substr(stem), 999);
    if (number && EqualIgnoringCase(name.substr(0, stem), RunNameOf(parts).substr(0, stem)))
        taken.set(static_cast<std::size_t>(*number));
}

std::string FreeRunNumber(const TakenNumbers& taken, std::size_t count) {
    std::size_t free = 0;
    for (std::size_t number = 1; number < taken.size(); ++number) {
        free = taken.test(number) ? 0 : free + 1;
        if (free < count) continue;
        const std::string digits = "00" + std::to_string(number + 1 - count);
        return digits.substr(digits.size() - 3);
    }
    return {};
}

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

std::string GroupFolder(const std::string& groupRoot, const std::string& name) {
    return AsFolder(AsFolder(groupRoot) + std::string(Trim(name)));
}

bool CheckStudyGroup(const FileSystem& files, MessageBoxes& messages, const std::string& groupRoot,
                     const std::string& name) {
    const std::string trimmed(Trim(name));
    if (!trimmed.empty() && !AcceptName(messages, trimmed)) return false;
    if (!trimmed.empty() && FolderExists(files, GroupFolder(groupRoot, trimmed))) return true;
    messages.Tell("Check the Current Study Group selected. There seems to be a problem.", MessageIcon::Warning);
    return false;
}

bool MakeStudyGroup(FileSystem& files, MessageBoxes& messages, const std::string& groupRoot, const std::string& name,
                    const std::string& currentGroup) {
    const std::string trimmed(Trim(name));
    if (!AcceptName(messages, trimmed)) return false;
    const std::string folder = GroupFolder(groupRoot, trimmed);
    if (EqualIgnoringCase(folder, GroupFolder(groupRoot, currentGroup)) || FolderExists(files, folder)) return false;
    files.CreateFolder(folder);
    return true;
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

std::string LastGroupOfRuns(const UserChoices& choices) { return ChoiceOf(choices, LastGroupKey); }

void RememberGroupOfRuns(ApplicationState& state, FileSystem& files, const std::string& name) {
    state.Choices = StoreUserChoices(files, {{LastGroupKey, name}});
}

}  // namespace vantor
