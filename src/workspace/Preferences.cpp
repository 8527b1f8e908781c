#include "workspace/Preferences.h"

#include <algorithm>
#include <utility>

#include "core/Numeric.h"
#include "core/Paths.h"
#include "core/Settings.h"
#include "core/Text.h"
#include "core/modMain.h"

namespace vantor {

std::int16_t WholePartOf(std::string_view text) {
    IntegerOfText(text);  // the error of a text that is no number
    return To16(static_cast<std::int64_t>(Val(text)));
}

std::string FolderProblem(std::string_view folder) {
    if (folder.empty()) return "No folder: files would go where the program was started. Enter a folder.";
    if (folder.front() == '~') return "\"~\" stands for no folder here. Write your home folder out.";
    if (!IsAbsolutePath(folder))
        return "Not a whole path: it means another folder wherever the program is started. Write it out from the root.";
    if (FirstCharacters(folder, PathWidth).size() < folder.size())
        return "Longer than the " + std::to_string(PathWidth) +
               " characters of the settings file. Kept whole beside it, but an older version finds only a part.";
    if (StoredFolder(folder) != folder)
        return "The settings file has no room for some of its letters. Kept whole beside it, but an older version does "
               "not find it.";
    return {};
}

std::array<std::string, 3> FoldersInDocuments(const std::string& documents) {
    const std::string folder = AsFolder(AsFolder(documents) + "Vantor");
    return {AsFolder(folder + "Temp"), AsFolder(folder + "Study Groups"), AsFolder(folder + "Field Data Files")};
}

std::vector<std::string> MissingFolders(const FileSystem& files, const Preferences& preferences) {
    std::vector<std::string> missing;
    for (const std::string& folder :
         {preferences.Paths.TempRunsPath, preferences.Settings.StudyGroupRootPath, preferences.Paths.FieldDataPath})
        if (!folder.empty() && !FolderExists(files, folder) &&
            std::find(missing.begin(), missing.end(), folder) == missing.end())
            missing.push_back(folder);
    return missing;
}

bool ChangesRoot(const Preferences& preferences) {
    return AsFolder(preferences.Settings.StudyGroupRootPath) != AsFolder(preferences.Paths.StudyGroupRootPath);
}

void SavePreferences(ApplicationState& state, FileSystem& files, Preferences preferences) {
    const auto exchange = [&] {
        std::swap(state.Settings, preferences.Settings);
        std::swap(state.Paths, preferences.Paths);
    };
    exchange();
    try {
        SaveSettings(state, files);
    } catch (const RunTimeError&) {
        exchange();
        throw;
    }
    state.PrefsChanged = true;
}

}  // namespace vantor
