#include "statistics/Figure.h"

#include <cmath>

#include "core/Numeric.h"
#include "core/Text.h"

namespace vantor {
namespace {

constexpr const char* PlusMinus = " ± ";

double Shown(double value, FigureUnit unit, const Units& units) {
    switch (unit) {
        case FigureUnit::MilesPerHour: return units.SpeedOfMph(value);
        case FigureUnit::Feet: return units.LengthOfFeet(value);
        case FigureUnit::PerMile: return units.Metric ? value / KilometresPerMile : value;
        case FigureUnit::None:
        case FigureUnit::Seconds:
        case FigureUnit::Percent: break;
    }
    return value;
}

std::string WithUnit(const std::string& number, FigureUnit unit, const Units& units) {
    const std::string label = UnitLabel(unit, units);
    return label.empty() ? number : number + " " + label;
}

/// A figure of a group, without its value.
Figure FigureOf(std::string name, FigureUnit unit, int decimals, const GroupStatistics& group,
                const StatisticsOptions& options) {
    Figure figure;
    figure.Name = std::move(name);
    figure.Unit = unit;
    figure.Decimals = decimals;
    figure.N = group.N;
    figure.Confidence = options.Confidence;
    figure.RestsOn = group.RestsOn.Text();
    return figure;
}

std::string StopCondition(const StopSpeeds& speeds, const Units& units) {
    return "stopped below " + ShownNumber(speeds.Stop, FigureUnit::MilesPerHour, 1, units) + ", until " +
           WithUnit(ShownNumber(speeds.Go, FigureUnit::MilesPerHour, 1, units), FigureUnit::MilesPerHour, units);
}

Figure Weak(Figure figure, int least) {
    if (figure.N >= least) return figure;
    figure.IsWeak = true;
    figure.Warnings.push_back("fewer than " + std::to_string(least) + " runs");
    return figure;
}

}  // namespace

std::string ShownNumber(double value, FigureUnit unit, int decimals, const Units& units) {
    const double shown = Shown(value, unit, units);
    // Whole numbers as the study's averages have them.
    if (decimals == 0 && std::abs(shown) < 1e9) return std::to_string(Round32(shown));
    return FixedDecimals(shown, decimals);
}

std::string UnitLabel(FigureUnit unit, const Units& units) {
    switch (unit) {
        case FigureUnit::Seconds: return "s";
        case FigureUnit::MilesPerHour: return units.SpeedLabel();
        case FigureUnit::Feet: return units.LengthLabel();
        case FigureUnit::Percent: return "%";
        case FigureUnit::PerMile: return units.Metric ? "a km" : "a mile";
        case FigureUnit::None: break;
    }
    return {};
}

std::string Figure::Number(const Units& units) const {
    return Value ? ShownNumber(*Value, Unit, Decimals, units) : NoValueText;
}

std::string Figure::Text(const Units& units) const {
    return Value ? WithUnit(Number(units), Unit, units) : NoValueText;
}

std::string Figure::WithInterval(const Units& units) const {
    if (!Value || !HalfWidth) return Text(units);
    return Text(units) + PlusMinus + ShownNumber(*HalfWidth, Unit, Decimals, units);
}

std::string Figure::Interval(const Units& units) const {
    if (!Low || !High) return NoValueText;
    return ShownNumber(*Low, Unit, Decimals, units) + " to " +
           WithUnit(ShownNumber(*High, Unit, Decimals, units), Unit, units);
}

std::string Figure::NumberBeside(const Figure& without, const Units& units) const {
    if (N == without.N) return Number(units);
    return Number(units) + " (" + without.Number(units) + " without " + std::to_string(N - without.N) + " set aside)";
}

std::string Figure::Remarks() const {
    std::vector<std::string> remarks{RestsOn};
    remarks.insert(remarks.end(), Conditions.begin(), Conditions.end());
    remarks.insert(remarks.end(), Warnings.begin(), Warnings.end());
    std::erase(remarks, std::string());
    return Joined(remarks, "; ");
}

Figure MeanFigure(const GroupStatistics& group, Measure measure, const StatisticsOptions& options) {
    const Summary& summary = group.Of[measure];
    Figure figure = FigureOf(KindOf(measure).Name, KindOf(measure).Unit, 1, group, options);
    figure.Value = summary.Mean;
    figure.N = summary.N;
    figure.Low = summary.Low;
    figure.High = summary.High;
    figure.HalfWidth = summary.HalfWidth;
    if (summary.HalfWidth) figure.Conditions.push_back(ConfidenceText(options.Confidence));
    if (measure == Measure::TravelSpeed) figure.Conditions.emplace_back("the mean of the runs' speeds");
    if (summary.N != group.N)
        figure.Warnings.push_back(std::to_string(summary.N) + " of " + std::to_string(group.N) + " runs have it");
    figure.Warnings.insert(figure.Warnings.end(), group.Warnings.begin(), group.Warnings.end());
    if (group.N >= FewRuns && summary.N > 1 && summary.N < FewRuns) figure.Warnings.emplace_back("few runs");
    return figure;
}

Figure DelayFigure(const GroupStatistics& group, const StatisticsOptions& options) {
    Figure figure = MeanFigure(group, Measure::ControlDelay, options);
    figure.Decimals = 0;
    return figure;
}

std::vector<Figure> SpeedFigures(const GroupStatistics& group, const StatisticsOptions& options, const Units& units) {
    const auto make = [&](const char* name, FigureUnit unit, std::optional<double> value, int decimals = 1) {
        Figure figure = FigureOf(name, unit, decimals, group, options);
        figure.Value = value;
        return figure;
    };
    const std::string stopped = StopCondition(options.Stops, units);
    std::vector<Figure> figures = {
        make("Overall travel speed", FigureUnit::MilesPerHour, group.AverageTravelSpeed),
        make("Overall running speed", FigureUnit::MilesPerHour, group.AverageRunningSpeed),
        make("Time stopped", FigureUnit::Percent, group.PercentStopped, 2),
        make("Stops", FigureUnit::PerMile, group.StopsPerMile, 2),
        make("Mean length", FigureUnit::Feet, group.MeanLength, 0),
    };
    figures[0].Low = group.SpeedLow;
    figures[0].High = group.SpeedHigh;
    if (group.SpeedLow) figures[0].Conditions.push_back(ConfidenceText(options.Confidence));
    figures[0].Conditions.emplace_back("all lengths over all times");
    figures[1].Conditions.emplace_back("all lengths over all running times");
    for (const std::size_t i : {1U, 2U, 3U}) figures[i].Conditions.push_back(stopped);
    return figures;
}

std::vector<Figure> ReliabilityFigures(const GroupStatistics& group, const StatisticsOptions& options) {
    const Reliability& times = group.Times;
    const auto make = [&](const char* name, FigureUnit unit, std::optional<double> value, int least) {
        Figure figure = FigureOf(name, unit, unit == FigureUnit::Seconds ? 1 : 2, group, options);
        figure.Value = value;
        return Weak(std::move(figure), least);
    };
    const auto percent = times.BufferIndex ? std::optional(100 * *times.BufferIndex) : std::nullopt;
    std::vector<Figure> figures = {
        make("50 % of runs took this or less (P50)", FigureUnit::Seconds, times.P50, LeastForPercentiles),
        make("80 % of runs took this or less (P80)", FigureUnit::Seconds, times.P80, LeastForPercentiles),
        make("85 % of runs took this or less (P85)", FigureUnit::Seconds, times.P85, LeastForPercentiles),
        make("95 % of runs took this or less (P95)", FigureUnit::Seconds, times.P95, LeastForP95),
        make("Buffer index (P95 over the mean)", FigureUnit::Percent, percent, LeastForP95),
        make("P80 / P50 (LOTTR)", FigureUnit::None, times.Lottr, LeastForPercentiles),
        make("Travel time index (mean / free flow)", FigureUnit::None, times.TravelTimeIndex, 1),
        make("Planning time index (P95 / free flow)", FigureUnit::None, times.PlanningTimeIndex, LeastForP95),
    };
    if (!options.FreeFlowSpeed)
        for (const std::size_t i : {6U, 7U}) figures[i].Warnings.emplace_back("no free-flow speed entered");
    return figures;
}

}  // namespace vantor
