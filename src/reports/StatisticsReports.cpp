#include "core/Text.h"
#include "reports/ReportContents.h"
#include "reports/ReportTable.h"
#include "reports/ReportText.h"
#include "statistics/Figure.h"

namespace vantor {
namespace {

constexpr double SectionGap = 12;
constexpr TextSide Right = TextSide::Right;

/// The number of a figure in a table, with a mark where it is weak.
std::string Cell(const Figure& figure, const Units& units) {
    return figure.Value && figure.IsWeak ? "(" + figure.Number(units) + ")" : figure.Number(units);
}

std::string Value(std::optional<double> value, FigureUnit unit, int decimals, const Units& units) {
    return value ? ShownNumber(*value, unit, decimals, units) : NoFigure;
}

std::string NamedWithUnit(const std::string& name, FigureUnit unit, const Units& units) {
    const std::string label = UnitLabel(unit, units);
    return label.empty() ? name : name + " (" + label + ")";
}

/// A row for each measure: how many runs have it, its mean with the interval, its scatter and its range.
ReportTable MeasureTable(const GroupStatistics& group, const StatisticsOptions& options, const Units& units) {
    ReportTable table;
    table.Columns = {{"Measure"},           {"Runs", Right},     {"Mean", Right},
                     {"\u00B1", Right},     {"Interval", Right}, {"Standard Deviation", Right},
                     {"Least", Right},      {"Median", Right},   {"Most", Right},
                     {"Runs Needed", Right}};
    for (const Measure measure : AllMeasures) {
        const Figure mean = MeanFigure(group, measure, options);
        const Summary& summary = group.Of[measure];
        const auto value = [&](std::optional<double> number) { return Value(number, mean.Unit, 1, units); };
        const RunsNeeded& needed = group.Needed[measure];
        table.Rows.push_back({NamedWithUnit(mean.Name, mean.Unit, units), std::to_string(summary.N), mean.Number(units),
                              value(summary.HalfWidth),
                              summary.Low ? value(summary.Low) + " to " + value(summary.High) : NoFigure,
                              value(summary.Sd), value(summary.Min), value(summary.Median), value(summary.Max),
                              needed.Needed ? std::to_string(*needed.Needed) : NoFigure});
    }
    return table;
}

/// How sure the mean travel time was after each run, in the order driven.
ReportTable SoFarTable(const ReportData& data, const Units& units) {
    const StatisticsOptions& options = data.Statistics.Options;
    ChosenRuns runs;
    for (const MeasuredRun& run : data.Measured.Runs) runs.push_back(&run);
    ReportTable table;
    table.Columns = {{"Runs", Right},        {"Last run", TextSide::Left, true},
                     {"Mean (s)", Right},    {"\u00B1 (s)", Right},
                     {"Runs needed", Right}, {"More", Right}};
    std::size_t i = 0;
    for (const RunsSoFar& soFar :
         AfterEachRun(ValuesOf(runs, Measure::TravelTime), options.Error, options.Confidence)) {
        const auto count = [](std::optional<int> number) { return number ? std::to_string(*number) : NoFigure; };
        table.Rows.push_back({std::to_string(soFar.Of.N), runs[i++]->Name,
                              Value(soFar.Of.Mean, FigureUnit::Seconds, 1, units),
                              Value(soFar.Of.HalfWidth, FigureUnit::Seconds, 1, units), count(soFar.Needed.Needed),
                              soFar.Needed.Enough ? "enough" : count(soFar.Needed.StillNeeded)});
    }
    return table;
}

ReportTable FigureTable(const std::vector<Figure>& figures, const Units& units) {
    ReportTable table;
    table.Columns = {{"Figure", TextSide::Left, true}, {"Value", Right}, {"Remarks", TextSide::Left, true}};
    for (const Figure& figure : figures) {
        std::vector<std::string> remarks = figure.Conditions;
        if (figure.Low && figure.High) remarks.insert(remarks.begin(), "interval " + figure.Interval(units));
        remarks.insert(remarks.end(), figure.Warnings.begin(), figure.Warnings.end());
        table.Rows.push_back(
            {NamedWithUnit(figure.Name, figure.Unit, units), Cell(figure, units), Joined(remarks, "; ")});
    }
    return table;
}

std::vector<std::string> SectionRow(const std::string& name, const GroupStatistics& group, const Units& units) {
    const auto mean = [&](Measure measure) { return Value(group.Of[measure].Mean, KindOf(measure).Unit, 1, units); };
    return {name,
            std::to_string(group.N),
            Value(group.MeanLength, FigureUnit::Feet, 0, units),
            mean(Measure::TravelTime),
            Value(group.Of[Measure::TravelTime].HalfWidth, FigureUnit::Seconds, 1, units),
            mean(Measure::RunningTime),
            mean(Measure::StoppedTime),
            Value(group.AverageTravelSpeed, FigureUnit::MilesPerHour, 1, units),
            Value(group.AverageRunningSpeed, FigureUnit::MilesPerHour, 1, units),
            Value(group.PercentStopped, FigureUnit::Percent, 1, units),
            Value(group.Of[Measure::Stops].Mean, FigureUnit::None, 2, units)};
}

/// From node to node over the runs; the total is made of whole runs, for intervals do not add up.
ReportTable SectionTable(const StudyStatistics& statistics, const GroupStatistics& total, const Units& units) {
    const std::string length = std::string(" (") + units.LengthLabel() + ")";
    const std::string speed = std::string(" (") + units.SpeedLabel() + ")";
    ReportTable table;
    table.Columns = {{"Section", TextSide::Left, true},
                     {"Runs", Right},
                     {"Length" + length, Right},
                     {"Travel Time (s)", Right},
                     {"\u00B1 (s)", Right},
                     {"Running Time (s)", Right},
                     {"Stopped Time (s)", Right},
                     {"Travel Speed" + speed, Right},
                     {"Running Speed" + speed, Right},
                     {"Stopped (%)", Right},
                     {"Stops", Right}};
    for (const SectionOverRuns& section : statistics.Sections)
        table.Rows.push_back(SectionRow(section.From + " to " + section.To, section.All, units));
    table.Rows.push_back(SectionRow("Whole run", total, units));
    table.HasTotal = true;
    return table;
}

void AddLines(ReportPages& pages, const std::string& heading, const std::vector<std::string>& lines) {
    if (lines.empty()) return;
    pages.AddHeading(heading, 2 * pages.Measure().LineHeight(BodyStyle));
    for (const std::string& line : lines) pages.AddText(line, BodyStyle);
    pages.Skip(SectionGap / 2);
}

/// Runs that lie apart, and those that are set aside with what is left without them.
std::vector<std::string> RunRemarks(const ReportData& data) {
    const GroupStatistics& group = data.Statistics.Whole.All;
    std::vector<std::string> lines;
    if (group.Outlier)
        lines.push_back(group.FarthestRun + " has the travel time farthest from the mean, " +
                        ShownNumber(group.Outlier->G, FigureUnit::None, 2, {}) + " standard deviations (Grubbs; " +
                        ShownNumber(group.Outlier->Critical, FigureUnit::None, 2, {}) +
                        " would make it an outlier): " + (group.Outlier->IsOutlier() ? "look at it." : "no outlier."));
    for (const MeasuredRun& run : data.Measured.Runs)
        if (!run.SetAside.empty()) lines.push_back(run.Name + " is set aside: " + run.SetAside + ".");
    if (!data.WithoutSetAside) return lines;
    const GroupStatistics& without = data.WithoutSetAside->Whole.All;
    const Units units = UnitsOf(data.Settings);
    const StatisticsOptions& options = data.Statistics.Options;
    lines.push_back("Without the runs that are set aside: travel time " +
                    MeanFigure(without, Measure::TravelTime, options).WithInterval(units) + ", control delay " +
                    DelayFigure(without, options).WithInterval(units) + "; " + without.RestsOn.Text() +
                    ". They count above.");
    return lines;
}

std::string IntervalText(const WelchTest& test, FigureUnit unit, const Units& units) {
    return test.Low ? Value(test.Low, unit, 1, units) + " to " + Value(test.High, unit, 1, units) : NoFigure;
}

ReportTable ComparisonTable(const GroupedStatistics& grouped, const Units& units) {
    ReportTable table;
    table.Columns = {{"Measure"},        {"Before", Right},   {"After", Right},     {"Difference", Right},
                     {"Percent", Right}, {"Interval", Right}, {"p (Welch)", Right}, {"p (ranks)", Right}};
    for (const Measure measure : AllMeasures) {
        const FigureUnit unit = KindOf(measure).Unit;
        const Comparison& comparison = grouped.Compared[measure];
        const WelchTest& test = comparison.Welch;
        table.Rows.push_back({NamedWithUnit(KindOf(measure).Name, unit, units), Value(test.MeanBefore, unit, 1, units),
                              Value(test.MeanAfter, unit, 1, units), Value(test.Difference, unit, 1, units),
                              Value(test.Percent, FigureUnit::Percent, 1, units), IntervalText(test, unit, units),
                              ProbabilityText(test.P), ProbabilityText(comparison.Ranks.P)});
    }
    return table;
}

ReportTable SectionComparisonTable(const StudyStatistics& statistics, const Units& units) {
    ReportTable table;
    table.Columns = {{"Section", TextSide::Left, true},
                     {"Before (s)", Right},
                     {"After (s)", Right},
                     {"Difference (s)", Right},
                     {"Interval", Right},
                     {"p (Welch)", Right},
                     {"p (Holm)", Right}};
    for (const SectionOverRuns& section : statistics.Sections) {
        const Comparison& comparison = section.Compared[Measure::TravelTime];
        const WelchTest& test = comparison.Welch;
        const auto seconds = [&](std::optional<double> value) { return Value(value, FigureUnit::Seconds, 1, units); };
        table.Rows.push_back({section.From + " to " + section.To, seconds(test.MeanBefore), seconds(test.MeanAfter),
                              seconds(test.Difference), IntervalText(test, FigureUnit::Seconds, units),
                              ProbabilityText(test.P), ProbabilityText(comparison.HolmP)});
    }
    return table;
}

/// What a change that matters to the user takes: runs each way to show a difference as large as the permitted error.
std::string RunsForDifferenceText(const ReportData& data, const Units& units) {
    const Comparison& comparison = data.Statistics.Whole.Compared[Measure::TravelTime];
    const StatisticsOptions& options = data.Statistics.Options;
    const auto error = ErrorInUnit(options.Error, comparison.Welch.MeanBefore);
    if (!comparison.Sd || !error) return {};
    const auto runs = RunsForDifference(*comparison.Sd, *error, options.Confidence);
    if (!runs) return {};
    return "To show a difference in travel time of " + ShownNumber(*error, FigureUnit::Seconds, 1, units) +
           " s with this scatter takes " + std::to_string(*runs) +
           " runs before and as many after (in 8 of 10 such surveys).";
}

void AddSections(ReportPages& pages, const ReportData& data, const Units& units) {
    const StudyStatistics& statistics = data.Statistics;
    if (statistics.Sections.size() < 2)
        return pages.AddText("The runs have no nodes: there are no sections.", BodyStyle);
    pages.AddHeading("Sections", 5 * pages.Measure().LineHeight(CellStyle) + SectionGap);
    if (const std::string counts = statistics.NodeCountText(); !counts.empty())
        pages.AddText(counts + "; the table is theirs.", BodyStyle);
    const GroupStatistics& total = statistics.NodeCounts.size() == 1 ? statistics.Whole.All : data.OfMostNodes;
    AddTable(pages, SectionTable(statistics, total, units));
    pages.Skip(SectionGap / 2);
}

}  // namespace

void AddStatistics(ReportPages& pages, const ReportData& data) {
    const Units units = UnitsOf(data.Settings);
    const StudyStatistics& statistics = data.Statistics;
    const GroupStatistics& group = statistics.Whole.All;
    if (group.N == 0) return pages.AddText("No run of this study can be read: there are no statistics.", BodyStyle);
    pages.AddText(
        "Over " + group.RestsOn.Text() + ". Intervals hold the true mean with a confidence of " +
            ConfidenceText(statistics.Options.Confidence) + "; runs needed are those for \u00B1" +
            PermittedErrorText(statistics.Options.Error, Measure::TravelTime, units) +
            " of a mean. Whole runs, but for the control delay, which is that between the boundaries of the " +
            "counted ones.",
        BodyStyle);
    pages.Skip(SectionGap / 2);
    AddTable(pages, MeasureTable(group, statistics.Options, units));
    pages.Skip(SectionGap / 2);
    std::vector<Figure> figures = SpeedFigures(group, statistics.Options, units);
    for (Figure& figure : ReliabilityFigures(group, statistics.Options)) figures.push_back(std::move(figure));
    AddTable(pages, FigureTable(figures, units));
    pages.Skip(SectionGap / 2);
    AddSections(pages, data, units);
    std::vector<std::string> warnings = statistics.Warnings;
    warnings.insert(warnings.end(), group.Warnings.begin(), group.Warnings.end());
    AddLines(pages, "Warnings", warnings);
    AddLines(pages, "Single runs", RunRemarks(data));
    constexpr int MostSoFar = 40;
    if (group.N <= MostSoFar) {
        pages.AddHeading("Travel time as the runs were driven", 4 * pages.Measure().LineHeight(CellStyle) + SectionGap);
        AddTable(pages, SoFarTable(data, units));
    }
}

void AddBeforeAfter(ReportPages& pages, const ReportData& data) {
    const Units units = UnitsOf(data.Settings);
    const StudyStatistics& statistics = data.Statistics;
    const GroupedStatistics& whole = statistics.Whole;
    if (!whole.HasBoth())
        return pages.AddText(
            "The runs of this study were driven all before the change that is studied, or all after it.", BodyStyle);
    pages.AddText("Before: " + whole.Before.RestsOn.Text() + ". After: " + whole.After.RestsOn.Text() + ".", BodyStyle);
    pages.Skip(SectionGap / 2);
    for (const Measure measure : {Measure::TravelTime, Measure::ControlDelay, Measure::Stops})
        pages.AddText(ComparisonText(whole.Compared[measure], measure, statistics.Options, units), BodyStyle);
    if (const std::string text = RunsForDifferenceText(data, units); !text.empty()) pages.AddText(text, BodyStyle);
    pages.Skip(SectionGap / 2);
    AddLines(pages, "Warnings", whole.Warnings);
    AddTable(pages, ComparisonTable(whole, units));
    pages.Skip(SectionGap / 2);
    if (!statistics.SectionsComparable || statistics.Sections.size() < 2) return;
    pages.AddHeading("Travel time by section", 4 * pages.Measure().LineHeight(CellStyle) + SectionGap);
    AddTable(pages, SectionComparisonTable(statistics, units));
    pages.AddText("p (Holm) is adjusted for the number of sections.", CaptionStyle);
}

}  // namespace vantor
