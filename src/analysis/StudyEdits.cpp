#include "analysis/StudyEdits.h"

#include "core/ContentHash.h"
#include "core/RunFile.h"
#include "core/StudyFile.h"

namespace vantor {
namespace {

Computation ComputationOf(const RunRecord& run, const StudyRunEntry& entry) {
    return {MovementHash(run), entry.CDStartDist, entry.CDEndDist, entry.IdealSpeedUser, {}};
}

/// Nothing when the run was computed from the boundaries of `wanted`; else the reason, with the entry as it was.
std::optional<RunNotComputed> Compute(const StudyRunEntry& wanted, Study& study, int run, const FileSystem& files,
                                      const std::string& folder, const AppSettings& settings) {
    StudyRunEntry& entry = study.Entries[run];
    const std::string name = RunFileName(entry);
    const RunReading reading = ReadRun(files, folder, name, RunPart::Whole);
    if (reading.Outcome == RunOutcome::Missing) return RunNotComputed{run, reading.Outcome, MissingRunText(name)};
    if (!reading) return RunNotComputed{run, reading.Outcome, name + ": " + reading.Fault->Message()};
    StudyRunEntry computed = wanted;
    try {
        PlotState plot = PlacedBoundaries(reading.Run, computed);
        ComputeEntry(reading.Run, settings, plot, computed);
        entry = std::move(computed);
        return std::nullopt;
    } catch (const RunTimeError& error) {
        // Boundaries that are refused leave figures that still belong to the old ones.
        if (HasSameBoundaries(wanted, entry)) entry.Computed = computed.Computed;
        return RunNotComputed{run, RunOutcome::Run, name + ": " + error.Message()};
    }
}

}  // namespace

void TakeEntry(ApplicationState& state, int run, const StudyRunEntry& entry) {
    StudyRunEntry& taken = state.CurrentStudy.Entries[run];
    if (taken == entry) return;
    taken = entry;
    state.StudyUnchanged = false;
}

float ComputeEntry(const RunRecord& run, const AppSettings& settings, PlotState& plot, StudyRunEntry& entry) {
    try {
        const float idealSpeed = ComputeRunDelay(run, settings, plot, entry);
        entry.Computed = ComputationOf(run, entry);
        entry.StopDelayThreshold = settings.StopSpeedThreshold;
        return idealSpeed;
    } catch (const RunTimeError& error) {
        // The stop delay is counted before anything of the control delay can fail.
        entry.StopDelayThreshold = settings.StopSpeedThreshold;
        if (!entry.Computed) entry.Computed = ComputationOf(run, entry);
        entry.Computed->Failure = error.what();
        throw;
    }
}

std::vector<RunNotComputed> SetBounds(Study& study, const std::vector<int>& runs, const Bounds& bounds,
                                      const FileSystem& files, const std::string& folder, const AppSettings& settings) {
    std::vector<RunNotComputed> failed;
    for (const int run : runs) {
        StudyRunEntry wanted = study.Entries[run];
        wanted.CDStartDist = bounds.StartDist;
        wanted.CDEndDist = bounds.EndDist;
        wanted.IdealSpeedUser = bounds.IdealSpeedUser.value_or(wanted.IdealSpeedUser);
        if (auto problem = Compute(wanted, study, run, files, folder, settings)) failed.push_back(std::move(*problem));
    }
    return failed;
}

std::vector<RunNotComputed> ComputeRuns(Study& study, const FileSystem& files, const std::string& folder,
                                        const AppSettings& settings) {
    std::vector<RunNotComputed> failed;
    for (int run = 1; run <= study.Record.RunCount; ++run) {
        const StudyRunEntry entry = study.Entries[run];
        if (!HasBothBoundaries(entry)) continue;
        if (auto problem = Compute(entry, study, run, files, folder, settings)) failed.push_back(std::move(*problem));
    }
    return failed;
}

void ComputeStopDelays(Study& study, const std::vector<RunListRow>& rows, const AppSettings& settings) {
    for (int run = 1; run <= study.Record.RunCount; ++run) {
        const RunListRow& row = rows[static_cast<std::size_t>(run - 1)];
        if (row.State != RunState::Counted) continue;
        study.Entries[run].StopDelay = row.Facts.Found.StopDelay;
        study.Entries[run].StopDelayThreshold = settings.StopSpeedThreshold;
    }
}

}  // namespace vantor
