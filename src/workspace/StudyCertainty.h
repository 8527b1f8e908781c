#pragma once

#include <string>
#include <vector>

#include "analysis/StudyResults.h"
#include "core/StudyOptions.h"
#include "core/Units.h"

namespace vantor {

/// How sure the average control delay of a study is, in the texts that stand beside it. Empty where there is nothing to
/// say: of no counted run.
struct StudyCertainty {
    std::string Interval;         ///< "72 s ± 15, E to F; 8 runs, 1 day, 06:53 to 08:38; 95 %"
    std::string RunsNeeded;       ///< "for ±10 % of this delay 28 runs, 20 more"
    std::string WithoutSetAside;  ///< "72 (67 without 1 set aside)"; empty where none is

    bool operator==(const StudyCertainty&) const = default;
};

/// `rows` are those of the study's run list; the counted ones are taken, those that are set aside too.
StudyCertainty CertaintyOf(const std::vector<RunListRow>& rows, const StatisticsOptions& options, const Units& units);

}  // namespace vantor
