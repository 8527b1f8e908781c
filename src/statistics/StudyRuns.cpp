#include "statistics/StudyRuns.h"

#include <algorithm>
#include <cmath>
#include <map>

#include "analysis/RunFacts.h"
#include "analysis/RunStatistics.h"
#include "core/Paths.h"
#include "core/StudyFile.h"
#include "core/Text.h"

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
    run.SetAside = Trim(entry.SetAside);
    run.IsCounted = HasBothBoundaries(entry);
    run.ControlDelay = entry.ControlDelay;
    run.Measures = MeasureRun(reading.Run, settings.SpeedFactor, speeds);
    run.Warnings = RunWarnings(entry, FactsOf(reading, entry, settings));
    return run;
}

StudyRuns ReadStudyRuns(const Study& study, const FileSystem& files, const std::string& folder,
                        const AppSettings& settings, const Progress& progress, const RunVisitor& visit) {
    StudyRuns result;
    const auto count = static_cast<std::uint64_t>(study.Record.RunCount);
    result.Runs.reserve(count);
    for (int i = 1; i <= study.Record.RunCount; ++i) {
        if (!progress(static_cast<std::uint64_t>(i - 1), count)) {
            result.IsWhole = false;
            break;
        }
        const StudyRunEntry& entry = study.Entries[i];
        const std::string name = RunFileName(entry);
        if (name.empty()) {
            result.LeftOut.push_back({i, {}, RunOutcome::Missing, "Entry " + std::to_string(i) + " has no run name."});
            continue;
        }
        const RunReading reading = ReadRun(files, folder, name, RunPart::Values);
        if (!reading || reading.Run.SampleValues.IsEmpty()) {
            result.LeftOut.push_back(LeftOutRun(i, entry, reading, settings));
            continue;
        }
        result.Runs.push_back(MeasureStudyRun(reading, entry, settings, study.Options.Stops));
        result.Runs.back().Entry = i;
        if (visit) visit(i, reading.Run);
    }
    std::ranges::stable_sort(result.Runs, {}, MomentOf);
    NameNodes(result.Runs, study, files, folder);
    return result;
}

Study StudyOfFolder(const FileSystem& files, const std::string& folder) {
    Study study;
    std::vector<std::string> names;
    for (const FileInfo& file : FilesWithExtension(files, folder, RunExtension)) names.push_back(BaseName(file.Name));
    std::ranges::sort(names);
    for (const std::string& name : names) AppendRun(study, name);
    return study;
}

}  // namespace vantor
