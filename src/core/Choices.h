#pragma once

#include <optional>
#include <string>

namespace vantor {

/// A counter file that was chosen or received.
struct CounterFileChoice {
    std::string Folder;  ///< with a final separator
    std::string Name;    ///< without folder and extension

    bool operator==(const CounterFileChoice&) const = default;
};

/// A GPS or OBD log that was chosen.
struct LogChoice {
    std::string Folder;     ///< with a final separator
    std::string File;       ///< without extension; empty where none was listed
    std::string Extension;  ///< with its point

    bool operator==(const LogChoice&) const = default;
};

/// The runs that are to get their names, by where they come from.
enum class UploadOf { CounterFile, TemporaryRuns, Log };
struct Upload {
    UploadOf Of = UploadOf::CounterFile;
    std::optional<CounterFileChoice> ToConvert;  ///< first
};

/// What the user chose on the start-up screen.
enum class StartUpChoice {
    None,  ///< the screen was left: on to the main window
    NewStudy,
    OpenStudy,
    LastStudy,  ///< the study named by LastStudyGroupPath and LastStudyName, whose file is there
    ReadCounter,
    ProcessTdcData,
    ProcessTempRuns,
    ProcessRoamlap,
    ProcessRoampad,
    ProcessRevlap,
    ProcessRevpad,
    ProcessCombined,  ///< combined GPS and OBD logs, the key P
    ProcessBattelle,  ///< the key B
    Preferences,
    Exit,
};

}  // namespace vantor
