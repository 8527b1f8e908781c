#pragma once

#include <cstddef>
#include <vector>

#include "corridor/CorridorRuns.h"
#include "plots/PlotMap.h"
#include "statistics/OverlayPlot.h"

namespace vantor {

// Distances in plots along a corridor are the corridor's, from the node that the way passes first: below 0 before it.

/// A band on that axis, feet.
struct PlacedBand {
    double From = 0;
    double To = 0;
    bool IsOwn = false;  ///< of one run alone
    bool IsCut = false;  ///< it would overlap the one beside it
};

/// Where the corridor's things lie on the axis of a way.
class WayAxis {
public:
    WayAxis(const Corridor& corridor, Way way) : corridor_(corridor), way_(way) {}

    /// Of a node, as the corridor counts them, feet.
    double PlaceOf(std::size_t node) const;
    /// The bands by the corridor's nodes: those of all runs, or with a run's own.
    std::vector<PlacedBand> Bands(const CorridorRun& run = {}) const;
    /// From the first band's beginning to the last one's end.
    PlotRange Bounds() const;
    /// A matched run on the axis: stretched from node to node, as it was measured before the first and behind the last
    /// one. It must pass a node.
    AlignedRun Align(const MatchedRun& run) const;

private:
    const Corridor& corridor_;
    Way way_;
};

}  // namespace vantor
