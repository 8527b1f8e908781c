#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "core/StudyRecords.h"

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
    std::optional<CounterFileChoice> ToConvert = {};  ///< first
    /// The file to convert was not chosen in a list, which would have read it: what is hurt in it is told, and what can
    /// be done about it.
    bool ChecksFirst = false;
};

/// Runs that were moved into a Study Group and that the study is to take; none where there are no names.
struct RunsForStudy {
    std::string Folder;  ///< of the group, with a final separator
    std::vector<std::string> Names;
};

/// What the speed profile is opened for. Runs count from 1 in the study's order.
struct ProfileVisit {
    int Run = 0;                     ///< to begin with; it is the current run
    bool GoesOn = false;             ///< to the other runs of the study, which may be changed, too
    std::vector<int> Selected = {};  ///< the runs that the user has selected; none where nothing can be
};

/// What a visit to the speed profile changed.
struct ProfileChanges {
    std::map<int, StudyRunEntry> Entries;  ///< by run
    /// Names that were given to other runs than the last one, whose name is in its record.
    std::map<int, std::string> Names;
    int LastRun = 0;  ///< the one in view at the end; it is the current run
};

/// How a study's statistics are made and what is written on it.
struct StudyChoices {
    StatisticsOptions Options;
    StudyLines Lines;
    bool HasLines = true;  ///< else nobody asks for them

    bool operator==(const StudyChoices&) const = default;
};

/// What came of a visit to the statistics over the runs.
struct StatisticsVisit {
    int LastRun = 0;  ///< of the study, from 1, the one selected at the end; 0 for none
    StudyChoices Choices;
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
    ImportTracks,  ///< files of any kind of track
    Corridors,     ///< the one that was open last
};

}  // namespace vantor
