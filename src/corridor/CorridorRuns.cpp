#include "corridor/CorridorRuns.h"

#include <atomic>
#include <cmath>
#include <utility>

#include "analysis/RunStatistics.h"
#include "core/ContentHash.h"
#include "core/StudyGroupFolders.h"
#include "core/TwoThreads.h"

namespace vantor {
namespace {

/// The run as statistics take it: with the nodes of the corridor that it passes and what the corridor says of it.
MeasuredRun MeasureMatched(const MatchedRun& run, const Corridor& corridor, const AppSettings& settings) {
    const CorridorRun& as = corridor.Runs[run.Index];
    RunReading flagged = *run.Read;
    FlagNodes(flagged.Run, run.Match.Nodes, run.Match.Along, corridor);
    StudyRunEntry entry;
    entry.EntryRunName = as.Name;
    entry.SetAside = as.SetAside;
    entry.Period = run.Period;
    MeasuredRun measured = MeasureStudyRun(flagged, entry, settings, corridor.Options.Stops);
    measured.Entry = static_cast<int>(run.Index) + 1;
    measured.IsBefore = as.IsBefore;
    measured.HasContradictoryFlags = false;
    measured.Direction = corridor.Of(run.Match.Along).Name;
    const int nodes = measured.Nodes();
    for (int node = 0; node <= nodes + 1; ++node)
        measured.NodeNames.push_back(NodeName(flagged.Run.Header, node, nodes + 1));
    return measured;
}

/// A stretch of a run with positions that has none: its speeds may be made up.
void RemarkMissing(const RunRecord& run, std::vector<std::string>& remarks) {
    constexpr std::int32_t Told = 5;
    std::int32_t last = 0;
    for (std::int32_t i = 1; i <= run.RunSamples.LastIndex(); ++i) {
        if (!PositionOf(run.RunSamples[i])) continue;
        if (last > 0 && i - last > Told)
            remarks.push_back("No positions from second " + std::to_string(last + 1) + " to " + std::to_string(i - 1) +
                              ": what was driven there may be made up.");
        last = i;
    }
}

std::vector<std::string> RemarksOf(const MatchedRun& run, const CorridorRun& as) {
    std::vector<std::string> remarks = run.Match.Remarks;
    const RunRecord& record = run.Read->Run;
    if (as.Movement != 0 && MovementHash(record) != as.Movement)
        remarks.push_back("Its samples have changed since it was taken into the corridor.");
    RemarkMissing(record, remarks);
    if (run.Read->IsCut())
        remarks.push_back("Its file is " + CutText(run.Read->SamplesInFile, record.Header.SampleCount) + ".");
    if ((record.Header.Before != 0) != as.IsBefore)
        remarks.push_back(std::string("It counts as ") + (as.IsBefore ? "before" : "after") +
                          " here; its own file says the other.");
    return remarks;
}

MatchedRun ReadOne(std::size_t index, const Corridor& corridor, const CorridorLine* line, const FileSystem& files,
                   const std::string& groupRoot, const AppSettings& settings) {
    const CorridorRun& as = corridor.Runs[index];
    MatchedRun run;
    run.Index = index;
    run.Read = std::make_shared<RunReading>(ReadRun(files, FolderOf(as, groupRoot), as.Name, RunPart::Whole));
    return MatchAgain(std::move(run), corridor, line, settings);
}

}  // namespace

std::string PeriodAt(const Corridor& corridor, Date time) {
    if (!IsValidDate(time)) return {};
    const CivilTime clock = CivilOf(time);
    const int minute = clock.Hour * 60 + clock.Minute;
    for (const CorridorPeriod& period : corridor.Periods) {
        const bool isIn = period.From < period.To ? minute >= period.From && minute < period.To
                                                  : minute >= period.From || minute < period.To;
        if (isIn) return period.Name;
    }
    return {};
}

std::string FolderOf(const CorridorRun& run, const std::string& groupRoot) { return GroupFolder(groupRoot, run.Group); }

MatchedRun MatchAgain(MatchedRun run, const Corridor& corridor, const CorridorLine* line, const AppSettings& settings) {
    const CorridorRun& as = corridor.Runs[run.Index];
    run.Problem.clear();
    run.Delays.clear();
    run.Remarks.clear();
    if (!*run.Read) {
        run.Problem = as.Name + ": " + run.Read->Fault->what();
    } else if (run.Read->Run.SampleValues.IsEmpty()) {
        run.Problem = as.Name + ": the run has no samples. Take it out of the corridor.";
    } else {
        run.Match = MatchRun(run.Read->Run, corridor, line, as.Along, as.SetNodes);
        run.Period = as.Period.empty() ? PeriodAt(corridor, run.Read->Run.Header.RunTime) : as.Period;
        run.Measured = MeasureMatched(run, corridor, settings);
        run.Trace = TraceOf(run.Read->Run, settings.SpeedFactor);
        run.Remarks = RemarksOf(run, as);
        DelayAgain(run, corridor, settings);
    }
    return run;
}

void DelayAgain(MatchedRun& run, const Corridor& corridor, const AppSettings& settings) {
    if (run.IsThere()) run.Delays = DelaysOf(*run.Read, corridor, corridor.Runs[run.Index], run.Match, settings);
}

MatchedRuns ReadCorridorRuns(const Corridor& corridor, const FileSystem& files, const std::string& groupRoot,
                             const AppSettings& settings, const Progress& progress) {
    const std::size_t count = corridor.Runs.size();
    const auto line = CorridorLine::Of(corridor);
    MatchedRuns matched;
    matched.Runs.resize(count);
    std::atomic<std::size_t> next{0};
    std::atomic<bool> isStopped{false};
    const auto work = [&](bool tells) {
        for (std::size_t i = next++; i < count && !isStopped; i = next++) {
            if (tells && !progress(i, count))
                isStopped = true;
            else
                matched.Runs[i] = ReadOne(i, corridor, line ? &*line : nullptr, files, groupRoot, settings);
        }
    };
    OnTwoThreads(
        count, [&] { work(true); }, [&] { work(false); });
    matched.IsWhole = !isStopped;
    if (isStopped) matched.Runs.clear();
    return matched;
}

}  // namespace vantor
