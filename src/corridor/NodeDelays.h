#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "analysis/StudyResults.h"
#include "core/AppSettings.h"
#include "core/RunFile.h"
#include "corridor/RunMatch.h"

namespace vantor {

/// Where the control delay of a run at a node is measured: feet of the run's own distances.
struct PassedBand {
    std::int32_t StartFt = 0;  ///< below 1 where the run begins inside the band
    std::int32_t EndFt = 0;
    bool IsOwn = false;  ///< this run's own, not the corridor's
    bool IsCut = false;  ///< it would overlap the one beside it
};

/// By the corridor's nodes; nothing for one that the run does not pass. Bands that overlap, own ones apart, end in the
/// middle of what they share, but never behind the other one's node.
std::vector<std::optional<PassedBand>> BandsOf(const Corridor& corridor, const CorridorRun& run, const RunMatch& match);

/// How delays are computed once more to see what hangs on the boundaries and on the ideal speed: both boundaries moved
/// outwards by so many feet, that many miles per hour more. The first is as it is.
struct BandShift {
    std::int32_t OutwardFt = 0;
    std::int32_t FasterMph = 0;
};
inline constexpr std::array<BandShift, 9> BandShifts = {BandShift{0, 0}, {-100, -2}, {-100, 0}, {-100, 2}, {0, -2},
                                                        {0, 2},          {100, -2},  {100, 0},  {100, 2}};

/// The control delay of a run at a node.
struct NodeDelay {
    RunListRow Row;       ///< as that of a study with these boundaries; none are set where there is no figure
    PassedBand Measured;  ///< means nothing for a node that is not passed
    std::string Problem;  ///< why there is no figure, as a sentence; empty where there is one
    /// By BandShifts; nothing where a boundary cannot be moved so. Without an ideal speed of its own a run has none
    /// faster or slower.
    std::array<std::optional<std::int32_t>, BandShifts.size()> Shifted;

    bool HasFigure() const { return Problem.empty(); }
};

/// The delays of a run by the corridor's nodes, each by ComputeRunDelay. The ideal speed is that of the direction.
std::vector<NodeDelay> DelaysOf(const RunReading& run, const Corridor& corridor, const CorridorRun& as,
                                const RunMatch& match, const AppSettings& settings);

}  // namespace vantor
