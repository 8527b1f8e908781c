#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "corridor/Corridor.h"

namespace vantor {

/// "07:00" of a minute of the day, and back; "24:00" is midnight. Nothing for any other text.
std::string ClockText(int minute);
std::optional<int> MinuteOfText(std::string_view text);

/// "07:00-09:00 AM", the times before the name; nothing for a text without one of them.
std::string TextOf(const CorridorPeriod& period);
std::optional<CorridorPeriod> PeriodOfText(std::string_view text);

}  // namespace vantor
