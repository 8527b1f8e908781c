#pragma once

#include <optional>
#include <string>
#include <vector>

#include "core/Units.h"
#include "plots/Plot.h"
#include "statistics/RunTraces.h"

namespace vantor {

/// The speeds of runs over one piece of the road.
struct SpeedsOver {
    double From = 0;  ///< feet, along the mean places
    double To = 0;
    /// Of the runs that drive through it, mph; nothing for fewer of them than percentiles take.
    std::optional<double> P15, P50, P85;
};

/// The road in pieces of one length. A run's speed over a piece is its length, as the run measured it, over the time
/// spent in it: a stop lowers the piece in which it happens.
std::vector<SpeedsOver> SpeedBand(const PlottedRuns& runs, const MeanPlaces& places);

/// So many single profiles at most are drawn under the bands.
inline constexpr int MostSingleProfiles = 100;

/// The speed profiles of runs with the same number of nodes, lined up at the nodes, with the median and the band from
/// P15 to P85; those before and after apart. A run is an item, item 1 first. `showsRuns`: the single ones, too,
/// which those of a group without a band are in any case.
Plot OverlayPlot(const PlottedRuns& runs, bool showsRuns, const std::string& title, const Units& units);

}  // namespace vantor
