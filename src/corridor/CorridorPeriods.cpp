#include "corridor/CorridorPeriods.h"

#include <cstddef>
#include <cstdint>

#include "core/Numeric.h"
#include "core/Text.h"

namespace vantor {

std::string ClockText(int minute) { return ZeroPadded(minute / 60, 2) + ":" + ZeroPadded(minute % 60, 2); }

std::optional<int> MinuteOfText(std::string_view text) {
    constexpr std::int32_t DayHours = 24;
    const std::string_view trimmed = Trim(text);
    const std::size_t colon = trimmed.find(':');
    if (colon == 0 || colon > 2 || trimmed.size() != colon + 3) return std::nullopt;
    const auto hour = CountOfText(trimmed.substr(0, colon), DayHours);
    const auto minute = CountOfText(trimmed.substr(colon + 1), 59);
    if (!hour || !minute || (*hour == DayHours && *minute != 0)) return std::nullopt;
    return *hour % DayHours * 60 + *minute;
}

std::string TextOf(const CorridorPeriod& period) {
    return ClockText(period.From) + "-" + ClockText(period.To) + " " + period.Name;
}

std::optional<CorridorPeriod> PeriodOfText(std::string_view text) {
    const std::string_view trimmed = Trim(text);
    const std::size_t dash = trimmed.find('-');
    if (dash == std::string_view::npos) return std::nullopt;
    const std::string_view rest = TrimLeft(trimmed.substr(dash + 1));
    const std::size_t blank = rest.find(' ');
    const auto from = MinuteOfText(trimmed.substr(0, dash));
    const auto to = MinuteOfText(rest.substr(0, blank));
    if (!from || !to || blank == std::string_view::npos) return std::nullopt;
    return CorridorPeriod{std::string(Trim(rest.substr(blank))), *from, *to};
}

}  // namespace vantor
