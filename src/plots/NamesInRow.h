#pragma once

#include <span>
#include <vector>

#include "plots/PlotMap.h"

namespace vantor {

/// A name over a place of a row.
struct RowName {
    double Place = 0;
    double Width = 0;
    double Least = 0;  ///< what it may be shortened to
};

/// What becomes of names that would meet.
enum class Crowded {
    MovesApart,  ///< for two of them: both, as far as the row goes
    LeavesOut    ///< they part halfway between their places, moved or shortened, or the second is left out
};

/// The room of each name, none for one that is left out. They go from left to right; each stands in the middle over its
/// place, or as near to it as the row lets it, and not closer than `gap` to the one before.
std::vector<PlotRange> PlaceInRow(std::span<const RowName> names, const PlotRange& row, double gap, Crowded crowded);

}  // namespace vantor
