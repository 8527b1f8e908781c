#include "counter/modUpload.h"

#include "core/Numeric.h"
#include "core/Paths.h"
#include "core/RunRecords.h"
#include "core/Text.h"
#include "core/Windows1252.h"
#include "core/modMain.h"

namespace vantor {
namespace {

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

}  // namespace

std::string RunNameOf(const RunNameTemplate& parts) {
    return std::string(Trim(parts.BaseName)) + "-" + parts.Direction + "-" + parts.RunNumber;
}

std::string NextRunNumber(const std::string& runNumber) {
    const std::string digits = "000" + std::to_string(Add32(Round32(Val(runNumber)), 1));
    return digits.substr(digits.size() - 3);
}

bool RenameRuns(FileSystem& files, MessageBoxes& messages, const std::string& folder,
                const std::vector<UploadRun*>& runs, RunNameTemplate& parts) {
    if (!AcceptName(messages, RunNameOf(parts))) return false;
    for (UploadRun* run : runs) {
        const std::string name = RunNameOf(parts);
        const std::string nextNumber = NextRunNumber(parts.RunNumber);
        files.Rename(RunPath(folder, run->Name), RunPath(folder, name));
        run->PreviousName = run->Name;
        run->Name = name;
        parts.RunNumber = nextNumber;
    }
    return true;
}

void UndoRename(FileSystem& files, const std::string& folder, const std::vector<UploadRun*>& runs) {
    for (UploadRun* run : runs) {
        if (run->PreviousName.empty()) continue;
        files.Rename(RunPath(folder, run->Name), RunPath(folder, run->PreviousName));
        run->Name = run->PreviousName;
        run->PreviousName.clear();
    }
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

void MoveRuns(ApplicationState& state, FileSystem& files, MessageBoxes& messages, const std::string& groupFolder,
              const std::vector<std::string>& names) {
    const std::string fromFolder = AsFolder(state.Paths.TempRunsPath);
    for (const std::string& name : names) {
        const std::string target = RunPath(groupFolder, std::string(Trim(name)));
        if (FileExists(files, target)) {
            messages.Tell("Run " + name + " exists in the selected Study Group.", MessageIcon::Warning);
            continue;
        }
        files.Rename(RunPath(fromFolder, name), target);
        if (state.CurrentStudy.RunNames.IsEmpty()) state.Paths.LastStudyGroupPath = groupFolder;
    }
}

}  // namespace vantor
