#pragma once

#include <map>
#include <string>
#include <tuple>
#include <vector>

#include "core/Progress.h"
#include "core/RunRecords.h"
#include "core/ports/FileSystem.h"

namespace vantor {

/// What a run keeps of its counter's record when it is renamed and moved. Where its start was trimmed, its time is
/// another.
struct RunIdentity {
    double RunDate = 0;
    double RunTime = 0;
    std::int16_t CountNumber = 0;
    std::int16_t RunNumber = 0;
    std::string SiteCode;

    bool operator<(const RunIdentity& other) const {
        return std::tie(RunDate, RunTime, CountNumber, RunNumber, SiteCode) <
               std::tie(other.RunDate, other.RunTime, other.CountNumber, other.RunNumber, other.SiteCode);
    }
};

RunIdentity IdentityOf(const RunHeader& header);

/// The Study Groups' names by the runs that lie in them.
using RunsInGroups = std::map<RunIdentity, std::string>;
/// Reads the runs of all Study Groups; those that cannot be read are none. Stopped, those read by then.
RunsInGroups ListRunsInGroups(const FileSystem& files, const std::string& groupRoot, const Progress& progress);

/// What of a counter file lies in Study Groups.
struct RunsFound {
    int All = 0;  ///< whole records of the file
    int InGroups = 0;
    std::vector<std::string> Groups;  ///< where they lie, by name
};
/// Looks for the runs of a counter file, up to its end or its first fault.
RunsFound FindRunsOf(const FileSystem& files, const std::string& counterFile, const RunsInGroups& runs,
                     const Progress& progress);

}  // namespace vantor
