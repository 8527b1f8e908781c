#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "analysis/DelayStatistics.h"
#include "core/AppSettings.h"
#include "core/RunFile.h"
#include "core/StudyRecords.h"

namespace vantor {

/// What lists, reports and exports tell of a run of the study; the samples are not kept.
struct RunFacts {
    RunOutcome Outcome = RunOutcome::Missing;
    std::string Problem;  ///< why there is no run; empty for a run
    Date RunDate;
    Date RunTime;
    std::int16_t RunTypeFlag = 0;
    std::int16_t Before = 0;
    std::int32_t SampleCount = 0;
    std::int32_t SamplesInFile = 0;
    std::uint64_t Movement = 0;  ///< MovementHash
    FoundBoundaries Found;       ///< over distance; nothing for a run without samples

    bool IsRun() const { return Outcome == RunOutcome::Run; }
};

RunFacts FactsOf(const RunReading& reading, const StudyRunEntry& entry, const AppSettings& settings);
/// The facts of an entry's run in `folder`. No error of the file is thrown.
RunFacts ReadRunFacts(const FileSystem& files, const std::string& folder, const StudyRunEntry& entry,
                      const AppSettings& settings);

/// What lies between the boundaries; nothing where one is not set or not found, or they are crossed.
std::optional<PartBetween> BetweenBoundaries(const StudyRunEntry& entry, const RunFacts& facts);

/// One of the warnings: a run that is faster than its ideal speed.
inline constexpr const char* NegativeDelayWarning = "negative control delay";

/// What makes a figure mean something else than it seems to, each as a short text; none for what is no run. Warnings
/// change no figure: a run that they name counts as before.
std::vector<std::string> RunWarnings(const StudyRunEntry& entry, const RunFacts& facts);

/// What is wrong with boundaries whose figures mean nothing, as a sentence; empty when nothing is, and while one of
/// them is not set.
std::string BoundaryProblem(const RunRecord& run, const PlotState& plot, const StudyRunEntry& entry);

}  // namespace vantor
