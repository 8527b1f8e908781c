#pragma once

#include <optional>
#include <string_view>

#include "tracks/CsvMapping.h"
#include "tracks/TrackPoint.h"

namespace vantor {

// Cells that hold more than a number.

/// "12.3 mph": a number and, where the cell has one, its unit. Nothing for any other text.
struct CsvSpeed {
    double Number = 0;
    std::optional<CsvSpeedUnit> Unit;
};
std::optional<CsvSpeed> SpeedOfCell(std::string_view cell, bool decimalComma);

/// Degrees, and minutes and seconds or not: "-83.25", "N42 19.800", "42°19'48.0\"N", "42 19.8". Nothing for any other
/// text.
std::optional<double> DegreesOfCell(std::string_view cell, bool decimalComma);

/// Latitude and longitude in one cell: "N42 19.800 W83 15.000", "42.33, -83.25". Nothing for any other text.
std::optional<TrackPosition> PositionOfCell(std::string_view cell, bool decimalComma);

}  // namespace vantor
