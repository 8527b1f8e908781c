#include "workspace/Preferences.h"

#include <algorithm>
#include <utility>

#include "core/Numeric.h"
#include "core/Paths.h"
#include "core/Settings.h"
#include "core/modMain.h"

namespace vantor {

std::int16_t WholePartOf(std::string_view text) {
    IntegerOfText(text);  // the error of a text that is no number
    return To16(static_cast<std::int64_t>(Val(text)));
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
