#include "core/Text.h"
#include "reports/ReportContents.h"
#include "reports/ReportTable.h"
#include "reports/ReportText.h"
#include "reports/StatisticsTables.h"
#include "statistics/Figure.h"

namespace vantor {
namespace {

constexpr double SectionGap = 12;
constexpr TextSide Right = TextSide::Right;

/// The number of a figure in a table, with a mark where it is weak.
std::string Cell(const Figure& figure, const Units& units) {
    return figure.Value && figure.IsWeak ? "(" + figure.Number(units) + ")" : figure.Number(units);
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
        const auto value = [&](std::optional<double> number) { return ValueText(number, mean.Unit, 1, units); };
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
                              ValueText(soFar.Of.Mean, FigureUnit::Seconds, 1, units),
                              ValueText(soFar.Of.HalfWidth, FigureUnit::Seconds, 1, units), count(soFar.Needed.Needed),
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
    const auto mean = [&](Measure measure) {
        return ValueText(group.Of[measure].Mean, KindOf(measure).Unit, 1, units);
    };
    return {name,
            std::to_string(group.N),
            ValueText(group.MeanLength, FigureUnit::Feet, 0, units),
            mean(Measure::TravelTime),
            ValueText(group.Of[Measure::TravelTime].HalfWidth, FigureUnit::Seconds, 1, units),
            mean(Measure::RunningTime),
            mean(Measure::StoppedTime),
            ValueText(group.AverageTravelSpeed, FigureUnit::MilesPerHour, 1, units),
            ValueText(group.AverageRunningSpeed, FigureUnit::MilesPerHour, 1, units),
            ValueText(group.PercentStopped, FigureUnit::Percent, 1, units),
            ValueText(group.Of[Measure::Stops].Mean, FigureUnit::None, 2, units)};
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
    if (const std::string text = RunsForDifferenceText(whole.Compared[Measure::TravelTime], statistics.Options, units);
        !text.empty())
        pages.AddText(text, BodyStyle);
    pages.Skip(SectionGap / 2);
    AddLines(pages, "Warnings", whole.Warnings);
    AddTable(pages, ComparisonTable(whole.Compared, units));
    pages.Skip(SectionGap / 2);
    if (!statistics.SectionsComparable || statistics.Sections.size() < 2) return;
    pages.AddHeading("Travel time by section", 4 * pages.Measure().LineHeight(CellStyle) + SectionGap);
    AddTable(pages, SectionComparisonTable(statistics.Sections, units));
    pages.AddText("p (Holm) is adjusted for the number of sections.", CaptionStyle);
}

void AddComparison(ReportPages& pages, const std::vector<ConditionStatistics>& conditions,
                   const StatisticsOptions& options, const Units& units) {
    ReportTable table;
    table.Columns = {{"Study", TextSide::Left, true}, {"Rests on", TextSide::Left, true}, {"Travel Time (s)", Right},
                     {"Control Delay (s)", Right},    {"LOS Grade", TextSide::Centre},    {"Stops", Right}};
    for (const ConditionStatistics& condition : conditions) {
        const auto mean = [&](Measure measure) {
            Figure figure = MeanFigure(condition.Figures, measure, options);
            figure.Unit = FigureUnit::None;
            return figure.WithInterval(units);
        };
        const auto grades = GradesOf(condition.Figures.Of[Measure::ControlDelay], StudyGrade);
        table.Rows.push_back({condition.Name, condition.Figures.RestsOn.Text(), mean(Measure::TravelTime),
                              mean(Measure::ControlDelay), grades ? grades->Text() : NoFigure, mean(Measure::Stops)});
    }
    AddTable(pages, table);
    pages.AddText("Means with their " + ConfidenceText(options.Confidence) + " intervals; the grade over the interval.",
                  CaptionStyle);
    for (std::size_t i = 1; i < conditions.size(); ++i) {
        const ConditionStatistics& condition = conditions[i];
        pages.Skip(SectionGap);
        pages.AddHeading(condition.Name + " against " + conditions.front().Name,
                         8 * pages.Measure().LineHeight(BodyStyle));
        for (const Measure measure : {Measure::TravelTime, Measure::ControlDelay, Measure::Stops})
            pages.AddText(ComparisonText(condition.Compared[measure], measure, options, units), BodyStyle);
        const std::string runs = RunsForDifferenceText(condition.Compared[Measure::TravelTime], options, units);
        if (!runs.empty()) pages.AddText(runs, BodyStyle);
        for (const std::string& warning : condition.Warnings) pages.AddText("Warning: " + warning, BodyStyle);
        pages.Skip(SectionGap / 2);
        AddTable(pages, ComparisonTable(condition.Compared, units));
        if (condition.Sections.size() < 2) continue;
        pages.Skip(SectionGap / 2);
        AddTable(pages, SectionComparisonTable(condition.Sections, units));
    }
    pages.AddText(
        "p (Welch): of Welch's test; p (ranks): of Mann-Whitney's; p (Holm): adjusted for the number of sections.",
        CaptionStyle);
}

}  // namespace vantor
