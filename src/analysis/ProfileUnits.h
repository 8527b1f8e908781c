#pragma once

namespace vantor {

/// How values are shown: feet and miles per hour, or metres and kilometres per hour. Stored values always are feet
/// and miles per hour.
struct ProfileUnits {
    bool Metric = false;

    double LengthOfFeet(double feet) const;
    double FeetOfLength(double length) const;
    double SpeedOfMph(double mph) const;
    double MphOfSpeed(double speed) const;
};

/// The speed axis from 0 to a round maximum, with round grid values; in the shown unit.
struct SpeedAxis {
    int Maximum = 10;
    int GridStep = 5;
};
/// The axis for a top speed in the shown unit, with some room above it.
SpeedAxis NiceSpeedAxis(double topSpeed);

}  // namespace vantor
