#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "core/Units.h"
#include "corridor/CorridorResults.h"
#include "corridor/WayAxis.h"
#include "plots/Plot.h"
#include "statistics/TimeSpacePlot.h"

namespace vantor {

// Plots over the runs of one way of a corridor, along its WayAxis.

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

/// A plot as it is drawn while it moves, in a few milliseconds: without single runs and large surfaces of many corners,
/// its lines thin.
Plot LightOf(const Plot& plot);

}  // namespace vantor
