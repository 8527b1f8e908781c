#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "tracks/TrackPoint.h"

namespace vantor {

// The pieces that all texts of tracks are made of.

inline constexpr double MetresPerMile = 1609.344;
inline constexpr double MphOfMetresPerSecond = 3600 / MetresPerMile;
inline constexpr double MphOfKilometresPerHour = 1000 / MetresPerMile;
inline constexpr double MphOfKnots = 1852 / MetresPerMile;
inline constexpr std::int64_t SecondsOfDay = 86400;

/// Times that a track may have, seconds UTC since 1970: from the first day of GPS, 6 January 1980, to the end of 2099.
/// Anything else stands for no time.
inline constexpr double FirstTrackTime = 315964800;
inline constexpr double LastTrackTime = 4102444799;
inline bool IsTrackTime(double time) { return time >= FirstTrackTime && time <= LastTrackTime; }

/// Days since 1 January 1970; nothing for a day that does not exist.
std::optional<std::int64_t> DaysSince1970(int year, int month, int day);

/// The decimal number that a text is as a whole: a sign or none, digits with at most one point.
std::optional<double> TrackNumber(std::string_view text);
/// A number with a decimal point or, where `decimalComma`, a comma; "4230.5N" and "W 83.5" have the sign of their
/// letter. Nothing for any other text.
std::optional<double> NumberOfCell(std::string_view cell, bool decimalComma);
/// The whole number that a text of at most nine digits is; -1 for any other text.
inline int DigitsOf(std::string_view text) {
    int number = text.empty() || text.size() > 9 ? -1 : 0;
    for (const char character : text) {
        const int digit = character - '0';
        number = digit < 0 || digit > 9 || number < 0 ? -1 : 10 * number + digit;
    }
    return number;
}

/// Nothing beyond 90 or 180 degrees, or where one of them is missing.
std::optional<TrackPosition> PositionOf(std::optional<double> latitude, std::optional<double> longitude);
/// A speed from 0 to 1,000 mph; nothing for any other.
std::optional<double> TrackSpeed(std::optional<double> number, double mphOfUnit);
/// A course from 0 to 360 degrees, 360 as 0; nothing for any other.
std::optional<double> TrackCourse(std::optional<double> number);

/// "2026-11-22T16:14:18", with a blank or "T" between, seconds with decimals or none, then "Z", "+01:00", "+0100",
/// "+01" or no zone, which stands for UTC. Seconds UTC since 1970; nothing for any other text.
std::optional<double> IsoTime(std::string_view text);
/// The same, and whether a zone stood there.
std::optional<double> IsoTime(std::string_view text, bool& hasZone);

/// The seconds of a day that "hhmmss" and "hhmmss.sss" say; nothing for any other text.
std::optional<double> PackedClock(std::string_view text);

}  // namespace vantor
