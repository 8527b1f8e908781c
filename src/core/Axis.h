#pragma once

namespace vantor {

/// The smallest of 1, 2, 5, 10, 20, 50, ... that is at least `least`: what a step of an axis may stand for.
int RoundStep(double least);
/// The same with fractions: 0.1, 0.2, 0.5, 1, ...; `least` is above 0.
double RoundFraction(double least);

/// An axis of speeds from 0 to a round maximum, with round grid values; in the shown unit.
struct SpeedAxis {
    int Maximum = 10;
    int GridStep = 5;
};
/// The axis for a top speed in the shown unit, with some room above it.
SpeedAxis NiceSpeedAxis(double topSpeed);

}  // namespace vantor
