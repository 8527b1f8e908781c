#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace vantor {

/// A moment as stored in files: days since 30 December 1899, the fraction is the time of day.
struct Date {
    double Days = 0;
    bool operator==(const Date&) const = default;
};

/// A moment taken apart, to the nearest second; months and days count from 1.
struct CivilTime {
    int Year = 1899;
    int Month = 12;
    int Day = 30;
    int Hour = 0;
    int Minute = 0;
    int Second = 0;
};

/// Years that a date can hold; anything else in a file is shown as no date.
bool IsValidDate(Date date);
CivilTime CivilOf(Date date);

/// Type mismatch (error 13) for a day or a time that does not exist.
Date DateOf(int year, int month, int day);
Date TimeOf(int hour, int minute, int second = 0);

/// Two-digit years 00 to 29 are 20xx, 30 to 99 are 19xx.
int FullYear(int twoDigits);

/// The day of a "mm/dd/yy" or "mm/dd/yyyy", its numbers parted by one of `separators`; nothing when there is no such
/// day. Blanks around it are passed over.
std::optional<Date> DayOfText(std::string_view text, std::string_view separators = "/-.");
/// The time of day of a "hh:mm" or "hh:mm:ss"; nothing when there is no such time. Blanks around it are passed over.
std::optional<Date> ClockOfText(std::string_view text);

/// "Monday"; empty for no valid date.
std::string WeekdayName(Date date);
/// "mm/dd/yy", "hh:mm" and "mm-dd-yy"; empty for no valid date.
std::string ShortDate(Date date);
std::string ShortTime(Date date);
std::string DashedDate(Date date);
/// The day and the time of day that those texts are of, for the cells of a table: spreadsheets cut what these round.
/// Type mismatch (error 13) for no valid date.
Date ShownDay(Date date);
Date ShownClock(Date date);
/// "YYYY-MM-DDTHH:MM:SS"; empty for no valid date.
std::string IsoDateTime(Date date);

}  // namespace vantor
