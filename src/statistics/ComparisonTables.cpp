#include <algorithm>
#include <string>

#include "core/Numeric.h"
#include "core/Text.h"
#include "statistics/Figure.h"
#include "statistics/Grades.h"
#include "statistics/StatisticsCells.h"

namespace vantor {
namespace {

StatisticsCell IntervalCell(const WelchTest& test, FigureUnit unit, const Units& units) {
    if (!test.Low) return {NoValueText};
    return TextCell(ShownNumber(*test.Low, unit, 1, units) + " to " + ShownNumber(*test.High, unit, 1, units));
}

std::vector<StatisticsCell> ComparedRow(const std::string& name, const Comparison& each, Measure measure,
                                        const StatisticsOptions& options, const Units& units) {
    const WelchTest& test = each.Welch;
    const FigureUnit unit = KindOf(measure).Unit;
    const auto value = [&](std::optional<double> number) { return ValueCell(number, unit, 1, units); };
    StatisticsCell ranks = ProbabilityCell(each.Ranks.P);
    if (each.Ranks.SmallestP)
        ranks.Note = std::string(each.Ranks.Exact ? "exact" : "normal approximation") +
                     "; the smallest that groups of these sizes can give is " + ProbabilityText(each.Ranks.SmallestP);
    StatisticsCell first = TextCell(name, ComparisonText(each, measure, options, units));
    StatisticsCell welch = ProbabilityCell(test.P);
    if (test.T)
        welch.Note = "t " + FixedDecimals(*test.T, 3) + ", " + FixedDecimals(*test.Df, 2) + " degrees of freedom";
    return {first,
            CountCell(test.NBefore),
            value(test.MeanBefore),
            CountCell(test.NAfter),
            value(test.MeanAfter),
            value(test.Difference),
            ValueCell(test.Percent, FigureUnit::Percent, 1, units),
            IntervalCell(test, unit, units),
            welch,
            ranks,
            value(each.Ranks.Shift)};
}

std::vector<std::string> ComparedHeads(const char* first, const StatisticsOptions& options) {
    return {first,       "n before",         "Before",  "n after",
            "After",     "Difference",       "Percent", ConfidenceText(options.Confidence) + " interval",
            "p (Welch)", "p (Mann-Whitney)", "Shift"};
}

}  // namespace

StatisticsTable ComparedTable(const GroupedStatistics& whole, const StatisticsOptions& options, const Units& units) {
    StatisticsTable table;
    table.Heads = ComparedHeads("Measure", options);
    if (!whole.HasBoth()) return table;
    const bool hasHolm =
        std::ranges::any_of(AllMeasures, [&](Measure measure) { return whole.Compared[measure].HolmP.has_value(); });
    if (hasHolm) table.Heads.emplace_back("p (Holm)");
    for (const Measure measure : AllMeasures) {
        const MeasureKind& kind = KindOf(measure);
        table.Rows.push_back(
            ComparedRow(WithUnit(kind.Name, kind.Unit, units), whole.Compared[measure], measure, options, units));
        if (hasHolm) table.Rows.back().push_back(ProbabilityCell(whole.Compared[measure].HolmP));
    }
    return table;
}

StatisticsTable ComparedSectionsTable(const std::vector<SectionOverRuns>& sections, const StatisticsOptions& options,
                                      const Units& units) {
    StatisticsTable table;
    table.Heads = ComparedHeads("Section, travel time (s)", options);
    table.Heads.emplace_back("p (Holm)");
    for (const SectionOverRuns& section : sections) {
        const Comparison& times = section.Compared[Measure::TravelTime];
        table.Rows.push_back(
            ComparedRow(section.From + " - " + section.To, times, Measure::TravelTime, options, units));
        table.Rows.back().push_back(ProbabilityCell(times.HolmP));
    }
    return table;
}

std::string RunsForDifferenceText(std::optional<double> sd, double seconds, double confidence) {
    if (!sd || *sd <= 0)
        return "takes a number that is not known: there is no scatter, which takes two runs that differ";
    const auto runs = RunsForDifference(*sd, seconds, confidence);
    if (!runs) return "takes more than " + std::to_string(MostRunsNeeded) + " runs";
    const std::string count = std::to_string(*runs);
    return "takes " + count + " runs before and " + count + " after with this scatter, in 8 of 10 such surveys";
}

StatisticsTable ConditionsTable(const std::vector<ConditionStatistics>& conditions, const StatisticsOptions& options,
                                const Units& units) {
    StatisticsTable table;
    table.Heads = {"Study", "Travel time (s)", "Control delay (s)", "LOS grade", "Stops", "Rests on"};
    table.LastIsText = true;
    for (const ConditionStatistics& condition : conditions) {
        const GroupStatistics& group = condition.Figures;
        const auto mean = [&](Measure measure) {
            Figure figure = MeanFigure(group, measure, options);
            figure.Unit = FigureUnit::None;
            return TextCell(figure.WithInterval(units), figure.Remarks());
        };
        const auto grades = GradesOf(group.Of[Measure::ControlDelay], StudyGrade);
        std::vector<std::string> restsOn = group.Warnings;
        restsOn.insert(restsOn.begin(), group.RestsOn.Text());
        table.Rows.push_back({TextCell(condition.Name), mean(Measure::TravelTime), mean(Measure::ControlDelay),
                              TextCell(grades ? grades->Text() : NoValueText), mean(Measure::Stops),
                              TextCell(Joined(restsOn, "; "))});
    }
    return table;
}

}  // namespace vantor
