#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "core/Units.h"
#include "gpsobd/LogProblems.h"
#include "map/MapScene.h"
#include "plots/Plot.h"

namespace vantor {

/// A run of a review as its trace and its map show it. Its places are its rows, from 1 in the order of the review; they
/// are the items of the trace.
struct ReviewedRun {
    std::int16_t RunNumber = 0;
    std::vector<int> Rows;  ///< of the grid, from 1, of each place
    /// Speed over time: its problems, what was not logged, and the chosen row as an upright line.
    Plot Trace;
    std::shared_ptr<const MapScene> Map;  ///< null where no row has a position
    std::vector<int> MapPlaces;           ///< of each point of the map's track

    /// 0 for a row that is none of the run's.
    int PlaceOf(int gridRow) const;
    int RowAt(int place) const { return Rows[static_cast<std::size_t>(place) - 1]; }
    int PlaceOf(const MapHit& hit) const { return hit.Item == 0 ? 0 : MapPlaces[hit.Point]; }
};

/// The run of that number among the rows of a review; `problems` are those of all rows.
ReviewedRun ReviewedRunOf(std::span<const RunPoint> rows, std::span<const LogProblem> problems, std::int16_t runNumber,
                          const Units& units);

}  // namespace vantor
