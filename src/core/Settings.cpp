#include "core/Settings.h"

#include "core/Paths.h"
#include "core/Text.h"
#include "core/modMain.h"

namespace vantor {
namespace {

std::string DefaultFolder(const FileSystem& files, const std::string& startFolder, const std::string& name) {
    const std::string folder = startFolder + PathSeparator + name + PathSeparator;
    return FolderExists(files, folder) ? folder : startFolder;
}

AppSettings FirstRunSettings(const FileSystem& files) {
    const std::string startFolder = LongPathName(files, files.CurrentFolder());
    AppSettings settings;
    settings.UseStartUpScreen = -1;
    settings.TempRunsPath = DefaultFolder(files, startFolder, "Temp");
    settings.StudyGroupRootPath = DefaultFolder(files, startFolder, "Study Groups");
    settings.FieldDataPath = DefaultFolder(files, startFolder, "Field Data Files");
    settings.LastStudyGroupPath = settings.StudyGroupRootPath;
    settings.SpeedFactor = static_cast<float>(3600.0 / FeetPerMile);
    settings.CommPort = 1;
    settings.BaudRate = 9600;
    settings.AutoConvertVer1 = -1;
    settings.ShowRunNamesOnStats = -1;
    settings.ShowPageNumbers = -1;
    settings.ReportHeading[1] = "Organization Title Goes Here";
    settings.ReportHeading[2] = "Heading Second Line";
    settings.ReportHeading[3] = "Heading Third Line";
    return settings;
}

template <class Action>
void ForEachFolder(AppSettings& settings, WorkingPaths& paths, Action action) {
    action(settings.TempRunsPath, paths.TempRunsPath);
    action(settings.FieldDataPath, paths.FieldDataPath);
    action(settings.SpareFolder4, paths.SpareFolder4);
    action(settings.SpareFolder5, paths.SpareFolder5);
    action(settings.SpareFolder6, paths.SpareFolder6);
    action(settings.LastStudyGroupPath, paths.LastStudyGroupPath);
    action(settings.LastStudyName, paths.LastStudyName);
}

/// The folders whose whole text the user's choices keep, by key.
template <class Action>
void ForEachKeptFolder(AppSettings& settings, Action action) {
    action("TempRunsPath", settings.TempRunsPath);
    action("StudyGroupRootPath", settings.StudyGroupRootPath);
    action("FieldDataPath", settings.FieldDataPath);
    action("LastStudyGroupPath", settings.LastStudyGroupPath);
}

/// The folders that the record cannot hold whole; an empty text for the others.
UserChoices WholeFolders(AppSettings& settings) {
    UserChoices whole;
    ForEachKeptFolder(settings, [&](const char* key, const std::string& folder) {
        whole[key] = StoredFolder(folder) == folder ? std::string() : folder;
    });
    return whole;
}

void TakeWholeFolders(AppSettings& settings, const UserChoices& choices) {
    ForEachKeptFolder(settings, [&](const char* key, std::string& folder) {
        const std::string whole = ChoiceOf(choices, key);
        if (!whole.empty() && StoredFolder(whole) == StoredFolder(folder)) folder = whole;
    });
}

void SetUnitLabels(ApplicationState& state) {
    const Units units = UnitsOf(state.Settings);
    state.SpeedUnitLabel = units.SpeedLabel();
    state.LengthUnitLabel = units.LengthLabel();
    state.VolumeUnitLabel = units.VolumeLabel();
}

}  // namespace

std::string StoredFolder(std::string_view folder) { return AsStored(Trim(folder), PathWidth); }

void LoadSettings(ApplicationState& state, const FileSystem& files) {
    const std::string path = files.SettingsFolder() + SettingsFileName;
    state.SettingsWereMissing = !FileExists(files, path);
    state.Settings = state.SettingsWereMissing
                         ? FirstRunSettings(files)
                         : DecodeRecord<AppSettings>(AppSettingsFields, ReadFirstBytes(files, path, AppSettingsSize));
    const auto takeTrimmed = [](std::string& field, std::string& workingCopy) { field = workingCopy = Trim(field); };
    const auto takeAll = [&] {
        ForEachFolder(state.Settings, state.Paths, takeTrimmed);
        takeTrimmed(state.Settings.StudyGroupRootPath, state.Paths.StudyGroupRootPath);
    };
    takeAll();
    SetUnitLabels(state);
    // The settings are in force even where the choices cannot be read.
    state.Choices = LoadUserChoices(files);
    TakeWholeFolders(state.Settings, state.Choices);
    takeAll();
}

void SaveSettings(ApplicationState& state, FileSystem& files) {
    AppSettings settings = state.Settings;
    ForEachFolder(settings, state.Paths,
                  [](std::string& field, const std::string& workingCopy) { field = workingCopy; });
    // First: a whole folder beside a record that does not hold its beginning is passed over.
    state.Choices = StoreUserChoices(files, WholeFolders(settings));
    const std::string path = files.SettingsFolder() + SettingsFileName;
    const std::vector<std::byte> bytes = EncodeRecord(settings, AppSettingsFields);
    // A write waits for the disk.
    if (!FileExists(files, path) || ReadWholeFile(files, path) != bytes) {
        files.CreateFolder(files.SettingsFolder());
        // Of several windows the one that saves last is right.
        WriteFile(files, path, bytes, AsItStands(files, path));
    }
    state.Settings = settings;
}

}  // namespace vantor
