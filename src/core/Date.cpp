#include "core/Date.h"

#include <chrono>
#include <cmath>

#include "core/Numeric.h"
#include "core/RunTimeError.h"

namespace vantor {
namespace {

using std::chrono::day;
using std::chrono::month;
using std::chrono::sys_days;
using std::chrono::year;
using std::chrono::year_month_day;

constexpr sys_days DayZero = sys_days{year{1899} / 12 / 30};
constexpr std::int64_t SecondsPerDay = 86400;

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
    const bool inRange = monthNumber >= 1 && monthNumber <= 12 && dayNumber >= 1 && dayNumber <= 31;
    const year_month_day civil{year{yearNumber}, month{static_cast<unsigned>(monthNumber)},
                               day{static_cast<unsigned>(dayNumber)}};
    if (!inRange || !civil.ok()) throw RunTimeError(ErrorNumber::TypeMismatch);
    return {static_cast<double>((sys_days{civil} - DayZero).count())};
}

Date TimeOf(int hour, int minute, int second) {
    if (hour < 0 || hour > 23 || minute < 0 || minute > 59 || second < 0 || second > 59)
        throw RunTimeError(ErrorNumber::TypeMismatch);
    return {static_cast<double>(hour * 3600 + minute * 60 + second) / static_cast<double>(SecondsPerDay)};
}

int FullYear(int twoDigits) { return twoDigits + (twoDigits < 30 ? 2000 : 1900); }

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

std::string IsoDateTime(Date date) {
    if (!IsValidDate(date)) return {};
    const CivilTime civil = CivilOf(date);
    return ZeroPadded(civil.Year, 4) + "-" + ZeroPadded(civil.Month, 2) + "-" + ZeroPadded(civil.Day, 2) + "T" +
           ZeroPadded(civil.Hour, 2) + ":" + ZeroPadded(civil.Minute, 2) + ":" + ZeroPadded(civil.Second, 2);
}

}  // namespace vantor
