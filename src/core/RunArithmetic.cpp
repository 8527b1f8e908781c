#include "core/RunArithmetic.h"

#include "core/Numeric.h"

namespace vantor {

float FeetPerPulse(std::int16_t calConstant) { return static_cast<float>(calConstant / 1000.0); }

std::int32_t FeetOfPulses(std::int16_t calConstant, std::int64_t pulses) {
    return Round32(static_cast<double>(FeetPerPulse(calConstant)) * static_cast<double>(pulses));
}

RunArithmetic::RunArithmetic(std::int16_t calConstant, float speedFactor) : increments_{}, speedFactor_(speedFactor) {
    for (std::size_t pulses = 0; pulses < increments_.size(); ++pulses)
        increments_[pulses] = FeetOfPulses(calConstant, static_cast<std::int64_t>(pulses));
}

std::int32_t RunArithmetic::DistanceIncrement(std::int16_t sampleValue) const {
    return increments_[static_cast<std::uint16_t>(sampleValue) & 0xFF];
}

float RunArithmetic::Speed(std::int16_t sampleValue) const {
    const float increment = static_cast<float>(DistanceIncrement(sampleValue));
    return speedFactor_ * increment;
}

}  // namespace vantor
