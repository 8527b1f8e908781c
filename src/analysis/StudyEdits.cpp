#include "analysis/StudyEdits.h"

#include "core/ContentHash.h"
#include "core/RunFile.h"
#include "core/StudyFile.h"

namespace vantor {
namespace {

Computation ComputationOf(const RunRecord& run, const StudyRunEntry& entry) {
    return {MovementHash(run), entry.CDStartDist, entry.CDEndDist, entry.IdealSpeedUser, {}};
}

std::vector<RunBounds> ForEach(const std::vector<int>& runs, const Bounds& bounds) {
    std::vector<RunBounds> each;
    each.reserve(runs.size());
    for (const int run : runs) each.push_back({run, bounds});
    return each;
}

StudyRunEntry WithBounds(StudyRunEntry entry, const Bounds& bounds) {
    entry.CDStartDist = bounds.StartDist;
    entry.CDEndDist = bounds.EndDist;
    entry.IdealSpeedUser = bounds.IdealSpeedUser.value_or(entry.IdealSpeedUser);
    return entry;
}

/// Nothing when the run was computed from the boundaries of `wanted`; else the reason, with the entry as it was.
std::optional<RunNotComputed> Compute(const StudyRunEntry& wanted, StudyRunEntry& entry, int run,
                                      const RunReading& reading, const AppSettings& settings) {
    const std::string name = RunFileName(entry);
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
    return SetBounds(study, ForEach(runs, bounds), files, folder, settings);
}

std::vector<RunNotComputed> SetBounds(Study& study, const std::vector<RunBounds>& runs, const FileSystem& files,
                                      const std::string& folder, const AppSettings& settings) {
    std::vector<RunNotComputed> failed;
    for (const auto& [run, bounds] : runs) {
        StudyRunEntry& entry = study.Entries[run];
        const RunReading reading = ReadRun(files, folder, RunFileName(entry), RunPart::Whole);
        if (auto problem = Compute(WithBounds(entry, bounds), entry, run, reading, settings))
            failed.push_back(std::move(*problem));
    }
    return failed;
}

std::vector<BoundsPreview> PreviewBounds(const Study& study, const std::vector<int>& runs, const Bounds& bounds,
                                         const FileSystem& files, const std::string& folder,
                                         const AppSettings& settings, const Progress& progress) {
    return PreviewBounds(study, ForEach(runs, bounds), files, folder, settings, progress);
}

std::vector<BoundsPreview> PreviewBounds(const Study& study, const std::vector<RunBounds>& runs,
                                         const FileSystem& files, const std::string& folder,
                                         const AppSettings& settings, const Progress& progress) {
    std::vector<BoundsPreview> previews;
    for (const auto& [run, bounds] : runs) {
        if (!progress(previews.size(), runs.size())) return {};
        BoundsPreview& preview = previews.emplace_back(BoundsPreview{run, study.Entries[run], study.Entries[run]});
        const RunReading reading = ReadRun(files, folder, RunFileName(preview.Now), RunPart::Whole);
        if (const auto problem = Compute(WithBounds(preview.Now, bounds), preview.Then, run, reading, settings)) {
            preview.Problem = problem->Reason;
            preview.Then = preview.Now;
            continue;
        }
        const RunFacts facts = FactsOf(reading, preview.Then, settings);
        preview.Warnings = RunWarnings(preview.Then, facts);
        if (facts.Found.Start && facts.Found.Start == facts.Found.End)
            preview.Warnings.push_back(BoundaryProblem(reading.Run, {}, preview.Then));
    }
    return previews;
}

std::vector<RunNotComputed> ComputeRuns(Study& study, const FileSystem& files, const std::string& folder,
                                        const AppSettings& settings) {
    std::vector<RunNotComputed> failed;
    for (int run = 1; run <= study.Record.RunCount; ++run) {
        StudyRunEntry& entry = study.Entries[run];
        if (!HasBothBoundaries(entry)) continue;
        const RunReading reading = ReadRun(files, folder, RunFileName(entry), RunPart::Whole);
        if (auto problem = Compute(StudyRunEntry(entry), entry, run, reading, settings))
            failed.push_back(std::move(*problem));
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
