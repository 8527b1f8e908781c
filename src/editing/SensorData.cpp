#include "editing/SensorData.h"

#include <cstdlib>

#include "core/Numeric.h"
#include "core/Text.h"
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
    return WithPulses(word, PulsesOfSpeed(Round16(Units{isMetric_}.MphOfSpeed(typed))));
}

std::int32_t SensorData::PulsesOfSpeed(std::int16_t mph) const {
    const std::int32_t feet =
        Round32(Quotient(mph, speedFactor_, "The speed factor of the settings is 0, so no speed can be set."));
    return Round32(Quotient(feet, feetPerPulse_,
                            "The calibration constant of this run is 0.\nSet it in the run's details first."));
}

std::string SensorData::NoteOnSpeed(std::int16_t word, std::string_view typed) const {
    constexpr int MostPulses = 255;
    std::string note = NoteOnNumber(typed);
    try {
        const std::int16_t number = Round16(Val(typed));
        const Units units{isMetric_};
        const std::int32_t pulses = PulsesOfSpeed(Round16(units.MphOfSpeed(number)));
        if (number == SpeedOf(word) || (pulses >= 0 && pulses <= MostPulses)) return note;
        const auto shown = [&](std::int16_t ofWord) { return std::to_string(units.WholeSpeed(SpeedOf(ofWord))); };
        const std::string limit = pulses < 0 ? "below 0" : "above " + shown(WithPulses(word, MostPulses));
        return limit + " " + units.SpeedLabel() + ": wraps to " + shown(WithPulses(word, pulses));
    } catch (const RunTimeError&) {
        return note;  // which Enter tells
    }
}

std::string NoteOnNumber(std::string_view typed) {
    const std::string_view text = Trim(typed);
    try {
        const std::string number = std::to_string(Round16(Val(text)));
        if (text.find_first_of("0123456789") == std::string_view::npos || (number == "0" && !NumberOfText(text, true)))
            return "no number: counts as 0";
        const auto whole = NumberOfText(text, true);
        return whole && *whole == Val(number) ? "" : "counts as " + number;
    } catch (const RunTimeError&) {
        return "above 32767: no change";
    }
}

}  // namespace vantor
