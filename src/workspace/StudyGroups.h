#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/ApplicationState.h"
#include "core/Progress.h"
#include "core/RunRecords.h"
#include "core/StudyGroupFolders.h"
#include "core/StudyRecords.h"
#include "core/ports/FileSystem.h"

namespace vantor {

// What lies in Study Groups. All folders here end in a separator.

/// True for the same folder, letter case and a missing final separator ignored.
bool IsSameFolder(std::string_view left, std::string_view right);

/// True when the current study is the one of that file and unchanged.
bool IsCurrentStudy(const ApplicationState& state, std::string_view group, std::string_view name);

/// A study file as its first record and its run names describe it.
struct ListedStudy {
    std::string Name;  ///< of the file, without extension
    StudyRecord Header;
    OneBased<std::string> RunNames;
    std::string Problem;     ///< why it cannot be opened; empty when it can
    bool IsMissing = false;  ///< it was listed, and is gone
};
/// The studies of a group by name. An error of the listing itself is thrown. Stopped, those that were not read say so
/// as their problem.
std::vector<ListedStudy> ListStudies(const FileSystem& files, const std::string& group, const Progress& progress = {});

/// A run file as its header describes it.
struct ListedRun {
    std::string Name;  ///< of the file, without extension
    bool IsVer1 = false;
    RunHeader Header;
    std::string Problem;  ///< why it cannot be used; empty when it can
};
/// The runs of a group by name. A version 1 file that has a version 2 file beside it is left out. An error of the
/// listing itself is thrown. Stopped, those that were not read say so as their problem.
std::vector<ListedRun> ListRuns(const FileSystem& files, const std::string& group, const Progress& progress = {});

/// How the run files of a study stand in another group.
struct RunsElsewhere {
    std::vector<std::string> Missing;    ///< in the study's group only
    std::vector<std::string> Different;  ///< in both, with other contents
};
/// Runs without a file in the study's own group are left out. Stopped, it is not whole.
RunsElsewhere CompareRuns(const FileSystem& files, const Study& study, const std::string& from, const std::string& to,
                          const Progress& progress = {});

/// Copies run files between groups, all or none. False when it was stopped: then none.
bool CopyRuns(FileSystem& files, const std::vector<std::string>& names, const std::string& from, const std::string& to,
              const Progress& progress = {});

}  // namespace vantor
