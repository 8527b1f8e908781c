#pragma once

#include <cstdint>
#include <string>

#include "analysis/DelayStatistics.h"
#include "core/RunRecords.h"
#include "core/StudyRecords.h"

namespace vantor {

/// The run cut to its samples `first` to `last`, both kept, with what its header tells of them decoded anew. The
/// start moves on by the seconds that are cut from the front, past midnight into the next day. Names stay with their
/// nodes; a start or an end of the run that is no node any more has none. Error 9 when the run has no such samples.
RunRecord CutRun(const RunRecord& run, std::int32_t first, std::int32_t last);

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
