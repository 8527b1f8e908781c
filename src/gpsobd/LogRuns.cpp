#include "gpsobd/LogRuns.h"

#include <algorithm>
#include <limits>
#include <optional>

#include "core/Backup.h"
#include "core/Numeric.h"
#include "core/Paths.h"
#include "core/RunDecoding.h"
#include "core/RunFile.h"
#include "core/RunTimeError.h"
#include "core/modMain.h"
#include "gpsobd/LogPoints.h"

namespace vantor {
namespace {

constexpr std::int64_t MostSeconds = std::numeric_limits<std::int16_t>::max();
constexpr std::int16_t FeetPer1000Pulses = 1000;
constexpr std::int16_t LargestDelayNumber = 127;

/// What the points of a second say.
struct Second {
    const RunPoint* Last = nullptr;
    std::int16_t Node = 0;
    std::int16_t DelayNumber = 0;
};

void AddPoint(const RunPoint& point, Second& second) {
    second.Last = &point;
    if (point.Node > 0) second.Node = point.Node;
    if (point.DelayNumber >= 1 && point.DelayNumber <= LargestDelayNumber) second.DelayNumber = point.DelayNumber;
}

std::vector<std::optional<double>> LoggedSpeeds(const std::vector<Second>& seconds) {
    std::vector<std::optional<double>> speeds(seconds.size());
    for (std::size_t i = 0; i < seconds.size(); ++i)
        if (const RunPoint* point = seconds[i].Last; point != nullptr && HasSpeed(*point))
            speeds[i] = static_cast<double>(point->Speed);
    return speeds;
}

/// The seconds inside each gap that is not left to the speeds beside it get a speed.
void FillGaps(std::span<const LogGap> gaps, std::int64_t first, std::vector<std::optional<double>>& speeds) {
    for (const LogGap& gap : gaps) {
        const std::optional<double> speed = MilesPerHourIn(gap);
        if (!speed) continue;
        const std::int64_t end = std::min(gap.To - first, static_cast<std::int64_t>(speeds.size()));
        for (std::int64_t at = std::max<std::int64_t>(gap.From + 1 - first, 0); at < end; ++at)
            speeds[static_cast<std::size_t>(at)] = *speed;
    }
}

/// Each speed that is missing becomes one on the line between its neighbours, the nearest one where it has only one,
/// 0 where it has none.
std::vector<double> Interpolated(const std::vector<std::optional<double>>& speeds) {
    std::vector<double> filled(speeds.size());
    std::optional<std::size_t> previous;
    for (std::size_t i = 0; i < speeds.size(); ++i) {
        if (!speeds[i]) {
            if (previous) filled[i] = filled[*previous];
            continue;
        }
        const double next = *speeds[i];
        const std::size_t gap = previous ? *previous + 1 : 0;
        const double before = previous ? filled[*previous] : next;
        for (std::size_t k = gap; k < i; ++k)
            filled[k] = before + (next - before) * static_cast<double>(k + 1 - gap) / static_cast<double>(i + 1 - gap);
        filled[i] = next;
        previous = i;
    }
    return filled;
}

std::int16_t SampleValueOf(const Second& second, double speed, float speedFactor) {
    constexpr double mostPulses = 255;
    const std::int32_t pulses = Round32(std::clamp(speed / static_cast<double>(speedFactor), 0.0, mostPulses));
    if (second.Node > 0) return static_cast<std::int16_t>(static_cast<std::uint16_t>(pulses) | NodeFlag);
    return To16(pulses + 256 * second.DelayNumber);
}

/// Nodes that have a name in the log get it; without one a node is shown by its number in the run.
void NameNodes(const NodeNames& names, const std::vector<Second>& seconds, RunHeader& header) {
    int node = 0;
    for (const Second& second : seconds) {
        if (second.Node <= 0 || ++node > decltype(header.SectionName)::LastIndex) continue;
        const auto name = names.find(second.Node);
        if (name != names.end() && name->second != "Node " + std::to_string(node))
            header.SectionName[node] = name->second;
    }
}

RunSample EventRecordOf(const RunPoint& point) {
    RunSample sample;
    sample.Latitude = point.Latitude;
    sample.Longitude = point.Longitude;
    sample.Heading = point.Heading;
    sample.FixQuality = point.FixQuality;
    sample.HDOP = point.HDOP;
    sample.SatUsed = point.SatUsed;
    sample.Speed = point.Speed;
    sample.DateTime = DateOfSeconds(point.Second);
    sample.Node = point.Node;
    sample.DelayNumber = point.DelayNumber;
    sample.Direction = point.Direction;
    return sample;
}

std::string DirectionIn(RunPoints points) {
    for (const RunPoint& point : points)
        if (const std::string direction = DirectionText(point.Direction); !direction.empty())
            return std::string(DirectionNote) + direction;
    return {};
}

std::string NotesOf(RunPoints points, std::span<const LogGap> gaps) {
    const std::string direction = DirectionIn(points);
    const std::string note = GapNote(gaps);
    return direction.empty() || note.empty() ? direction + note : direction + "; " + note;
}

/// The seconds from the first to the last point of a run.
struct TimeSpan {
    std::int64_t First = 0;
    std::int64_t Last = 0;

