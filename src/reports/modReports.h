#pragma once

#include <array>

#include "reports/ReportData.h"
#include "reports/ReportPages.h"

namespace vantor {

enum class ReportKind { Summary, Statistics, Profiles, Chart };

struct ReportName {
    const char* Title;  ///< at its top
    const char* Word;   ///< on the command line
};
/// By ReportKind, in the order in which they are printed.
inline constexpr std::array<ReportName, 4> ReportNames = {{{"Study Summary", "summary"},
                                                           {"Detailed Statistics by Run", "statistics"},
                                                           {"Speed Profiles", "profiles"},
                                                           {"Control Delay and Running Average", "chart"}}};

/// Which reports are printed, and on what.
struct ReportChoice {
    std::array<bool, ReportNames.size()> Reports = {true, true, true, true};  ///< by ReportKind
    Paper Sheet = Paper::Letter;
    bool IsLandscape = false;
};

/// The chosen reports as one document. A study without runs has no other pages than those of the summary.
/// The drawings need nothing of `data` afterwards.
PagedDocument MakeReport(const ReportData& data, const ReportChoice& choice, const TextMeasure& measure);

}  // namespace vantor
