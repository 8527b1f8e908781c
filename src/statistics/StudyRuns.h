#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "core/AppSettings.h"
#include "core/Date.h"
#include "core/Progress.h"
#include "core/RunFile.h"
#include "core/StudyRecords.h"
#include "core/ports/FileSystem.h"
#include "statistics/Measures.h"
#include "statistics/RunMeasures.h"

namespace vantor {

/// A run as the statistics take it; its samples are not kept.
struct MeasuredRun {
    int Entry = 0;  ///< of the study, from 1
    std::string Name;
    Date RunDate;
    Date RunTime;
    bool IsBefore = false;               ///< else after
    bool HasContradictoryFlags = false;  ///< Before and After are both set, or neither
    std::string Period;                  ///< the user's name for the time of day, or empty
    std::string Direction;               ///< that of the log it was made from, "EB"; or empty
    std::string SetAside;                ///< the reason, or empty
    bool IsCounted = false;              ///< both boundaries are set: its control delay counts
    std::int32_t ControlDelay = 0;       ///< seconds, as the study has it; means nothing where it does not count
    RunMeasures Measures;
    std::vector<std::string> NodeNames;  ///< start and end included
    std::vector<std::string> Warnings;   ///< of RunWarnings

    /// The value over the whole run or over section `section` (from 0); nothing where it is not defined.
    std::optional<double> ValueOf(Measure measure, std::optional<std::size_t> section = {}) const;
    int Nodes() const { return static_cast<int>(Measures.NodeTimes.size()); }
};

/// A run of the study that has no figures, and why, as a sentence.
struct RunLeftOut {
    int Entry = 0;
    std::string Name;
    RunOutcome Outcome = RunOutcome::Missing;  ///< Run: one without samples
    std::string Problem;
};

struct StudyRuns {
    std::vector<MeasuredRun> Runs;  ///< in the order of date and time; those of one moment in that of the study
    std::vector<RunLeftOut> LeftOut;
    bool IsWhole = true;  ///< false when the reading was stopped: then there are none
};

/// Gets what came of reading each entry of the study, a run or none, while it is at hand; each once, but two at a time.
using RunVisitor = std::function<void(int entry, const RunReading& reading)>;

/// Reads the runs of a study, one at a time, and measures them with the study's stop speeds. `part` is what the visitor
/// needs of them, Values or Whole.
StudyRuns ReadStudyRuns(const Study& study, const FileSystem& files, const std::string& folder,
                        const AppSettings& settings, const Progress& progress = {}, const RunVisitor& visit = {},
                        RunPart part = RunPart::Values);

/// One run that was read; it must be a run with samples.
MeasuredRun MeasureStudyRun(const RunReading& reading, const StudyRunEntry& entry, const AppSettings& settings,
                            const StopSpeeds& speeds);

}  // namespace vantor
