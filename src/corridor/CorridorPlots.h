#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "core/Units.h"
#include "corridor/CorridorResults.h"
#include "plots/Plot.h"
#include "statistics/OverlayPlot.h"
#include "statistics/TimeSpacePlot.h"

namespace vantor {

// Plots over the runs of one way of a corridor. Their distances are the corridor's, from the node that the way passes
// first: below 0 before it.

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

/// The runs that plots show, as indexes into the matched ones: those that the filter takes, that drive that way past a
/// node or more and are not set aside. Item 1 of a plot is the first of them.
std::vector<std::size_t> PlottedRunsOf(const Corridor& corridor, const std::vector<MatchedRun>& runs,
                                       const CorridorFilter& filter, Way way);

/// What is looked at besides the runs.
struct CorridorLook {
    std::optional<std::size_t> Chosen;  ///< of the matched runs: its own bands are drawn dotted
    bool ShowsRuns = true;              ///< single ones, where there is a band of all
    Units Shown;
};

/// The speed profiles of all runs of a way over each other, with the nodes, their bands and the ideal speed.
Plot CorridorProfilePlot(const Corridor& corridor, const std::vector<MatchedRun>& runs, const CorridorFilter& filter,
                         Way way, const CorridorLook& look);

/// Distance up, time across. Counted from the start, a run begins where it comes to the first band; one that begins
/// behind it begins when the others are there on the average. By the time of day, signals whose timing is known are
/// drawn green where they are, and between them the ways at the ideal speed that pass both on green.
Plot CorridorTimeSpacePlot(const Corridor& corridor, const std::vector<MatchedRun>& runs, const CorridorFilter& filter,
                           Way way, TimeSpaceClock clock, const CorridorLook& look);

}  // namespace vantor
