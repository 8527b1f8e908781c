#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "core/Date.h"

namespace vantor {

/// The day of a typed "mm/dd/yy" or "mm/dd/yyyy", parted by "/", "-" or "."; nothing when there is no such day.
std::optional<Date> DayOfText(std::string_view text);
/// The time of day of a typed "hh:mm" or "hh:mm:ss"; nothing when there is no such time.
std::optional<Date> ClockOfText(std::string_view text);
/// "Monday"; empty for no valid date.
std::string WeekdayName(Date date);

}  // namespace vantor
