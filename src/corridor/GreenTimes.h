#pragma once

#include <cstddef>
#include <vector>

#include "core/Units.h"
#include "corridor/CorridorResults.h"
#include "plots/Plot.h"
#include "statistics/TimeSpacePlot.h"

namespace vantor {

/// Adds to a time-space diagram by the time of day when the signals of a way are green, as part `beneath`: pieces of
/// their lines, those before and those after beside each other where they differ; and with an ideal speed and one
/// condition, the ways from signal to signal that pass both on green. `groups` are the runs that are drawn.
void AddGreenTimes(Plot& plot, std::size_t beneath, const Corridor& corridor, const CorridorFilter& filter, Way way,
                   const std::vector<RunsAlike>& groups, const Units& units);

}  // namespace vantor
