#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "analysis/RunFacts.h"
#include "core/AppSettings.h"
#include "core/Progress.h"
#include "core/StudyRecords.h"
#include "core/ports/FileSystem.h"
#include "core/ports/LongWork.h"

namespace vantor {

/// Whether a run is part of the study's figures. One that is not there has no figures in its row.
enum class RunState {
    Counted,     ///< both boundaries are set
    NotCounted,  ///< a boundary is missing
    Missing,
    Unreadable,
    Damaged,
};
/// "Counted", "Not counted", "Missing", "Unreadable" or "Damaged".
const char* StateWord(RunState state);
inline bool IsThere(RunState state) { return state == RunState::Counted || state == RunState::NotCounted; }

/// The threshold that a stored stop delay was counted with, against the one in force.
enum class StopDelayBasis { Present, Other, Unknown };

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
    std::vector<std::string> Warnings;  ///< of RunWarnings
    StopDelayBasis Basis = StopDelayBasis::Present;
    RunFacts Facts;  ///< what the texts are made of, with the entry
    StudyRunEntry Entry;
};

/// The texts of the results labels; a label that was never set is empty.
struct ResultLabels {
    std::optional<std::string> AvgControlDelay;
    std::optional<std::string> LOSGrade;
    std::optional<std::string> AvgStopDelay;
    std::optional<std::string> Ratio;
};

RunListRow MakeRunListRow(const StudyRunEntry& entry, RunFacts facts, const AppSettings& settings);

/// A row for each run of the study, read from its files in `folder`. Stopped, the runs not read by then are Unreadable.
/// What `known` rows of the same folder tell of a run with the same name and boundaries is taken from there; its file
/// is not read.
std::vector<RunListRow> MakeRunListRows(const Study& study, const FileSystem& files, const std::string& folder,
                                        const AppSettings& settings, const Progress& progress = {},
                                        std::vector<RunListRow> known = {});

struct RunList {
    std::vector<RunListRow> Rows;  ///< one for each run of the study
    bool IsWhole = true;           ///< false when the user stopped the reading: averages of the rows mean nothing
};
/// MakeRunListRows as long work.
RunList ReadRunList(LongWork& work, const Study& study, const std::string& folder, const AppSettings& settings,
                    std::vector<RunListRow> known = {});

/// Averages the counted rows into the study's record and the labels. With no counted row nothing changes; with an
/// average stop delay of 0 the ratio stays as it was. Error 6 for a sum that does not fit. Formulas: docs/methods.md,
/// "The study".
void ComputeStudyResults(Study& study, const std::vector<RunListRow>& rows, ResultLabels& labels);

/// What stands beside the average where counted runs have warnings: "3 of 8 runs have warnings; without them: 68".
/// Empty where none has.
std::string AverageWithoutWarned(const std::vector<RunListRow>& rows);

/// AverageWithoutWarned, and on a line before it how many runs are not there: "4 of 8 runs cannot be read and do not
/// count".
std::string ConditionsOfAverage(const std::vector<RunListRow>& rows);

/// What stands beside the stop delays where counted runs were not counted at the threshold in force: "2 runs computed
/// with another threshold", "8 runs: threshold not known". Empty where all were.
std::string OtherThresholds(const std::vector<RunListRow>& rows);
/// The average stop delay of the counted rows at the threshold in force, seconds; nothing when no row counts.
std::optional<std::int32_t> AverageStopDelayNow(const std::vector<RunListRow>& rows);

}  // namespace vantor
