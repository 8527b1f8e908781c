#pragma once

#include <string>

#include "core/AppSettings.h"
#include "core/RunRecords.h"
#include "core/StudyRecords.h"

namespace vantor {

/// Trimmed working copies of the folders of the settings; every screen reads folders from here.
struct WorkingPaths {
    std::string TempRunsPath;
    std::string StudyGroupRootPath;
    std::string FieldDataPath;
    std::string SpareFolder4;
    std::string SpareFolder5;
    std::string SpareFolder6;
    std::string LastStudyGroupPath;
    std::string LastStudyName;
};

/// What the user chose on the start-up screen. The screen only says so; the main window carries it out.
enum class StartUpChoice {
    None,  ///< the screen was left: on to the main window
    NewStudy,
    OpenStudy,
    LastStudy,  ///< the study named by LastStudyGroupPath and LastStudyName, whose file is there
    ReadCounter,
    ProcessTdcData,
    ProcessTempRuns,  ///< TemporaryRunsMode is set then
    ProcessRoamlap,
    ProcessRoampad,
    ProcessRevlap,
    ProcessRevpad,
    ProcessCombined,  ///< combined GPS and OBD logs, the key P
    ProcessBattelle,  ///< the key B
    Preferences,
    Exit,
};

/// The state of the running program: one instance, owned by main and handed to those who need it.
struct ApplicationState {
    AppSettings Settings;
    WorkingPaths Paths;
    std::string SpeedUnitLabel;
    std::string LengthUnitLabel;
    std::string VolumeUnitLabel;
    bool SettingsWereMissing = false;
    bool PrefsChanged = false;
    bool MainFormLoaded = false;

    RunRecord CurrentRun;
    Study CurrentStudy;
    bool StudyLoaded = false;
    /// Nothing was changed since the study was loaded, begun or saved.
    bool StudyUnchanged = true;
    /// The study's fields were typed into since then.
    bool StudyFieldsEdited = false;

    // Hand-over between screens.
    bool CounterFileChosen = false;
    std::string ChosenCounterFileFolder;  ///< with a final separator
    std::string ChosenCounterFileName;    ///< without folder and extension
    bool GpsObdUpload = false;
    bool TemporaryRunsMode = false;
    bool StartUpDone = false;  ///< the start-up screen was left
    StartUpChoice ChosenAtStartUp = StartUpChoice::None;
};

}  // namespace vantor
