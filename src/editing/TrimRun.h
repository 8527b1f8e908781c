#pragma once

#include <cstdint>
#include <string>

#include "analysis/DelayStatistics.h"
#include "core/RunRecords.h"
#include "core/StudyRecords.h"

namespace vantor {

/// A run cut to what lies between its boundaries, and the boundaries in it.
struct TrimmedRun {
    std::string Problem;  ///< why the run was not cut, as the text to show; empty when it was
    RunRecord Run;
    PlotState Plot;
    StudyRunEntry Entry;
};

/// Keeps the samples from the one with which the run comes to the start boundary (in a standstill the last one that
/// moved) to the one behind that of the end boundary, without which a computation would not find it. The boundaries
/// move with the samples: a computation along the axis of `plot` gives what it gave before.
TrimmedRun TrimToBoundaries(const RunRecord& run, const PlotState& plot, const StudyRunEntry& entry);

}  // namespace vantor
