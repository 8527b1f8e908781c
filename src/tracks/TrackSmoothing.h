#pragma once

#include <span>

namespace vantor {

/// What lies on either side of steps.
struct StepsBeside {
    bool StandsBefore = false;
    bool StandsBehind = false;
};

/// The white noise, in metres, of the positions that steps of a second each lie between.
double JitterOf(std::span<const double> steps);

/// Takes the jitter of positions out of the metres that a vehicle moved in each second of a stretch without standing.
/// Their sum stays, and steps of a receiver without jitter stay as they are.
void SmoothSteps(std::span<double> steps, const StepsBeside& beside);

}  // namespace vantor
