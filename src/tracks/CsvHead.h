#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "tracks/CsvMapping.h"

namespace vantor {

/// What the head of a column tells.
struct CsvHeadCell {
    CsvColumn Column = CsvColumn::Other;
    int Rank = 0;  ///< of several columns of one kind the highest is read, the first of those
    std::optional<CsvSpeedUnit> Unit;
    bool IsUtc = false;
    bool IsElapsed = false;
    bool IsMilliseconds = false;
};

/// The unit of speed that a text tells: "km/h", "Meters/second".
std::optional<CsvSpeedUnit> SpeedUnitOf(std::string_view text);

/// The spellings of phone loggers, receivers, converters and OBD apps, with their units.
CsvHeadCell CsvHeadOf(std::string_view cell);

}  // namespace vantor
