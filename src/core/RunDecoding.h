#pragma once

#include "core/RunRecords.h"

namespace vantor {

/// Derives from a run's samples what its header tells of them: keys used and their labels, events, sections, length
/// and duration. The calibration is the header's. Error 6 when a count or a length does not fit.
void DecodeRunSamples(RunRecord& run);

/// DecodeRunSamples for a run whose samples were edited: keys that are still used keep the labels they had.
void DecodeEditedRun(RunRecord& run);

/// DecodeRunSamples, then what a new run is: "Primary" with 3 or more sections, else "Secondary"; "Before".
void DecodeNewRun(RunRecord& run);

}  // namespace vantor
