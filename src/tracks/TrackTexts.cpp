#include "tracks/TrackTexts.h"

#include <charconv>
#include <chrono>
#include <cmath>

#include "core/Text.h"

namespace vantor {
namespace {

/// The number that `count` digits at `at` are; -1 where they are none.
int DigitsAt(std::string_view text, std::size_t at, std::size_t count) {
    return at + count <= text.size() ? DigitsOf(text.substr(at, count)) : -1;
}

/// Seconds that a zone is ahead of UTC; nothing for a text that is none.
std::optional<int> OffsetOfZone(std::string_view zone) {
    if (zone == "Z" || zone == "z") return 0;
    if (zone.size() < 3 || (zone[0] != '+' && zone[0] != '-')) return std::nullopt;
    const int hours = DigitsAt(zone, 1, 2);
    std::string_view rest = zone.substr(3);
    if (rest.size() == 3 && rest[0] == ':') rest.remove_prefix(1);
    const int minutes = rest.empty() ? 0 : rest.size() == 2 ? DigitsOf(rest) : -1;
    if (hours < 0 || hours > 23 || minutes < 0 || minutes > 59) return std::nullopt;
    return (zone[0] == '-' ? -1 : 1) * (hours * 3600 + minutes * 60);
}

/// The seconds at the start of a text, with decimals or none, taken off it; -1 where there are none. A leap second, 60,
/// counts as the second before it.
double TakeSeconds(std::string_view& text) {
    const int whole = DigitsAt(text, 0, 2);
    if (whole < 0 || whole > 60) return -1;
    text.remove_prefix(2);
    double seconds = whole == 60 ? 59 : whole;
    if (text.empty() || (text[0] != '.' && text[0] != ',')) return seconds;
    text.remove_prefix(1);
    double part = 0.1;
    if (text.empty() || !IsDigit(text[0])) return -1;
    for (; !text.empty() && IsDigit(text[0]); text.remove_prefix(1), part /= 10) seconds += part * (text[0] - '0');
    return seconds;
}

}  // namespace

std::optional<std::int64_t> DaysSince1970(int year, int month, int day) {
    const std::chrono::year_month_day civil{std::chrono::year{year}, std::chrono::month{static_cast<unsigned>(month)},
                                            std::chrono::day{static_cast<unsigned>(day)}};
    if (year < 0 || month < 1 || month > 12 || day < 1 || day > 31 || !civil.ok()) return std::nullopt;
    return std::chrono::sys_days{civil}.time_since_epoch().count();
}

std::optional<double> TrackNumber(std::string_view text) {
    const std::string_view trimmed = Trim(text);
    if (trimmed.empty()) return std::nullopt;
    std::string_view digits = trimmed;
    const bool isNegative = digits[0] == '-';
    if (isNegative || digits[0] == '+') digits.remove_prefix(1);
    // from_chars alone would also read a second sign, "inf" and "nan".
    if (digits.empty() || (!IsDigit(digits[0]) && digits[0] != '.')) return std::nullopt;
    double number = 0;
    const auto [end, error] =
        std::from_chars(digits.data(), digits.data() + digits.size(), number, std::chars_format::fixed);
    if (error != std::errc() || end != digits.data() + digits.size()) return std::nullopt;
    return isNegative ? -number : number;
}

int DigitsOf(std::string_view text) {
    if (text.empty() || text.size() > 9) return -1;
    int number = 0;
    for (const char character : text) {
        if (!IsDigit(character)) return -1;
        number = 10 * number + (character - '0');
    }
    return number;
}

std::optional<TrackPosition> PositionOf(std::optional<double> latitude, std::optional<double> longitude) {
    if (!latitude || !longitude || std::fabs(*latitude) > 90 || std::fabs(*longitude) > 180) return std::nullopt;
    return TrackPosition{*latitude, *longitude};
}

std::optional<double> TrackSpeed(std::optional<double> number, double mphOfUnit) {
    constexpr double Fastest = 1000;
    if (!number || !(*number >= 0 && *number * mphOfUnit <= Fastest)) return std::nullopt;
    return *number * mphOfUnit;
}

std::optional<double> TrackCourse(std::optional<double> number) {
    if (!number || !(*number >= 0 && *number <= 360)) return std::nullopt;
    return *number == 360 ? 0 : *number;
}

std::optional<double> IsoTime(std::string_view text) {
    bool hasZone = false;
    return IsoTime(text, hasZone);
}

std::optional<double> IsoTime(std::string_view text, bool& hasZone) {
    text = Trim(text);
    // "2026-11-22T16:14:18"
    if (text.size() < 19 || text[4] != '-' || text[7] != '-' || text[13] != ':' || text[16] != ':' ||
        (text[10] != 'T' && text[10] != 't' && text[10] != ' '))
        return std::nullopt;
    const auto day = DaysSince1970(DigitsAt(text, 0, 4), DigitsAt(text, 5, 2), DigitsAt(text, 8, 2));
    const int hour = DigitsAt(text, 11, 2);
    const int minute = DigitsAt(text, 14, 2);
    std::string_view rest = text.substr(17);
    const double seconds = TakeSeconds(rest);
    rest = TrimLeft(rest);
    hasZone = !rest.empty();
    const auto offset = hasZone ? OffsetOfZone(rest) : std::optional(0);
    if (!day || hour < 0 || hour > 23 || minute < 0 || minute > 59 || seconds < 0 || !offset) return std::nullopt;
    return static_cast<double>(*day * SecondsOfDay + hour * 3600 + minute * 60 - *offset) + seconds;
}

std::optional<double> PackedClock(std::string_view text) {
    const int hour = DigitsAt(text, 0, 2);
    const int minute = DigitsAt(text, 2, 2);
    if (hour < 0 || hour > 23 || minute < 0 || minute > 59) return std::nullopt;
    text.remove_prefix(4);
    const double seconds = TakeSeconds(text);
    if (seconds < 0 || !text.empty()) return std::nullopt;
    return hour * 3600 + minute * 60 + seconds;
}

}  // namespace vantor
