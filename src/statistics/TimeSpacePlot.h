#pragma once

#include <string>

#include "core/Units.h"
#include "plots/Plot.h"
#include "statistics/RunTraces.h"

namespace vantor {

/// From where the time of a time-space diagram counts.
enum class TimeSpaceClock { FromStart, TimeOfDay };

/// The ways of runs with the same number of nodes: distance up, time across, their nodes as level lines. A run is an
/// item, item 1 first. Where there are runs before and after, the ones before are dashed. Counted from the start, the
/// mean ways lie on top. A run without a time of day has no line by the time of day, but keeps its number.
Plot TimeSpacePlot(const PlottedRuns& runs, TimeSpaceClock clock, const std::string& title, const Units& units);

/// True when it is drawn by that clock.
bool IsDrawn(const MeasuredRun& run, TimeSpaceClock clock);

/// What tells runs before and after apart in plots over runs, without colour, too.
struct RunsLook {
    const char* Caption;
    PlotInk Ink;
    LinePattern Pattern;
    PlotMarker Marker;  ///< of means
};
inline constexpr RunsLook BeforeLook = {"Before", &Colours::Boundary, LinePattern::Dashed, PlotMarker::Square};
inline constexpr RunsLook AfterLook = {"After", &Colours::Trace, LinePattern::Solid, PlotMarker::Dot};
/// Of runs that are all of one group.
inline constexpr RunsLook OneLook = {"Runs", &Colours::Trace, LinePattern::Solid, PlotMarker::Dot};

/// The groups that plots over runs draw apart: those before and those after, or one where all are of the same.
struct RunsAlike {
    RunsLook Look;
    PlottedRuns Runs;
};
std::vector<RunsAlike> GroupsOf(const PlottedRuns& runs);

}  // namespace vantor
