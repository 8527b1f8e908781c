#include "reports/modReports.h"

#include <algorithm>
#include <array>
#include <string>

#include "core/Text.h"
#include "reports/ReportContents.h"
#include "reports/ReportFrame.h"

namespace vantor {
PagedDocument MakeComparisonReport(const std::vector<ConditionStatistics>& conditions, const StatisticsOptions& options,
                                   const AppSettings& settings, Date printed, const ReportChoice& choice,
                                   const TextMeasure& measure) {
    const RememberingMeasure remembering(measure);
    const std::string first = conditions.front().Name;
    ReportPages pages(FrameOf(settings, first, printed, choice), remembering);
    pages.BeginReport("Comparison of Studies");
    AddComparison(pages, conditions, options, UnitsOf(settings));
    return pages.Finish("Comparison with " + first);
}

PagedDocument MakeReport(const ReportData& data, const ReportChoice& choice, const TextMeasure& measure) {
    constexpr std::array Contents = {AddCover,     AddStudySummary, AddStatistics,    AddBeforeAfter, AddDelayChart,
                                     AddTimeSpace, AddMap,          AddSpeedProfiles, AddMethod,      AddRunStatistics};
    static_assert(Contents.size() == ReportNames.size());
    const std::string study(Trim(data.Contents.Record.StudyName));
    const RememberingMeasure remembering(measure);
    ReportPages pages(FrameOf(data.Settings, study, data.Printed, choice), remembering);
    const bool isOneOfSeveral = std::ranges::count(choice.Reports, true) > 1;
    for (std::size_t report = 0; report < Contents.size(); ++report) {
        if (!choice.Reports[report]) continue;
        if (data.Runs.empty() && Contents[report] != AddStudySummary) continue;
        if (Contents[report] == AddBeforeAfter && !data.Statistics.Whole.HasBoth() && isOneOfSeveral) continue;
        if (Contents[report] == AddMap && data.Map.Tracks.empty() && isOneOfSeveral) continue;
        pages.BeginReport(ReportNames[report].Title);
        Contents[report](pages, data);
    }
    return pages.Finish(study.empty() ? "Vantor" : study);
}

}  // namespace vantor
