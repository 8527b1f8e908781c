#include "statistics/StudyRuns.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <map>
#include <variant>

#include "analysis/RunFacts.h"
#include "analysis/RunStatistics.h"
#include "core/RunDirection.h"
#include "core/StudyFile.h"
#include "core/Text.h"
#include "core/TwoThreads.h"

namespace vantor {
namespace {

/// The moment at which a run began: the day of its date and the time of day of its time.
double MomentOf(const MeasuredRun& run) {
    return std::floor(run.RunDate.Days) + (run.RunTime.Days - std::floor(run.RunTime.Days));
}

RunLeftOut LeftOutRun(int entry, const StudyRunEntry& of, const RunReading& reading, const AppSettings& settings) {
    const std::string name(Trim(of.EntryRunName));
    if (reading) return {entry, name, RunOutcome::Run, name + ": the run has no samples. Take it out of the study."};
    return {entry, name, reading.Outcome, FactsOf(reading, of, settings).Problem};
}

/// Runs of a study have the nodes of one street: the names of the first run of each number of nodes are those of all.
void NameNodes(std::vector<MeasuredRun>& runs, const Study& study, const FileSystem& files, const std::string& folder) {
    std::map<int, std::vector<std::string>> names;
    for (MeasuredRun& run : runs) {
        const auto [known, isNew] = names.try_emplace(run.Nodes());
        if (isNew) {
            const RunReading reading = ReadRun(files, folder, RunFileName(study.Entries[run.Entry]), RunPart::Header);
            for (int node = 0; node <= run.Nodes() + 1; ++node)
                known->second.push_back(NodeName(reading.Run.Header, node, run.Nodes() + 1));
        }
        run.NodeNames = known->second;
    }
}

}  // namespace

std::optional<double> MeasuredRun::ValueOf(Measure measure, std::optional<std::size_t> section) const {
    const PieceMeasures& piece = section ? Measures.Sections.at(*section) : Measures.Whole;
    switch (measure) {
        case Measure::TravelTime: return piece.TravelTime;
        case Measure::RunningTime: return piece.RunningTime();
        case Measure::StoppedTime: return piece.StoppedTime;
        case Measure::Stops: return piece.Stops;
        case Measure::TravelSpeed: return piece.TravelSpeed();
        case Measure::ControlDelay: break;
    }
    return IsCounted && !section ? std::optional<double>(ControlDelay) : std::nullopt;
}

MeasuredRun MeasureStudyRun(const RunReading& reading, const StudyRunEntry& entry, const AppSettings& settings,
                            const StopSpeeds& speeds) {
    const RunHeader& header = reading.Run.Header;
    MeasuredRun run;
    run.Name = Trim(entry.EntryRunName);
    run.RunDate = header.RunDate;
    run.RunTime = header.RunTime;
    run.IsBefore = header.Before != 0;
    run.HasContradictoryFlags = (header.Before != 0) == (header.After != 0);
    run.Period = Trim(entry.Period);
    run.Direction = DirectionFromLog(header.Notes);
    run.SetAside = Trim(entry.SetAside);
    run.IsCounted = HasBothBoundaries(entry);
    run.ControlDelay = entry.ControlDelay;
    run.Measures = MeasureRun(reading.Run, settings.SpeedFactor, speeds);
    run.Warnings = RunWarnings(entry, FactsOf(reading, entry, settings));
    return run;
}

namespace {

/// Reads and measures the runs of a study, of many on two threads.
class RunReader {
public:
    RunReader(const Study& study, const FileSystem& files, const std::string& folder, const AppSettings& settings,
              const RunVisitor& visit, RunPart part)
        : study_(study), files_(files), folder_(folder), settings_(settings), visit_(visit), part_(part) {}

    /// The runs in the order of the study.
    StudyRuns Read(const Progress& progress) {
        const auto count = static_cast<std::uint64_t>(study_.Record.RunCount);
        std::vector<std::variant<MeasuredRun, RunLeftOut>> results(count);
        OnTwoThreads(
            count,
            [&] { Fill(results, [&](int entry) { return progress(static_cast<std::uint64_t>(entry - 1), count); }); },
            [&] { Fill(results, [](int) { return true; }); });
        StudyRuns runs;
        runs.IsWhole = !isStopped_;
        if (isStopped_) return runs;
        for (auto& result : results)
            if (auto* const run = std::get_if<MeasuredRun>(&result))
                runs.Runs.push_back(std::move(*run));
            else
                runs.LeftOut.push_back(std::move(std::get<RunLeftOut>(result)));
        return runs;
    }

private:
    /// Each thread takes the next run that none has taken.
    template <class GoesOn>
    void Fill(std::vector<std::variant<MeasuredRun, RunLeftOut>>& results, GoesOn goesOn) {
        for (int entry = next_++; entry <= study_.Record.RunCount && !isStopped_; entry = next_++) {
            if (goesOn(entry))
                results[static_cast<std::size_t>(entry - 1)] = ReadEntry(entry);
            else
                isStopped_ = true;
        }
    }

    std::variant<MeasuredRun, RunLeftOut> ReadEntry(int number) const {
        const StudyRunEntry& entry = study_.Entries[number];
        const std::string name = RunFileName(entry);
        const RunReading reading = ReadRun(files_, folder_, name, part_);
        if (visit_) visit_(number, reading);
        if (name.empty())
            return RunLeftOut{number, {}, RunOutcome::Missing, "Entry " + std::to_string(number) + " has no run name."};
        if (!reading || reading.Run.SampleValues.IsEmpty()) return LeftOutRun(number, entry, reading, settings_);
        MeasuredRun run = MeasureStudyRun(reading, entry, settings_, study_.Options.Stops);
        run.Entry = number;
        return run;
    }

    const Study& study_;
    const FileSystem& files_;
    const std::string& folder_;
    const AppSettings& settings_;
    const RunVisitor& visit_;
    const RunPart part_;
    std::atomic<int> next_{1};
    std::atomic<bool> isStopped_{false};
};

}  // namespace

StudyRuns ReadStudyRuns(const Study& study, const FileSystem& files, const std::string& folder,
                        const AppSettings& settings, const Progress& progress, const RunVisitor& visit, RunPart part) {
    StudyRuns result = RunReader(study, files, folder, settings, visit, part).Read(progress);
    std::ranges::stable_sort(result.Runs, {}, MomentOf);
    NameNodes(result.Runs, study, files, folder);
    return result;
}

}  // namespace vantor
