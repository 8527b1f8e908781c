#include "editing/SensorData.h"

#include <cstdlib>

#include "core/Numeric.h"
#include "core/Units.h"

namespace vantor {
namespace {

constexpr int FewestPoints = 5;

std::int16_t WithPulses(std::int16_t word, int pulses) {
    return static_cast<std::int16_t>((word & 0xFF00) | (pulses & 0xFF));
}

double Quotient(double dividend, double divisor, const char* remedy) {
    if (divisor == 0) throw RunTimeError(ErrorNumber::DivisionByZero, remedy);
    return dividend / divisor;
}

}  // namespace

SensorData::SensorData(std::int16_t calConstant, const AppSettings& settings)
    : arithmetic_(calConstant, settings.SpeedFactor),
      feetPerPulse_(FeetPerPulse(calConstant)),
      speedFactor_(settings.SpeedFactor),
      isMetric_(settings.MetricUnits != 0) {}

std::int16_t SensorData::SpeedOf(std::int16_t word) const {
    return Round16(arithmetic_.DistanceIncrement(word) * speedFactor_);
}

template <class IsBad>
WordChanges SensorData::Repair(const OneBased<std::int16_t>& words, IsBad isBad) const {
    WordChanges changes;
    if (words.LastIndex() < FewestPoints) return changes;
    std::int16_t left = words[1];
    for (int point = 2; point <= words.LastIndex() - 3; ++point) {
        const std::int16_t middle = words[point];
        const std::int16_t right = words[point + 1];
        std::int16_t repaired = middle;
        if (isBad(SpeedOf(left), SpeedOf(middle), SpeedOf(right)))
            repaired = WithPulses(middle, Round16((PulsesOf(left) + PulsesOf(right)) / 2.0));
        if (repaired != middle) changes.push_back({point, middle, repaired});
        left = repaired;
    }
    return changes;
}

WordChanges SensorData::DeSpike(const OneBased<std::int16_t>& words) const {
    constexpr int LeftAlone = 20;
    constexpr int BothSides = 10;
    return Repair(words, [](int left, int middle, int right) {
        const int fromLeft = std::abs(middle - left);
        return fromLeft > LeftAlone || (std::abs(middle - right) > BothSides && fromLeft > BothSides);
    });
}

WordChanges SensorData::Smooth(const OneBased<std::int16_t>& words, std::int16_t factor) const {
    // Unlike DeSpike it looks at one neighbour only, and a difference equal to the factor counts: on purpose.
    return Repair(words, [factor](int left, int middle, int) { return std::abs(middle - left) >= factor; });
}

std::int16_t SensorData::WithSpeed(std::int16_t word, std::int16_t typed) const {
    // Compared before it is converted, on purpose.
    if (typed == SpeedOf(word)) return word;
    const std::int16_t mph = Round16(Units{isMetric_}.MphOfSpeed(typed));
    const std::int32_t feet =
        Round32(Quotient(mph, speedFactor_, "The speed factor of the settings is 0, so no speed can be set."));
    const std::int32_t pulses = Round32(Quotient(
        feet, feetPerPulse_, "The calibration constant of this run is 0.\nSet it in the run's details first."));
    return WithPulses(word, pulses);
}

}  // namespace vantor
