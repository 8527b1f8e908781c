#include "statistics/GroupStatistics.h"

#include <algorithm>
#include <cmath>
#include <set>

#include "core/Counted.h"
#include "core/Text.h"
#include "core/Units.h"

namespace vantor {
namespace {

constexpr std::array<MeasureKind, AllMeasures.size()> Kinds = {
    MeasureKind{"travel_time", "Travel time", FigureUnit::Seconds},
    {"running_time", "Running time", FigureUnit::Seconds},
    {"stopped_time", "Stopped time", FigureUnit::Seconds},
    {"stops", "Stops", FigureUnit::None},
    {"travel_speed", "Mean run speed", FigureUnit::MilesPerHour},
    {"control_delay", "Control delay", FigureUnit::Seconds},
};

/// Runs that began further apart than that in the day are hardly of one condition, hours.
constexpr double OneTimeOfDay = 3;

double ClockOf(Date time) { return time.Days - std::floor(time.Days); }

std::string TimesText(const Basis& basis) {
    if (!basis.FirstTime || !basis.LastTime) return {};
    const std::string first = ShortTime(*basis.FirstTime);
    const std::string last = ShortTime(*basis.LastTime);
    return first == last ? first : first + " to " + last;
}

void Note(std::vector<std::string>& different, const std::string& text) {
    if (!text.empty() && std::ranges::find(different, text) == different.end()) different.push_back(text);
}

Basis BasisOf(const ChosenRuns& runs) {
    Basis basis;
    basis.Runs = static_cast<int>(runs.size());
    std::set<double> days;
    for (const MeasuredRun* run : runs) {
        if (IsValidDate(run->RunDate)) days.insert(std::floor(run->RunDate.Days));
        Note(basis.Periods, run->Period);
        Note(basis.Directions, run->Direction);
        if (!IsValidDate(run->RunTime)) continue;
        const Date clock{ClockOf(run->RunTime)};
        if (!basis.FirstTime || clock.Days < basis.FirstTime->Days) basis.FirstTime = clock;
        if (!basis.LastTime || clock.Days > basis.LastTime->Days) basis.LastTime = clock;
    }
    basis.Days = static_cast<int>(days.size());
    return basis;
}

std::vector<std::string> WarningsOf(const GroupStatistics& group) {
    std::vector<std::string> warnings;
    if (group.N == 1) warnings.emplace_back("one run: no scatter, no interval");
    if (group.N >= 2 && group.N < FewRuns) warnings.emplace_back("few runs");
    const Basis& basis = group.RestsOn;
    if (basis.Directions.size() > 1) warnings.push_back("directions mixed: " + Joined(basis.Directions, ", "));
    if (basis.Periods.size() > 1)
        warnings.push_back("periods mixed: " + Joined(basis.Periods, ", "));
    else if (basis.Periods.empty() && basis.FirstTime &&
             (basis.LastTime->Days - basis.FirstTime->Days) * 24 > OneTimeOfDay)
        warnings.push_back("times of day mixed: " + TimesText(basis));
    return warnings;
}

void Summarise(GroupStatistics& group, const ChosenRuns& runs, std::optional<std::size_t> section,
               const StatisticsOptions& options) {
    for (const Measure measure : AllMeasures) {
        group.Of[measure] = vantor::Summarise(ValuesOf(runs, measure, section), options.Confidence);
        const PermittedError error = ErrorOf(measure, options);
        // An error in seconds is none of a number of stops.
        if (measure != Measure::Stops || error.Of == PermittedError::Kind::Percent)
            group.Needed[measure] = RunsNeededFor(group.Of[measure], error, options.Confidence);
    }
}

void SumUp(GroupStatistics& group, const ChosenRuns& runs, std::optional<std::size_t> section) {
    double feet = 0;
    double seconds = 0;
    double stopped = 0;
    double stops = 0;
    for (const MeasuredRun* run : runs) {
        const PieceMeasures& piece = section ? run->Measures.Sections.at(*section) : run->Measures.Whole;
        feet += piece.Distance;
        seconds += piece.TravelTime;
        stopped += piece.StoppedTime;
        stops += piece.Stops;
    }
    group.AverageTravelSpeed = SpeedOf(feet, seconds);
    group.AverageRunningSpeed = SpeedOf(feet, seconds - stopped);
    if (seconds > 0) group.PercentStopped = 100 * stopped / seconds;
    if (feet > 0) group.StopsPerMile = stops / (feet / FeetPerMile);
    if (!runs.empty()) group.MeanLength = feet / static_cast<double>(runs.size());
    const Summary& times = group.Of[Measure::TravelTime];
    if (!times.Low || *times.Low <= 0) return;
    group.SpeedLow = SpeedOf(*group.MeanLength, *times.High);
    group.SpeedHigh = SpeedOf(*group.MeanLength, *times.Low);
}

}  // namespace

const MeasureKind& KindOf(Measure measure) { return Kinds[static_cast<std::size_t>(measure)]; }

std::string Basis::Text() const {
    std::string text = Counted(Runs, "run");
    if (Days > 0) text += ", " + Counted(Days, "day");
    if (const std::string times = TimesText(*this); !times.empty()) text += ", " + times;
    return text;
}

std::vector<double> ValuesOf(const ChosenRuns& runs, Measure measure, std::optional<std::size_t> section) {
    std::vector<double> values;
    values.reserve(runs.size());
    for (const MeasuredRun* run : runs)
        if (const auto value = run->ValueOf(measure, section)) values.push_back(*value);
    return values;
}

PermittedError ErrorOf(Measure measure, const StatisticsOptions& options) {
    if (measure == Measure::TravelSpeed) return {PermittedError::Kind::Absolute, options.SpeedError};
    return options.Error;
}

GroupStatistics GroupOver(const ChosenRuns& runs, std::optional<std::size_t> section,
                          const StatisticsOptions& options) {
    GroupStatistics group;
    group.N = static_cast<int>(runs.size());
    Summarise(group, runs, section, options);
    SumUp(group, runs, section);
    const auto times = ValuesOf(runs, Measure::TravelTime, section);
    group.Times = ReliabilityOf(times, FreeFlowTime(group.MeanLength, options.FreeFlowSpeed));
    group.MedianTime = IntervalOfMedian(times, options.Confidence);
    group.Outlier = Grubbs(times, options.Confidence);
    if (group.Outlier) group.FarthestRun = runs[group.Outlier->Index]->Name;
    group.RestsOn = BasisOf(runs);
    group.Warnings = WarningsOf(group);
    return group;
}

ByMeasure<Comparison> CompareGroups(const ChosenRuns& before, const ChosenRuns& after,
                                    std::optional<std::size_t> section, const StatisticsOptions& options) {
    ByMeasure<Comparison> compared;
    for (const Measure measure : AllMeasures)
        compared[measure] =
            Compare(ValuesOf(before, measure, section), ValuesOf(after, measure, section), options.Confidence);
    return compared;
}

std::vector<std::string> Unlike(const GroupStatistics& before, const GroupStatistics& after) {
    const Basis& left = before.RestsOn;
    const Basis& right = after.RestsOn;
    std::vector<std::string> warnings;
    const auto differ = [](const auto& some, const auto& other) {
        return !some.empty() && !other.empty() && !std::ranges::is_permutation(some, other);
    };
    const auto warn = [&](const std::string& what, const std::string& first, const std::string& second,
                          const char* same) {
        warnings.push_back("The " + what + " differ: " + first + " before, " + second +
                           " after. Compare runs of the same " + same + ".");
    };
    if (differ(left.Directions, right.Directions))
        warn("directions", Joined(left.Directions, " and "), Joined(right.Directions, " and "), "direction");
    if (!left.Periods.empty() && !right.Periods.empty()) {
        if (differ(left.Periods, right.Periods))
            warn("periods", Joined(left.Periods, ", "), Joined(right.Periods, ", "), "time of day");
    } else if (left.FirstTime && right.FirstTime &&
               (left.FirstTime->Days > right.LastTime->Days || right.FirstTime->Days > left.LastTime->Days)) {
        warn("times of day", TimesText(left), TimesText(right), "time of day");
    }
    return warnings;
}

}  // namespace vantor
