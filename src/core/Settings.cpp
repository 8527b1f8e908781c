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

/// A folder as it fits into the record.
std::string AsStored(std::string_view path) { return std::string(Trim(FirstCharacters(Trim(path), PathWidth))); }

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

void SetUnitLabels(ApplicationState& state) {
    const bool metric = state.Settings.MetricUnits != 0;
    state.SpeedUnitLabel = metric ? "KPH" : "MPH";
    state.LengthUnitLabel = metric ? "m" : "ft";
    state.VolumeUnitLabel = metric ? "l" : "gal";
}

}  // namespace

void LoadSettings(ApplicationState& state, const FileSystem& files) {
    const std::string path = files.SettingsFolder() + SettingsFileName;
    state.SettingsWereMissing = !FileExists(files, path);
    state.Settings = state.SettingsWereMissing
                         ? FirstRunSettings(files)
                         : DecodeRecord<AppSettings>(AppSettingsFields, ReadFirstBytes(files, path, AppSettingsSize));
    const auto takeTrimmed = [](std::string& field, std::string& workingCopy) {
        field = workingCopy = AsStored(field);
    };
    ForEachFolder(state.Settings, state.Paths, takeTrimmed);
    takeTrimmed(state.Settings.StudyGroupRootPath, state.Paths.StudyGroupRootPath);
    SetUnitLabels(state);
}

void SaveSettings(ApplicationState& state, FileSystem& files) {
    AppSettings settings = state.Settings;
    ForEachFolder(settings, state.Paths,
                  [](std::string& field, const std::string& workingCopy) { field = workingCopy; });
    files.CreateFolder(files.SettingsFolder());
    WriteFile(files, files.SettingsFolder() + SettingsFileName, EncodeRecord(settings, AppSettingsFields));
    state.Settings = settings;
}

}  // namespace vantor
