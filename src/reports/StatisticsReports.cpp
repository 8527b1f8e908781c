#include "core/Text.h"
#include "reports/ReportContents.h"
#include "reports/ReportTable.h"
#include "reports/ReportText.h"
#include "statistics/Figure.h"
#include "statistics/StatisticsTables.h"

namespace vantor {
namespace {

constexpr double SectionGap = 12;
constexpr TextSide Right = TextSide::Right;

std::string ValueText(std::optional<double> value, FigureUnit unit, int decimals, const Units& units) {
    return value ? ShownNumber(*value, unit, decimals, units) : NoFigure;
}

/// The table of a screen on paper: figures to the right, those of few runs in brackets; without a column that would not
/// fit beside the others.
ReportTable OnPaper(const StatisticsTable& table, std::string_view without = {}) {
    ReportTable printed;
    printed.HasTotal = table.HasTotal;
    for (std::size_t column = 0; column < table.Heads.size(); ++column) {
        const bool isText = column == 0 || (table.LastIsText && column + 1 == table.Heads.size());
        printed.Columns.push_back({table.Heads[column], isText ? TextSide::Left : TextSide::Right, isText});
    }
    for (const auto& cells : table.Rows) {
        auto& row = printed.Rows.emplace_back();
        for (const StatisticsCell& cell : cells) row.push_back(cell.IsWeak ? "(" + cell.Text + ")" : cell.Text);
    }
    std::vector<std::size_t> columns;
    for (std::size_t column = 0; column < table.Heads.size(); ++column)
        if (table.Heads[column] != without) columns.push_back(column);
    return WithColumns(printed, columns);
}

/// How far each measure scatters over the runs.
ReportTable ScatterTable(const GroupStatistics& group, const Units& units) {
    ReportTable table;
    table.Columns = {{"Scatter"},
                     {"Runs", Right},
                     {"Standard deviation", Right},
                     {"Percent of the mean", Right},
                     {"Least", Right},
                     {"Median", Right},
                     {"Most", Right}};
    for (const Measure measure : AllMeasures) {
        const Summary& of = group.Of[measure];
        const auto value = [&](std::optional<double> number) {
            return ValueText(number, KindOf(measure).Unit, 1, units);
        };
        const std::string unit = UnitLabel(KindOf(measure).Unit, units);
        table.Rows.push_back({KindOf(measure).Name + (unit.empty() ? unit : " (" + unit + ")"), std::to_string(of.N),
                              value(of.Sd), of.Cv ? ShownNumber(100 * *of.Cv, FigureUnit::Percent, 1, units) : NoFigure,
                              value(of.Min), value(of.Median), value(of.Max)});
    }
    return table;
}

/// How sure the mean travel time was after each run, in the order driven.
ReportTable SoFarTable(const ReportData& data, const Units& units) {
    const StatisticsOptions& options = data.Statistics.Options;
    const std::vector<MeasuredRun>& runs = data.Measured.Read.Runs;
    ReportTable table;
    table.Columns = {{"Runs", Right},        {"Last run", TextSide::Left, true},
                     {"Mean (s)", Right},    {"\u00B1 (s)", Right},
                     {"Runs needed", Right}, {"More", Right}};
    std::size_t i = 0;
    for (const RunsSoFar& soFar : TravelTimesSoFar(runs, options)) {
        const auto count = [](std::optional<int> number) { return number ? std::to_string(*number) : NoFigure; };
        table.Rows.push_back({std::to_string(soFar.Of.N), runs[i++].Name,
                              ValueText(soFar.Of.Mean, FigureUnit::Seconds, 1, units),
                              ValueText(soFar.Of.HalfWidth, FigureUnit::Seconds, 1, units), count(soFar.Needed.Needed),
                              soFar.Needed.Enough ? "enough" : count(soFar.Needed.StillNeeded)});
    }
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
                        ShownNumber(group.Outlier->G, FigureUnit::None, 3, {}) + " standard deviations (Grubbs; " +
                        ShownNumber(group.Outlier->Critical, FigureUnit::None, 3, {}) +
                        " would make it an outlier): " + (group.Outlier->IsOutlier() ? "look at it." : "no outlier."));
    for (const MeasuredRun& run : data.Measured.Read.Runs)
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

/// What a difference as large as the permitted error takes.
void AddRunsForDifference(ReportPages& pages, const Comparison& travelTime, const StatisticsOptions& options,
                          const Units& units) {
    const auto error = ErrorInUnit(options.Error, travelTime.Welch.MeanBefore);
    if (!error) return;
    pages.AddText("To show a difference in travel time of " + ShownNumber(*error, FigureUnit::Seconds, 1, units) +
                      " s " + RunsForDifferenceText(travelTime.Sd, *error, options.Confidence) + ".",
                  BodyStyle);
}

void AddSections(ReportPages& pages, const ReportData& data, const Units& units) {
    const StudyStatistics& statistics = data.Statistics;
    if (statistics.Sections.size() < 2)
        return pages.AddText("The runs have no nodes: there are no sections.", BodyStyle);
    pages.AddHeading("Sections", 5 * pages.Measure().LineHeight(CellStyle) + SectionGap);
    if (const std::string counts = statistics.NodeCountText(); !counts.empty())
        pages.AddText(counts + "; the table is theirs.", BodyStyle);
    const GroupStatistics& total = statistics.NodeCounts.size() == 1 ? statistics.Whole.All : data.OfMostNodes;
    AddTable(pages, OnPaper(SectionsTable(statistics.Sections, total, statistics.Options, units), "P50 (s)"));
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
            ConfidenceText(statistics.Options.Confidence) +
            ". Figures are those of whole runs, but for the control delay, which is that between the boundaries of the "
            "counted ones. Of too few runs are those in brackets.",
        BodyStyle);
    pages.Skip(SectionGap / 2);
    AddTable(pages, OnPaper(SummaryTable(statistics.Whole, statistics.Options, "All runs", units)));
    pages.Skip(SectionGap / 2);
    AddTable(pages, ScatterTable(group, units));
    pages.Skip(SectionGap / 2);
    AddSections(pages, data, units);
    std::vector<std::string> warnings = statistics.Warnings;
    warnings.insert(warnings.end(), group.Warnings.begin(), group.Warnings.end());
    AddLines(pages, "Warnings", warnings);
    AddLines(pages, "Single runs", RunRemarks(data));
    if (data.Measured.Read.Runs.size() <= MostRunsSoFar) {
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
    const auto restsOn = [](const GroupStatistics& group) {
        return group.RestsOn.Text() + (group.Warnings.empty() ? "" : "; " + Joined(group.Warnings, "; "));
    };
    pages.AddText("Before: " + restsOn(whole.Before) + ". After: " + restsOn(whole.After) + ".", BodyStyle);
    pages.Skip(SectionGap / 2);
    for (const Measure measure : {Measure::TravelTime, Measure::ControlDelay, Measure::Stops})
        pages.AddText(ComparisonText(whole.Compared[measure], measure, statistics.Options, units), BodyStyle);
    AddRunsForDifference(pages, whole.Compared[Measure::TravelTime], statistics.Options, units);
    pages.Skip(SectionGap / 2);
    AddLines(pages, "Warnings", whole.Warnings);
    AddTable(pages, OnPaper(ComparedTable(whole, statistics.Options, units)));
    pages.Skip(SectionGap / 2);
    if (!statistics.SectionsComparable || statistics.Sections.size() < 2) return;
    pages.AddHeading("Travel time by section", 4 * pages.Measure().LineHeight(CellStyle) + SectionGap);
    AddTable(pages, OnPaper(ComparedSectionsTable(statistics.Sections, statistics.Options, units), "Shift"));
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
        AddRunsForDifference(pages, condition.Compared[Measure::TravelTime], options, units);
        for (const std::string& warning : condition.Warnings) pages.AddText("Warning: " + warning, BodyStyle);
        pages.Skip(SectionGap / 2);
        GroupedStatistics against;
        against.Before = conditions.front().Figures;
        against.After = condition.Figures;
        against.Compared = condition.Compared;
        AddTable(pages, OnPaper(ComparedTable(against, options, units)));
        if (condition.Sections.size() < 2) continue;
        pages.Skip(SectionGap / 2);
        AddTable(pages, OnPaper(ComparedSectionsTable(condition.Sections, options, units), "Shift"));
    }
    pages.AddText(
        "p (Welch): of Welch's test; p (ranks): of Mann-Whitney's; p (Holm): adjusted for the number of sections.",
        CaptionStyle);
}

}  // namespace vantor
