#pragma once

#include <optional>
#include <string>

#include "core/AppSettings.h"
#include "core/RunRecords.h"
#include "core/StudyRecords.h"
#include "core/UserChoices.h"
#include "core/ports/RemoteApi.h"

namespace vantor {

/// Trimmed working copies of the folders of the settings, each as long as the user gave it; every screen reads folders
/// from here.
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

/// The connection to a handheld and what came of its last use.
struct HandheldState {
    bool ConnectionOpen = false;      ///< set and cleared by the connection handler alone
    bool ConnectedResult = false;     ///< of the last Initialize
    std::int32_t TransferResult = 0;  ///< of the last CopyToDesktop
    /// Written by the remote API whenever the connection comes to stand, so it lives as long as the program.
    RemoteApi::RapiInit InitRecord;
};

/// The state of the running program: one instance, owned by main and handed to those who need it.
struct ApplicationState {
    AppSettings Settings;
    WorkingPaths Paths;
    UserChoices Choices;  ///< as of the last time they were loaded or stored
    std::string SpeedUnitLabel;
    std::string LengthUnitLabel;
    std::string VolumeUnitLabel;
    bool SettingsWereMissing = false;
    bool PrefsChanged = false;
    bool RestartWanted = false;  ///< the program is to be started again when its window has closed
    bool MainFormLoaded = false;

    RunRecord CurrentRun;
    std::optional<FileStamp> CurrentRunStamp;  ///< of the file that CurrentRun was read from or written to
    Study CurrentStudy;
    /// Nothing was changed since the study was loaded, begun or saved.
    bool StudyUnchanged = true;
    /// The study's fields were typed into since then.
    bool StudyFieldsEdited = false;
    ReplacedStudy Replaced;  ///< by the last save of the current study

    // What was handed over last from one screen to the next, which gets it as a value; see app/AppScreens.
    bool CounterFileChosen = false;
    std::string ChosenCounterFileFolder;  ///< with a final separator
    std::string ChosenCounterFileName;    ///< without folder and extension
    std::string SelectedDataFolder;       ///< of GPS and OBD logs, with a final separator
    std::string SelectedDataFile;         ///< the chosen log's name without extension
    std::string SelectedDataExt;          ///< with its point
    bool DataFileSelected = false;
    HandheldState Handheld;
};

}  // namespace vantor
