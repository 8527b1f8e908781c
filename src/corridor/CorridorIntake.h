#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "corridor/Passes.h"

namespace vantor {

/// A run that a track gives along a corridor.
struct TrackPass {
    RunRecord Run;  ///< without a name, its nodes flagged and named
    Way Along = Way::Forward;
    std::size_t Nodes = 0;  ///< that it passes
    TrackSource Source;
};

/// Cuts a track, read as one run, into its passes. `source` is its file; the times of the passes are put in.
std::vector<TrackPass> PassesOfTrack(const RunRecord& track, const Corridor& corridor, const TrackSource& source);

/// The corridor's record of a run that lies in a Study Group under that name.
CorridorRun CorridorRunOf(const RunRecord& run, const std::string& group, const std::string& name, Way along);

/// Takes a run into the corridor; one of the same name and group is replaced where it stands.
void TakeRun(Corridor& corridor, CorridorRun run);

/// Its run of that group and name, letter case ignored; null for none.
const CorridorRun* FindCorridorRun(const Corridor& corridor, const std::string& group, const std::string& name);

}  // namespace vantor
