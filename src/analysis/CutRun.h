#pragma once

#include <cstdint>

#include "core/RunRecords.h"

namespace vantor {

/// The run cut to its samples `first` to `last`, both kept, with what its header tells of them decoded anew. The
/// start moves on by the seconds that are cut from the front, past midnight into the next day. Names stay with their
/// nodes; a start or an end of the run that is no node any more has none. Error 9 when the run has no such samples.
RunRecord CutRun(const RunRecord& run, std::int32_t first, std::int32_t last);

}  // namespace vantor
