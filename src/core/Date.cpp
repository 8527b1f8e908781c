#include "core/Date.h"

#include <array>
#include <chrono>
#include <cmath>
#include <vector>

#include "core/Numeric.h"
#include "core/RunTimeError.h"
#include "core/Text.h"

namespace vantor {
namespace {

using std::chrono::day;
using std::chrono::month;
using std::chrono::sys_days;
using std::chrono::year;
using std::chrono::year_month_day;

constexpr sys_days DayZero = sys_days{year{1899} / 12 / 30};
constexpr std::int64_t SecondsPerDay = 86400;

std::optional<Date> DayOf(int yearNumber, int monthNumber, int dayNumber) {
    const bool inRange = monthNumber >= 1 && monthNumber <= 12 && dayNumber >= 1 && dayNumber <= 31;
    const year_month_day civil{year{yearNumber}, month{static_cast<unsigned>(monthNumber)},
                               day{static_cast<unsigned>(dayNumber)}};
    if (!inRange || !civil.ok()) return std::nullopt;
    return Date{static_cast<double>((sys_days{civil} - DayZero).count())};
}

std::optional<Date> ClockOf(int hour, int minute, int second) {
    if (hour < 0 || hour > 23 || minute < 0 || minute > 59 || second < 0 || second > 59) return std::nullopt;
    return Date{static_cast<double>(hour * 3600 + minute * 60 + second) / static_cast<double>(SecondsPerDay)};
}

/// Whole numbers of up to four digits with one separator between each two; none for any other text.
std::vector<int> NumbersOf(std::string_view text, std::string_view separators) {
    constexpr int Most = 9999;
    std::vector<int> numbers;
    bool inNumber = false;
    for (const char character : Trim(text)) {
        if (!IsDigit(character)) {
            if (!inNumber || separators.find(character) == std::string_view::npos) return {};
            inNumber = false;
            continue;
        }
        if (!inNumber) numbers.push_back(0);
        inNumber = true;
        numbers.back() = 10 * numbers.back() + (character - '0');
        if (numbers.back() > Most) return {};
    }
    return inNumber ? numbers : std::vector<int>();
}

Date Existing(const std::optional<Date>& date) {
    if (!date) throw RunTimeError(ErrorNumber::TypeMismatch);
    return *date;
}

}  // namespace

bool IsValidDate(Date date) { return date.Days > -657435.0 && date.Days < 2958466.0; }  // years 100 to 9999

CivilTime CivilOf(Date date) {
    if (!IsValidDate(date)) throw RunTimeError(ErrorNumber::TypeMismatch);
    // Before day 0 the fraction still counts forward from midnight.
    double wholeDays = std::trunc(date.Days);
    auto seconds = static_cast<std::int64_t>(std::floor(std::fabs(date.Days - wholeDays) * SecondsPerDay + 0.5));
    auto days = static_cast<int>(wholeDays);
    if (seconds >= SecondsPerDay) {
        seconds -= SecondsPerDay;
        ++days;
    }
    const year_month_day civil{DayZero + std::chrono::days{days}};
    return {int{civil.year()},
            static_cast<int>(unsigned{civil.month()}),
            static_cast<int>(unsigned{civil.day()}),
            static_cast<int>(seconds / 3600),
            static_cast<int>(seconds / 60 % 60),
            static_cast<int>(seconds % 60)};
}

Date DateOf(int yearNumber, int monthNumber, int dayNumber) {
    return Existing(DayOf(yearNumber, monthNumber, dayNumber));
}

Date TimeOf(int hour, int minute, int second) { return Existing(ClockOf(hour, minute, second)); }

int FullYear(int twoDigits) { return twoDigits + (twoDigits < 30 ? 2000 : 1900); }

std::optional<Date> DayOfText(std::string_view text, std::string_view separators) {
    const std::vector<int> numbers = NumbersOf(text, separators);
    if (numbers.size() != 3) return std::nullopt;
    const auto date = DayOf(numbers[2] < 100 ? FullYear(numbers[2]) : numbers[2], numbers[0], numbers[1]);
    return date && IsValidDate(*date) ? date : std::nullopt;
}

std::optional<Date> ClockOfText(std::string_view text) {
    std::vector<int> numbers = NumbersOf(text, ":");
    if (numbers.size() < 2 || numbers.size() > 3) return std::nullopt;
    numbers.resize(3);
    return ClockOf(numbers[0], numbers[1], numbers[2]);
}

std::string WeekdayName(Date date) {
    constexpr int Days = 7;
    // Day 0 was a Saturday.
    constexpr std::array<const char*, Days> Names = {"Saturday",  "Sunday",   "Monday", "Tuesday",
                                                     "Wednesday", "Thursday", "Friday"};
    if (!IsValidDate(date)) return {};
    const int weekday = static_cast<int>(std::trunc(date.Days)) % Days;
    return Names[static_cast<std::size_t>(weekday < 0 ? weekday + Days : weekday)];
}

std::string ShortDate(Date date) {
    if (!IsValidDate(date)) return {};
    const CivilTime civil = CivilOf(date);
    return ZeroPadded(civil.Month, 2) + "/" + ZeroPadded(civil.Day, 2) + "/" + ZeroPadded(civil.Year % 100, 2);
}

std::string ShortTime(Date date) {
    if (!IsValidDate(date)) return {};
    const CivilTime civil = CivilOf(date);
    return ZeroPadded(civil.Hour, 2) + ":" + ZeroPadded(civil.Minute, 2);
}

std::string DashedDate(Date date) {
    std::string text = ShortDate(date);
    for (char& character : text)
        if (character == '/') character = '-';
    return text;
}

Date ShownDay(Date date) {
    const CivilTime civil = CivilOf(date);
    return DateOf(civil.Year, civil.Month, civil.Day);
}

Date ShownClock(Date date) {
    const CivilTime civil = CivilOf(date);
    return TimeOf(civil.Hour, civil.Minute, civil.Second);
}

std::string IsoDateTime(Date date) {
    if (!IsValidDate(date)) return {};
    const CivilTime civil = CivilOf(date);
    return ZeroPadded(civil.Year, 4) + "-" + ZeroPadded(civil.Month, 2) + "-" + ZeroPadded(civil.Day, 2) + "T" +
           ZeroPadded(civil.Hour, 2) + ":" + ZeroPadded(civil.Minute, 2) + ":" + ZeroPadded(civil.Second, 2);
}

}  // namespace vantor
