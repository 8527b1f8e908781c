#include "core/StudyGroupFolders.h"

#include "core/Paths.h"
#include "core/RunTimeError.h"
#include "core/Text.h"
#include "core/Windows1252.h"
#include "core/modMain.h"

namespace vantor {
namespace {

constexpr const char* LastGroupKey = "LastGroupOfRuns";

}  // namespace

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

std::vector<std::string> ListStudyGroups(const FileSystem& files, const std::string& root) {
    std::vector<std::string> groups;
    try {
        for (const FileInfo& info : files.List(root))
            if (info.IsFolder && !info.IsHidden) groups.push_back(AsFolder(AsFolder(root) + info.Name));
    } catch (const RunTimeError&) {
        groups.clear();
    }
    return groups;
}

std::string GroupFolder(const std::string& groupRoot, const std::string& name) {
    return AsFolder(AsFolder(groupRoot) + std::string(Trim(name)));
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

std::string LastGroupOfRuns(const UserChoices& choices) { return ChoiceOf(choices, LastGroupKey); }

void RememberGroupOfRuns(ApplicationState& state, FileSystem& files, const std::string& name) {
    state.Choices = StoreUserChoices(files, {{LastGroupKey, name}});
}

}  // namespace vantor
