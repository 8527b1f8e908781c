#pragma once

#include <optional>

#include "core/RunRecords.h"

namespace vantor {

/// A place on the earth, decimal degrees, negative south and west.
struct Position {
    double Latitude = 0;
    double Longitude = 0;

    bool operator==(const Position&) const = default;
};

/// Nothing for what is no position: a receiver without a fix writes -1 or 0, which as degrees and minutes is a sixtieth
/// of a degree at most; no road leads there.
std::optional<Position> PositionFrom(double latitude, double longitude);
/// Where the vehicle was in a sample; nothing for runs of counters and for seconds without a fix.
std::optional<Position> PositionOf(const RunSample& sample);

/// On the great circle over the mean earth radius, 6371.0088 km, by the haversine formula, which is exact for short
/// ways, too.
double FeetBetween(const Position& from, const Position& to);

}  // namespace vantor
