#pragma once

#include <array>
#include <cstdint>

namespace vantor {

/// Distances and speeds of a run's samples. All in feet, seconds and miles per hour, one sample a second.
class RunArithmetic {
public:
    /// `calConstant` in feet per 1000 pulses, `speedFactor` from feet per second to miles per hour.
    RunArithmetic(std::int16_t calConstant, float speedFactor);

    /// Feet travelled in a sample: calibration / 1000 in single precision, times the pulses, halves to even.
    std::int32_t DistanceIncrement(std::int16_t sampleValue) const;
    /// The speed of a sample in miles per hour, in single precision.
    float Speed(std::int16_t sampleValue) const;

private:
    std::array<std::int32_t, 256> increments_;  ///< by pulse count
    float speedFactor_;
};

/// Feet per pulse: calibration / 1000, held in single precision.
float FeetPerPulse(std::int16_t calConstant);
/// Feet of a number of pulses: the widened factor times the pulses, rounded once, halves to even.
std::int32_t FeetOfPulses(std::int16_t calConstant, std::int64_t pulses);

}  // namespace vantor
