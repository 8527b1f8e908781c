#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "core/RunRecords.h"
#include "core/StudyRecords.h"
#include "core/ports/FileSystem.h"

namespace vantor {

/// Whether a run is part of the study's figures.
enum class RunState {
    Counted,     ///< both boundaries are set
    NotCounted,  ///< a boundary is missing
    Missing,     ///< the run's file cannot be read; the row has no figures
};

/// One row of the run list, as it is shown; the study's averages are made from these texts.
struct RunListRow {
    std::string RunName;       ///< followed by one blank
    std::string RunDate;       ///< "mm/dd/yy"
    std::string RunTime;       ///< "hh:mm"
    std::string RunType;       ///< "Primary" or "Secondary"
    std::string ControlDelay;  ///< trimmed
    std::string LOSGrade;
    std::string StopDelay;  ///< with its sign position
    RunState State = RunState::NotCounted;
};

/// The texts of the results labels; a label that was never set is empty.
struct ResultLabels {
    std::optional<std::string> AvgControlDelay;
    std::optional<std::string> LOSGrade;
    std::optional<std::string> AvgStopDelay;
    std::optional<std::string> Ratio;
};

/// The header of an entry's run in `folder`. Nothing for a run that cannot be read, whatever the reason: its row has no
/// figures, the others are shown.
std::optional<RunHeader> HeaderOf(const StudyRunEntry& entry, const FileSystem& files, const std::string& folder);

/// The row of a study's entry; `header` is nothing when the run's file is missing.
RunListRow MakeRunListRow(const StudyRunEntry& entry, const std::optional<RunHeader>& header);

/// A row for each run of the study, read from the headers of its files in `folder`.
std::vector<RunListRow> MakeRunListRows(const Study& study, const FileSystem& files, const std::string& folder);

/// Averages the counted rows into the study's record and the labels. With no counted row nothing changes; with an
/// average stop delay of 0 the ratio stays as it was. Error 6 for a sum that does not fit.
void ComputeStudyResults(Study& study, const std::vector<RunListRow>& rows, ResultLabels& labels);

}  // namespace vantor
