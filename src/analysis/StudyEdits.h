#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "analysis/DelayStatistics.h"
#include "analysis/StudyResults.h"
#include "core/ApplicationState.h"
#include "core/StudyRecords.h"
#include "core/ports/FileSystem.h"

namespace vantor {

// What changes the figures of a study. Window and commands make the same change by the same function.

/// As ComputeRunDelay; the entry also keeps what its figures were computed from, or why they could not be.
float ComputeEntry(const RunRecord& run, const AppSettings& settings, PlotState& plot, StudyRunEntry& entry);

/// Gives run `run` (from 1) of the current study this entry; the study is changed then, unless it had it already.
void TakeEntry(ApplicationState& state, int run, const StudyRunEntry& entry);

struct Bounds {
    std::int32_t StartDist = 0;  ///< feet
    std::int32_t EndDist = 0;
    std::optional<std::int32_t> IdealSpeedUser;  ///< miles per hour, 0 for none; nothing leaves it as it is
};

/// What a run (from 1) is to get.
struct RunBounds {
    int Run = 0;
    Bounds To;
};

/// A run of the study that could not be computed: its entry is as it was.
struct RunNotComputed {
    int Run = 0;                           ///< from 1
    RunOutcome Outcome = RunOutcome::Run;  ///< of its reading; Run where the computation failed
    std::string Reason;
};

/// Gives each of those runs its boundaries and computes it.
[[nodiscard]] std::vector<RunNotComputed> SetBounds(Study& study, const std::vector<RunBounds>& runs,
                                                    const FileSystem& files, const std::string& folder,
                                                    const AppSettings& settings);
/// Gives those runs (from 1) these boundaries and computes them.
[[nodiscard]] std::vector<RunNotComputed> SetBounds(Study& study, const std::vector<int>& runs, const Bounds& bounds,
                                                    const FileSystem& files, const std::string& folder,
                                                    const AppSettings& settings);

/// What it comes to when a run is given boundaries.
struct BoundsPreview {
    int Run = 0;  ///< from 1
    StudyRunEntry Now;
    StudyRunEntry Then;                      ///< as SetBounds makes it; as it is now where that cannot be
    std::string Problem = {};                ///< why it cannot be; empty where it can
    std::vector<std::string> Warnings = {};  ///< what is the matter with the figures then; RunWarnings, BoundaryProblem
    std::string Note = {};                   ///< what is to be known of it, which is no matter; or empty
};

/// What SetBounds would make of those runs. Nothing when it was stopped.
[[nodiscard]] std::vector<BoundsPreview> PreviewBounds(const Study& study, const std::vector<RunBounds>& runs,
                                                       const FileSystem& files, const std::string& folder,
                                                       const AppSettings& settings, const Progress& progress = {});
[[nodiscard]] std::vector<BoundsPreview> PreviewBounds(const Study& study, const std::vector<int>& runs,
                                                       const Bounds& bounds, const FileSystem& files,
                                                       const std::string& folder, const AppSettings& settings,
                                                       const Progress& progress = {});

/// Computes the runs whose boundaries are set. One whose computation fails keeps its figures, which are earlier ones
/// then.
[[nodiscard]] std::vector<RunNotComputed> ComputeRuns(Study& study, const FileSystem& files, const std::string& folder,
                                                      const AppSettings& settings);

/// Counts the stop delays of the counted runs anew at the stop speed of the settings and leaves all other figures.
void ComputeStopDelays(Study& study, const std::vector<RunListRow>& rows, const AppSettings& settings);

}  // namespace vantor
