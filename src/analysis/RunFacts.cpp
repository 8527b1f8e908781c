#include "analysis/RunFacts.h"

#include "core/ContentHash.h"
#include "core/StudyFile.h"
#include "core/Text.h"

namespace vantor {
namespace {

/// Outside of these an ideal speed is no speed of a street, miles per hour.
constexpr std::int32_t LeastIdealSpeed = 10;
constexpr std::int32_t MostIdealSpeed = 80;

/// The place of a fault is the file, then what is known of it on lines of their own.
std::string ReasonThenPlace(const RunTimeError& fault) {
    const std::string& place = fault.Place();
    const std::size_t end = place.find('\n');
    if (end == std::string::npos) return ErrorText(fault.Number()) + "\n" + place;
    return place.substr(end + 1) + "\n" + place.substr(0, end);
}

std::string ProblemOf(const RunReading& reading, const std::string& name) {
    if (reading.Outcome == RunOutcome::Missing)
        return MissingRunText(name) + ". Copy the file back into the Study Group, or delete the run from the list.";
    return reading.Fault ? ReasonThenPlace(*reading.Fault) : std::string();
}

void AddBoundaryWarnings(const StudyRunEntry& entry, const RunFacts& facts, std::vector<std::string>& warnings) {
    if (!facts.Found.Start) warnings.emplace_back("start not reached");
    if (!facts.Found.End) warnings.emplace_back("end not reached");
    if (entry.CDEndDist <= entry.CDStartDist) warnings.emplace_back("end before start");
}

void AddFigureWarnings(const StudyRunEntry& entry, const RunFacts& facts, std::vector<std::string>& warnings) {
    const bool wasComputed = !Trim(entry.LOSGrade).empty();
    if (!wasComputed)
        warnings.emplace_back("not computed");
    else if (entry.Computed && !entry.Computed->Failure.empty())
        warnings.emplace_back("not computed: the figure is an earlier one");
    else if (entry.Computed && !HasSameBoundaries(*entry.Computed, entry))
        warnings.emplace_back("boundary moved without a computation");
    if (entry.Computed && entry.Computed->Movement != facts.Movement)
        warnings.emplace_back("run changed since it was computed");
    if (!wasComputed) return;
    if (entry.ControlDelay < 0) warnings.emplace_back(NegativeDelayWarning);
    const std::int32_t ideal = entry.IdealSpeedUser != 0 ? entry.IdealSpeedUser : entry.IdealSpeedCalc;
    if (ideal < LeastIdealSpeed) warnings.emplace_back("ideal speed below 10 mph");
    if (ideal > MostIdealSpeed) warnings.emplace_back("ideal speed above 80 mph");
}

}  // namespace

RunFacts FactsOf(const RunReading& reading, const StudyRunEntry& entry, const AppSettings& settings) {
    RunFacts facts;
    facts.Outcome = reading.Outcome;
    facts.Problem = ProblemOf(reading, RunFileName(entry));
    if (!reading) return facts;
    const RunHeader& header = reading.Run.Header;
    facts.Problem.clear();
    facts.RunDate = header.RunDate;
    facts.RunTime = header.RunTime;
    facts.RunTypeFlag = header.HeaderWord1;
    facts.Before = header.Before;
    facts.SampleCount = header.SampleCount;
    facts.SamplesInFile = reading.SamplesInFile;
    facts.Movement = MovementHash(reading.Run);
    if (!reading.Run.SampleValues.IsEmpty()) facts.Found = FindBoundaries(reading.Run, {}, entry, settings);
    return facts;
}

RunFacts ReadRunFacts(const FileSystem& files, const std::string& folder, const StudyRunEntry& entry,
                      const AppSettings& settings) {
    const std::string name = RunFileName(entry);
    if (!name.empty()) return FactsOf(ReadRun(files, folder, name, RunPart::Values), entry, settings);
    // A study file that was cut short may have thousands of these.
    RunFacts facts;
    facts.Problem = "This entry of the study has no run name.";
    return facts;
}

std::optional<PartBetween> BetweenBoundaries(const StudyRunEntry& entry, const RunFacts& facts) {
    if (!HasBothBoundaries(entry) || !facts.Found.Start || !facts.Found.End) return std::nullopt;
    if (entry.CDEndDist < entry.CDStartDist) return std::nullopt;
    return PartBetween{static_cast<double>(entry.CDEndDist) - entry.CDStartDist, *facts.Found.End - *facts.Found.Start};
}

std::vector<std::string> RunWarnings(const StudyRunEntry& entry, const RunFacts& facts) {
    std::vector<std::string> warnings;
    if (!facts.IsRun()) return warnings;
    if (HasBothBoundaries(entry)) {
        AddBoundaryWarnings(entry, facts, warnings);
        AddFigureWarnings(entry, facts, warnings);
    }
    if (facts.SamplesInFile < facts.SampleCount) warnings.push_back(CutText(facts.SamplesInFile, facts.SampleCount));
    return warnings;
}

std::string BoundaryProblem(const RunRecord& run, const PlotState& plot, const StudyRunEntry& entry) {
    if (!HasBothBoundaries(entry) || run.Header.SampleCount < 1) return {};
    const bool inTime = plot.Axis == BoundaryAxis::Time;
    const std::int32_t start = inTime ? plot.CDStartSample : entry.CDStartDist;
    const std::int32_t end = inTime ? plot.CDEndSample : entry.CDEndDist;
    if (end < start) return "The end boundary lies before the start boundary.";
    const FoundBoundaries found = FindBoundaries(run, plot, entry);
    if (!found.Start) return "The run does not come to the start boundary: it lies in the last second or beyond.";
    if (!found.End) return "The run does not come to the end boundary: it lies in the last second or beyond.";
    if (*found.Start == *found.End) return "Both boundaries lie in the same second of the run.";
    return {};
}

}  // namespace vantor
