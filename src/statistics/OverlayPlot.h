#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "core/Units.h"
#include "plots/Plot.h"
#include "statistics/RunTraces.h"

namespace vantor {

/// A run on the distance axis of a plot over several runs.
struct AlignedRun {
    PlottedRun Of;
    std::vector<double> At;  ///< feet on the axis at the end of each second, after those at the start; never falling
};
/// Lined up at the mean places of the nodes.
std::vector<AlignedRun> AlignedAt(const PlottedRuns& runs, const MeanPlaces& places);

/// The speeds of runs over one piece of the road.
struct SpeedsOver {
    double From = 0;  ///< feet on the axis
    double To = 0;
    /// Of the runs that drive through it, mph; nothing for fewer of them than percentiles take.
    std::optional<double> P15, P50, P85;
};

/// The road in pieces of one length. A run's speed over a piece is its length, as the run measured it, over the time
/// spent in it: a stop lowers the piece in which it happens.
std::vector<SpeedsOver> SpeedBand(std::span<const AlignedRun> runs, const PlotRange& road);
std::vector<SpeedsOver> SpeedBand(const PlottedRuns& runs, const MeanPlaces& places);

/// So many single profiles at most are drawn under the bands.
inline constexpr int MostSingleProfiles = 100;

/// Adds the profiles to a plot with distances across and speeds up, with their legend: a run is the next item.
/// `showsRuns` as of OverlayPlot.
void AddProfiles(Plot& plot, const std::vector<AlignedRun>& runs, const PlotRange& road, bool showsRuns,
                 const Units& units);
/// The upright axis for them.
PlotAxis AxisOfSpeeds(const PlottedRuns& runs, const Units& units);

/// The speed profiles of runs with the same number of nodes, lined up at the nodes, with the median and the band from
/// P15 to P85; those before and after apart. A run is an item, item 1 first. `showsRuns`: the single ones, too,
/// which those of a group without a band are in any case.
Plot OverlayPlot(const PlottedRuns& runs, bool showsRuns, const std::string& title, const Units& units);

}  // namespace vantor
