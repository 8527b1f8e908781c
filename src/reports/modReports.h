#pragma once

#include <array>

#include "reports/ReportData.h"
#include "reports/ReportPages.h"

namespace vantor {

/// In the order in which they are printed; the last is an appendix.
enum class ReportKind { Cover, Summary, Overall, BeforeAfter, Chart, TimeSpace, Map, Profiles, Method, Statistics };

struct ReportName {
    const char* Title;  ///< at its top
    const char* Word;   ///< on the command line
};
/// By ReportKind.
inline constexpr std::array<ReportName, 10> ReportNames = {{{"Travel Time and Delay Study", "cover"},
                                                            {"Study Summary", "summary"},
                                                            {"Statistics over Runs", "overall"},
                                                            {"Before and After", "before-after"},
                                                            {"Control Delay and Running Average", "chart"},
                                                            {"Time-Space Diagram and Speeds", "time-space"},
                                                            {"Map of the Runs", "map"},
                                                            {"Speed Profiles", "profiles"},
                                                            {"Method and Grades", "method"},
                                                            {"Detailed Statistics by Run", "statistics"}}};

/// Which reports are printed.
struct ReportChoice : PageChoice {
    /// By ReportKind. The appendix is long and printed only where it is wanted.
    std::array<bool, ReportNames.size()> Reports = {true, true, true, true, true, true, true, true, true, false};
};

/// A comparison of studies as a document of its own; the first is the one that the others are compared with.
PagedDocument MakeComparisonReport(const std::vector<ConditionStatistics>& conditions, const StatisticsOptions& options,
                                   const AppSettings& settings, Date printed, const ReportChoice& choice,
                                   const TextMeasure& measure);

/// The chosen reports as one document. A study without runs has no other pages than those of the summary, and one whose
/// runs were driven all before or all after has no page that compares them, one without positions no map, unless that
/// page alone is chosen. The drawings need nothing of `data` afterwards.
PagedDocument MakeReport(const ReportData& data, const ReportChoice& choice, const TextMeasure& measure);

}  // namespace vantor
