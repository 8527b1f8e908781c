#pragma once

#include "core/Units.h"

namespace vantor {

using ProfileUnits = Units;

/// The speed axis from 0 to a round maximum, with round grid values; in the shown unit.
struct SpeedAxis {
    int Maximum = 10;
    int GridStep = 5;
};
/// The axis for a top speed in the shown unit, with some room above it.
SpeedAxis NiceSpeedAxis(double topSpeed);

}  // namespace vantor
