#pragma once

#include <cstdint>
#include <string>

#include "core/ApplicationState.h"

namespace vantor {

/// Kilometres in a mile: the factor of metric display.
inline constexpr double KilometresPerMile = 1.609;
inline constexpr double FeetPerMile = 5280;
inline constexpr double SecondsPerHour = 3600;
/// Feet a second that a mile an hour is.
inline constexpr double FeetPerSecondOfMph = FeetPerMile / SecondsPerHour;

/// How lengths and speeds are shown: in feet and miles per hour, or in metres and kilometres per hour. Stored values
/// always are feet and miles per hour. A value is converted once, from what is stored, and rounded once, halves to
/// even. Speeds are stored in whole miles per hour, so one that is shown as a whole number is rounded to them first:
/// it reads the same on a plot, in a report and in an export.
struct Units {
    bool Metric = false;
    /// The units were changed since the start of the program, whose labels the column titles keep; the values under
    /// them carry their own unit then.
    bool TitlesAreOld = false;

    double LengthOfFeet(double feet) const;
    double FeetOfLength(double length) const;
    double SpeedOfMph(double mph) const;
    double MphOfSpeed(double speed) const;

    /// Whole numbers in the shown unit.
    std::int32_t WholeLength(double feet) const;
    std::int32_t WholeSpeed(double mph) const;

    const char* SpeedLabel() const { return Metric ? "KPH" : "MPH"; }
    const char* LengthLabel() const { return Metric ? "m" : "ft"; }
    const char* VolumeLabel() const { return Metric ? "l" : "gal"; }
    /// "Feet" or "Meters".
    const char* LengthName() const { return Metric ? "Meters" : "Feet"; }

    /// "402 m", "53 KPH".
    std::string LengthText(double feet) const;
    std::string SpeedText(double mph) const;
    /// What stands behind a box of whole miles per hour: "MPH", or "MPH = 53 KPH".
    std::string MphBoxLabel(double mph) const;
    /// "(ft)", the label of lengths behind a column title of a screen, and the text of a length under it.
    std::string LengthTitle() const;
    std::string LengthCell(double feet) const;

    bool operator==(const Units&) const = default;
};

/// The units in force: what reports, exports, plots and axes show.
Units UnitsOf(const AppSettings& settings);
/// The units of a screen whose column titles keep the labels of the start.
Units UnitsOf(const ApplicationState& state);

}  // namespace vantor
