#pragma once

#include <QString>

#include "plots/SpeedProfile.h"

namespace vantor {

/// "Feet" or "Meters".
QString LengthUnitInWords(const ProfileGeometry& geometry);

/// "Start boundary".
QString NameOf(ProfileLine line);
/// "Start boundary: 1500 Feet", or "...: not set".
QString PlaceInWords(const SpeedProfile& profile, ProfileLine line);
/// The places of all three lines.
QString PlacesInWords(const SpeedProfile& profile);
/// "The start boundary is a whole number of feet from 0 to 9000." and what 0 is.
QString RangeInWords(const SpeedProfile& profile, ProfileLine boundary);
/// "5000 ft, 119 s, 29 MPH between the boundaries"; empty where nothing lies between them.
QString BetweenInWords(const SpeedProfile& profile);
/// Distance, time and speed of the run under a pixel column.
QString PointInWords(const SpeedProfile& profile, double x);

/// Why there is nothing to draw; empty when there is something.
QString NothingToDraw(const ProfileTrace& trace, std::int16_t calConstant);

}  // namespace vantor
