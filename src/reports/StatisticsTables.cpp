#include "reports/StatisticsTables.h"

#include "reports/ReportText.h"
#include "statistics/Figure.h"

namespace vantor {
namespace {

constexpr TextSide Right = TextSide::Right;

std::string IntervalText(const WelchTest& test, FigureUnit unit, const Units& units) {
    return test.Low ? ValueText(test.Low, unit, 1, units) + " to " + ValueText(test.High, unit, 1, units) : NoFigure;
}

}  // namespace

std::string ValueText(std::optional<double> value, FigureUnit unit, int decimals, const Units& units) {
    return value ? ShownNumber(*value, unit, decimals, units) : NoFigure;
}

std::string NamedWithUnit(const std::string& name, FigureUnit unit, const Units& units) {
    const std::string label = UnitLabel(unit, units);
    return label.empty() ? name : name + " (" + label + ")";
}

ReportTable ComparisonTable(const ByMeasure<Comparison>& compared, const Units& units) {
    ReportTable table;
    table.Columns = {{"Measure"},        {"Before", Right},   {"After", Right},     {"Difference", Right},
                     {"Percent", Right}, {"Interval", Right}, {"p (Welch)", Right}, {"p (ranks)", Right}};
    for (const Measure measure : AllMeasures) {
        const FigureUnit unit = KindOf(measure).Unit;
        const Comparison& comparison = compared[measure];
        const WelchTest& test = comparison.Welch;
        table.Rows.push_back({NamedWithUnit(KindOf(measure).Name, unit, units),
                              ValueText(test.MeanBefore, unit, 1, units), ValueText(test.MeanAfter, unit, 1, units),
                              ValueText(test.Difference, unit, 1, units),
                              ValueText(test.Percent, FigureUnit::Percent, 1, units), IntervalText(test, unit, units),
                              ProbabilityText(test.P), ProbabilityText(comparison.Ranks.P)});
    }
    return table;
}

ReportTable SectionComparisonTable(const std::vector<SectionOverRuns>& sections, const Units& units) {
    ReportTable table;
    table.Columns = {{"Section", TextSide::Left, true},
                     {"Before (s)", Right},
                     {"After (s)", Right},
                     {"Difference (s)", Right},
                     {"Interval", Right},
                     {"p (Welch)", Right},
                     {"p (Holm)", Right}};
    for (const SectionOverRuns& section : sections) {
        const Comparison& comparison = section.Compared[Measure::TravelTime];
        const WelchTest& test = comparison.Welch;
        const auto seconds = [&](std::optional<double> value) {
            return ValueText(value, FigureUnit::Seconds, 1, units);
        };
        table.Rows.push_back({section.From + " to " + section.To, seconds(test.MeanBefore), seconds(test.MeanAfter),
                              seconds(test.Difference), IntervalText(test, FigureUnit::Seconds, units),
                              ProbabilityText(test.P), ProbabilityText(comparison.HolmP)});
    }
    return table;
}

std::string RunsForDifferenceText(const Comparison& travelTime, const StatisticsOptions& options, const Units& units) {
    const auto error = ErrorInUnit(options.Error, travelTime.Welch.MeanBefore);
    if (!travelTime.Sd || !error) return {};
    const auto runs = RunsForDifference(*travelTime.Sd, *error, options.Confidence);
    if (!runs) return {};
    return "To show a difference in travel time of " + ShownNumber(*error, FigureUnit::Seconds, 1, units) +
           " s with this scatter takes " + std::to_string(*runs) +
           " runs before and as many after (in 8 of 10 such surveys).";
}

}  // namespace vantor
