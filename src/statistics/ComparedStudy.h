#pragma once

#include <optional>
#include <string>

#include "core/StudyRecords.h"
#include "core/ports/FileSystem.h"
#include "statistics/StudyStatistics.h"

namespace vantor {

/// A study, or all runs of a Study Group as one, that is compared with others.
struct ComparedStudy {
    std::string Folder;  ///< with a final separator
    std::string Name;
    Study Contents;
    bool IsGroup = false;
};

/// The study of that file; nothing where there is none.
std::optional<ComparedStudy> OpenStudy(const FileSystem& files, const std::string& folder, const std::string& name);
/// All runs of a Study Group as a study that was never stored; none of them counts.
ComparedStudy OpenStudyGroup(const FileSystem& files, const std::string& folder);

/// A study with its runs as a condition of a comparison. Its remarks say which entries and runs are not there, and why
/// there is no control delay.
Condition ConditionOf(const ComparedStudy& study, StudyRuns runs);

}  // namespace vantor
