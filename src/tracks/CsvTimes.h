#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace vantor {

/// The order of day and month in dates of three numbers that do not begin with a year of four digits.
enum class DayOrder { Unknown, DayFirst, MonthFirst };

/// A moment as the text of a cell tells it: a day, a time of day, or both.
struct CellTime {
    std::optional<std::int64_t> Day;      ///< since 1970
    std::optional<double> Clock;          ///< seconds of the day
    std::optional<int> ZoneOffset;        ///< seconds ahead of UTC, where the text has one
    DayOrder Proves = DayOrder::Unknown;  ///< the order that the numbers leave no doubt about
    bool IsAmbiguous = false;             ///< either order makes a day, and another one each
};

/// A date and a time of day in one of the common forms: ISO, parted by / . or -, with names of months and days of the
/// week, AM and PM, a zone as Z, UTC, GMT or +hh:mm, "20261122", "161418" and, in a column of dates, "261122"; a year
/// of two digits is 2000 or later. Where `order` is unknown, an ambiguous date is taken as if the month came first.
/// Nothing for any other text.
std::optional<CellTime> CellTimeOf(std::string_view text, DayOrder order, bool isDate = false);

}  // namespace vantor
