#include "tracks/TrackTexts.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cmath>

#include "core/Text.h"

namespace vantor {
namespace {

/// The number that two digits at `at` are; -1 where they are none.
int TwoDigitsAt(std::string_view text, std::size_t at) {
    if (at + 2 > text.size()) return -1;
    const int first = text[at] - '0';
    const int second = text[at + 1] - '0';
    return first < 0 || first > 9 || second < 0 || second > 9 ? -1 : 10 * first + second;
}

/// Seconds that a zone is ahead of UTC; nothing for a text that is none.
std::optional<int> OffsetOfZone(std::string_view zone) {
    if (zone == "Z" || zone == "z") return 0;
    if (zone.size() < 3 || (zone[0] != '+' && zone[0] != '-')) return std::nullopt;
    const int hours = TwoDigitsAt(zone, 1);
    std::string_view rest = zone.substr(3);
    if (rest.size() == 3 && rest[0] == ':') rest.remove_prefix(1);
    const int minutes = rest.empty() ? 0 : rest.size() == 2 ? DigitsOf(rest) : -1;
    if (hours < 0 || hours > 23 || minutes < 0 || minutes > 59) return std::nullopt;
    return (zone[0] == '-' ? -1 : 1) * (hours * 3600 + minutes * 60);
}

/// The seconds at the start of a text, with decimals or none, taken off it; -1 where there are none. A leap second, 60,
/// counts as the second before it.
double TakeSeconds(std::string_view& text) {
    const int whole = TwoDigitsAt(text, 0);
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

/// A number of up to 15 digits. These and the power of ten are exact, so their quotient is rounded once, as it has to
/// be.
std::optional<double> ShortNumber(std::string_view text) {
    constexpr std::array Powers = {1.0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                   1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
    if (text.size() > Powers.size()) return std::nullopt;
    std::int64_t digits = 0;
    std::size_t point = text.size();
    for (std::size_t i = 0; i < text.size(); ++i) {
        const int digit = text[i] - '0';
        if (digit >= 0 && digit <= 9)
            digits = 10 * digits + digit;
        else if (text[i] == '.' && point == text.size())
            point = i;
        else
            return std::nullopt;
    }
    const std::size_t decimals = point == text.size() ? 0 : text.size() - point - 1;
    if (text == ".") return std::nullopt;
    return static_cast<double>(digits) / Powers[decimals];
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
    if (const auto number = ShortNumber(digits)) return isNegative ? -*number : *number;
    double number = 0;
    const auto [end, error] =
        std::from_chars(digits.data(), digits.data() + digits.size(), number, std::chars_format::fixed);
    if (error != std::errc() || end != digits.data() + digits.size()) return std::nullopt;
    return isNegative ? -number : number;
}

std::optional<double> NumberOfCell(std::string_view cell, bool decimalComma) {
    cell = Trim(cell);
    double sign = 1;
    const auto takeSide = [&](char letter) {
        const char upper = static_cast<char>(letter & ~0x20);
        if (upper != 'N' && upper != 'S' && upper != 'E' && upper != 'W') return false;
        if (upper == 'S' || upper == 'W') sign = -1;
        return true;
    };
    if (!cell.empty() && takeSide(cell.back()))
        cell.remove_suffix(1);
    else if (!cell.empty() && takeSide(cell.front()))
        cell.remove_prefix(1);
    cell = Trim(cell);
    std::array<char, 40> text{};
    if (decimalComma && cell.size() <= text.size()) {
        std::ranges::replace_copy(cell, text.begin(), ',', '.');
        cell = {text.data(), cell.size()};
    }
    const auto number = TrackNumber(cell);
    return number ? std::optional(sign * *number) : std::nullopt;
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
    const auto day = DaysSince1970(DigitsOf(text.substr(0, 4)), TwoDigitsAt(text, 5), TwoDigitsAt(text, 8));
    const int hour = TwoDigitsAt(text, 11);
    const int minute = TwoDigitsAt(text, 14);
    std::string_view rest = text.substr(17);
    const double seconds = TakeSeconds(rest);
    rest = TrimLeft(rest);
    hasZone = !rest.empty();
    const auto offset = hasZone ? OffsetOfZone(rest) : std::optional(0);
    if (!day || hour < 0 || hour > 23 || minute < 0 || minute > 59 || seconds < 0 || !offset) return std::nullopt;
    return static_cast<double>(*day * SecondsOfDay + hour * 3600 + minute * 60 - *offset) + seconds;
}

std::optional<double> PackedClock(std::string_view text) {
    const int hour = TwoDigitsAt(text, 0);
    const int minute = TwoDigitsAt(text, 2);
    if (hour < 0 || hour > 23 || minute < 0 || minute > 59) return std::nullopt;
    text.remove_prefix(4);
    const double seconds = TakeSeconds(text);
    if (seconds < 0 || !text.empty()) return std::nullopt;
    return hour * 3600 + minute * 60 + seconds;
}

}  // namespace vantor
