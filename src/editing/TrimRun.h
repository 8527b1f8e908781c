#pragma once

#include <cstdint>
#include <string>

#include "analysis/DelayStatistics.h"
#include "core/RunRecords.h"
#include "core/StudyRecords.h"
#include "core/ports/FileSystem.h"

namespace vantor {

/// The run cut to its samples `first` to `last`, both kept, with what its header tells of them decoded anew. The
/// start time moves on by the seconds that are cut from the front. Names stay with their nodes; a start or an end of
/// the run that is no node any more has none. Error 9 when the run has no such samples.
RunRecord CutRun(const RunRecord& run, std::int32_t first, std::int32_t last);

/// What keeps a run from being trimmed to its boundaries, as the text to show; empty when nothing does.
std::string TrimProblem(const RunRecord& run, const PlotState& plot, const StudyRunEntry& entry);

/// Cuts the run to what lies between its boundary samples and writes it over its file, folder + the entry's run name;
/// the untrimmed file is kept as ".bak" beside it. The entry's boundaries become those of the shorter run: both stay
/// set. Its figures are to be computed afterwards, over distance.
///
/// Any file error leaves run, entry and the run's file as they were.
void TrimRun(FileSystem& files, const std::string& folder, RunRecord& run, const PlotState& plot, StudyRunEntry& entry);

}  // namespace vantor
