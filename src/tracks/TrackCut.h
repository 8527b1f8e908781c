#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "tracks/TrackPoint.h"

namespace vantor {

/// Where a track is cut into pieces for runs.
struct TrackCuts {
    double GapSeconds = 300;  ///< a longer time between two points; 0 for no such cut
    bool AtSegments = true;
    double StandingMph = 1;       ///< at or below it a vehicle stands
    double StandingSeconds = 30;  ///< longer standing at both ends is cut off, but for one second; 0 for no such cut
};

/// Points of a track that may become a run.
struct TrackPiece {
    std::size_t First = 0;
    std::size_t Count = 0;
    double CutFromStart = 0;  ///< seconds of standing
    double CutFromEnd = 0;    ///< seconds of standing
    bool GoesOn = false;      ///< cut only because a run holds no more seconds; the next piece goes on
};

struct TrackPieces {
    std::vector<TrackPiece> Pieces;
    std::size_t Left = 0;  ///< points outside of any piece: without a time, alone, or standing throughout
};

/// Seconds that a run holds.
inline constexpr double LongestPiece = 32767;

/// Cuts points at whole seconds (WholeSecondsOf) with their speeds.
TrackPieces CutTrack(std::span<const TrackPoint> points, const TrackCuts& cuts = {});

}  // namespace vantor