    std::int64_t Seconds() const { return Last - First + 1; }
};

TimeSpan TimeSpanOf(RunPoints points) {
    const auto [first, last] = std::ranges::minmax_element(points, {}, &RunPoint::Second);
    return {first->Second, last->Second};
}

/// Why the run of a number cannot be made; nothing for one that can.
std::optional<std::string> TooLongText(std::int16_t number, const TimeSpan& time) {
    if (time.Seconds() <= MostSeconds) return std::nullopt;
    return "Run " + std::to_string(number) + " goes from " + IsoDateTime(DateOfSeconds(time.First)) + " to " +
           IsoDateTime(DateOfSeconds(time.Last)) + "; a run holds at most 32767 seconds.";
}

/// The seconds of a run from its first to its last.
struct RunSeconds {
    std::int64_t First = 0;
    std::vector<Second> Seconds;
};

RunSeconds SecondsOfRun(RunPoints points) {
    const TimeSpan time = TimeSpanOf(points);
    if (const auto problem = TooLongText(points.front().RunNumber, time))
        throw RunTimeError(ErrorNumber::Overflow, *problem);
    RunSeconds run{time.First, std::vector<Second>(static_cast<std::size_t>(time.Seconds()))};
    for (const RunPoint& point : points)
        AddPoint(point, run.Seconds[static_cast<std::size_t>(point.Second - run.First)]);
    return run;
}

/// The names that the file of a run can have, of characters that the name of a file can hold.
class RunFileNames {
public:
    RunFileNames(const LogHead& log, std::int16_t number)
        : first_(WithSafeCharacters(BaseName(log) + "-R" + ZeroPadded(number, 3))) {
        // Two dots in a row would be taken for a way out of the folder.
        for (std::size_t at = first_.find(".."); at != std::string::npos; at = first_.find(".."))
            first_.replace(at, 2, "__");
    }
    /// "Log-R001", then "Log-R001-1", "Log-R001-2".
    std::string operator[](int index) const { return index == 0 ? first_ : first_ + "-" + std::to_string(index); }

private:
    std::string first_;
};

bool Exists(const FileSystem& files, const std::string& folder, const std::string& name) {
    return FileExists(files, folder + name + RunExtension);
}

std::string FreeName(const FileSystem& files, const std::string& folder, const RunFileNames& names) {
    int i = 0;
    while (Exists(files, folder, names[i])) ++i;
    return names[i];
}

bool IsOfTime(const RunReading& reading, const TimeSpan& time) {
    if (!reading) return false;
    const RunHeader& header = reading.Run.Header;
    const std::int64_t start = WholeSecondsOf({header.RunDate.Days + header.RunTime.Days});
    return start <= time.Last && start + header.SampleCount > time.First;
}

}  // namespace

RunRecord MakeRun(const LogHead& log, RunPoints points, std::span<const LogGap> gaps, const AppSettings& settings) {
    if (settings.SpeedFactor == 0.0F)
        throw RunTimeError(ErrorNumber::DivisionByZero, "The speed factor of the settings is 0.");
    const RunSeconds run = SecondsOfRun(points);
    const Date start = DateOfSeconds(run.First);

    RunRecord record;
    RunHeader& header = record.Header;
    header.RunDate = ShownDay(start);
    header.RunTime = ShownClock(start);
    header.RunNumber = points.front().RunNumber;
    header.SiteCode = StudyName(log);
    gaps = GapsOfRun(gaps, header.RunNumber);
    header.Notes = NotesOf(points, gaps);
    header.CalConstant = FeetPer1000Pulses;
    header.SampleCount = static_cast<std::int32_t>(run.Seconds.size());
    record.SampleValues.ResizeTo(header.SampleCount);
    record.RunSamples.ResizeTo(header.SampleCount);
    std::vector<std::optional<double>> logged = LoggedSpeeds(run.Seconds);
    FillGaps(gaps, run.First, logged);
    const std::vector<double> speeds = Interpolated(logged);
    for (int i = 1; i <= header.SampleCount; ++i) {
        const auto at = static_cast<std::size_t>(i - 1);
        const Second& second = run.Seconds[at];
        record.SampleValues[i] = SampleValueOf(second, speeds[at], settings.SpeedFactor);
        if (second.Last != nullptr) record.RunSamples[i] = EventRecordOf(*second.Last);
    }
    DecodeNewRun(record);
    NameNodes(log.Nodes, run.Seconds, header);
    return record;
}

std::vector<std::string> RunsTooLong(const RunsOfLog& log) {
    std::vector<std::string> problems;
    for (const RunPoints points : RunsAmong(log.Points))
        if (const auto problem = TooLongText(points.front().RunNumber, TimeSpanOf(points)))
            problems.push_back(*problem);
    return problems;
}

NamesOfRuns RunsMadeBefore(const FileSystem& files, const RunsOfLog& log, const std::string& folder) {
    const std::string there = AsFolder(folder);
    NamesOfRuns found;
    for (const RunPoints points : RunsAmong(log.Points)) {
        const std::int16_t number = points.front().RunNumber;
        const RunFileNames names(log.Head, number);
        const TimeSpan time = TimeSpanOf(points);
        for (int i = 0; Exists(files, there, names[i]) && !found.contains(number); ++i)
            if (IsOfTime(ReadRun(files, there, names[i], RunPart::Header), time)) found[number] = names[i];
    }
    return found;
}

std::optional<LogRunsWritten> WriteLogRuns(FileSystem& files, const RunsOfLog& log, std::span<const LogGap> gaps,
                                           const std::string& folder, const AppSettings& settings,
                                           const NamesOfRuns& replaced, const Progress& progress) {
    constexpr double partOfMaking = 0.7;
    const Progress making = progress.Part(0, partOfMaking);
    const std::string there = AsFolder(folder);
    const auto batch = files.BeginWrites();
    LogRunsWritten written;
    const std::vector<RunPoints> runs = RunsAmong(log.Points);
    std::uint64_t done = 0;
    for (const RunPoints points : runs) {
        const std::int16_t number = points.front().RunNumber;
        if (!making(done++, runs.size())) return std::nullopt;
        if (const auto problem = TooLongText(number, TimeSpanOf(points))) {
            written.LeftOut.push_back(*problem);
            continue;
        }
        RunRecord run = MakeRun(log.Head, points, gaps, settings);
        const auto before = replaced.find(number);
        const bool replaces = before != replaced.end();
        const std::string name = replaces ? before->second : FreeName(files, there, RunFileNames(log.Head, number));
        written.Names.push_back(name);
        const std::string path = there + name + RunExtension;
        const std::vector<std::byte> bytes = RunBytes(run, name);
        if (replaces && AsItStands(files, path).File == StampOf(bytes)) continue;
        const Expected expected = replaces ? AddBackup(*batch, files, path).Original : Expected::Nothing();
        AddRunBytes(*batch, bytes, there, name, expected);
    }
    if (!batch->Commit(progress.Part(partOfMaking, 1))) return std::nullopt;
    return written;
}

}  // namespace vantor
