#pragma once

#include "core/RunRecords.h"
#include "map/MapTrack.h"

namespace vantor {

/// True when at least one sample of a run has a position. Runs of counters have none.
bool HasPositions(const RunRecord& run);
/// The way of a run, its samples' positions, speeds and times. It is parted where positions are missing.
MapTrack TrackOf(const RunRecord& run, const std::string& name);
/// The nodes of a run, at its flagged samples, with their names; those without a position are left out.
std::vector<MapNode> NodesOf(const RunRecord& run);

}  // namespace vantor
