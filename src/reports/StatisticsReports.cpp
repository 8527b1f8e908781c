#include "core/Text.h"
#include "reports/ReportContents.h"
#include "reports/ReportParts.h"
#include "reports/ReportTable.h"
#include "reports/ReportText.h"
#include "statistics/Figure.h"
#include "statistics/StatisticsTables.h"

namespace vantor {
namespace {

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
    AddTable(pages, OnPaper(SectionsTable(statistics, units), "P50 (s)"));
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
    AddTable(pages, OnPaper(ScatterTable(group, units)));
    pages.Skip(SectionGap / 2);
    AddSections(pages, data, units);
    std::vector<std::string> warnings = statistics.Warnings;
    warnings.insert(warnings.end(), group.Warnings.begin(), group.Warnings.end());
    AddLines(pages, "Warnings", warnings);
    AddLines(pages, "Single runs", RunRemarks(data));
    const StatisticsTable soFar = RunsSoFarTable(data.Measured.Read.Runs, statistics.Options, units);
    if (soFar.Rows.empty()) return;
    pages.AddHeading("Travel time as the runs were driven", 4 * pages.Measure().LineHeight(CellStyle) + SectionGap);
    AddTable(pages, OnPaper(soFar));
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
    AddTable(pages, OnPaper(ConditionsTable(conditions, options, units)));
    pages.AddText("Means with their " + ConfidenceText(options.Confidence) + " intervals; the grade over the interval.",
                  CaptionStyle);
    pages.Skip(SectionGap / 2);
    for (const ConditionStatistics& condition : conditions)
        for (const std::string& remark : condition.Remarks) pages.AddText(condition.Name + ": " + remark, BodyStyle);
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
        const bool isOneOfSeveral = conditions.size() > 2;
        AddTable(pages,
                 OnPaper(ComparedTable(AgainstFirst(conditions, i), options, units), isOneOfSeveral ? "Shift" : ""));
        if (condition.Sections.size() < 2) continue;
        pages.Skip(SectionGap / 2);
        AddTable(pages, OnPaper(ComparedSectionsTable(condition.Sections, options, units), "Shift"));
    }
    pages.AddText(
        "p (Welch): of Welch's test; p (Mann-Whitney): by ranks; p (Holm): adjusted for the number of sections, "
        "in the table of measures for that of the studies.",
        CaptionStyle);
}

}  // namespace vantor
