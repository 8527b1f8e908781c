#include "editing/TrimRun.h"

#include <algorithm>

#include "analysis/CutRun.h"
#include "analysis/RunFacts.h"
#include "core/RunArithmetic.h"

namespace vantor {

TrimmedRun TrimToBoundaries(const RunRecord& run, const PlotState& plot, const StudyRunEntry& entry) {
    constexpr const char* Remedy = "\nDrag the blue lines to where the run shall begin and end, then trim it.";
    TrimmedRun trimmed;
    trimmed.Problem = HasBothBoundaries(entry) ? BoundaryProblem(run, plot, entry) : "A boundary is not set yet.";
    if (!trimmed.Problem.empty()) {
        trimmed.Problem += Remedy;
        return trimmed;
    }
    const FoundBoundaries found = FindBoundaries(run, plot, entry);
    const RunArithmetic arithmetic(run.Header.CalConstant, 1.0F);
    std::int32_t first = *found.Start;
    while (first > 1 && arithmetic.DistanceIncrement(run.SampleValues[first]) <= 0) --first;
    const std::int32_t last = std::min(*found.End + 1, run.Header.SampleCount);
    if (first == 1 && last == run.Header.SampleCount) {
        trimmed.Problem = "The run begins and ends at its boundaries already: there is nothing to cut.";
        return trimmed;
    }
    const std::int32_t feetCut = first == 1 ? 0 : RunningDistances(run)[first - 1];
    trimmed.Run = CutRun(run, first, last);
    trimmed.Plot = {plot.Axis, *found.Start - first + 1, *found.End - first + 1};
    trimmed.Entry = entry;
    trimmed.Entry.CDStartDist -= feetCut;
    trimmed.Entry.CDEndDist -= feetCut;
    return trimmed;
}

}  // namespace vantor
