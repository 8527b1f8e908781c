#pragma once

#include <array>
#include <cstddef>

namespace vantor {

/// What is summarised over runs and compared.
enum class Measure { TravelTime, RunningTime, StoppedTime, Stops, TravelSpeed, ControlDelay };

inline constexpr std::array AllMeasures = {Measure::TravelTime, Measure::RunningTime, Measure::StoppedTime,
                                           Measure::Stops,      Measure::TravelSpeed, Measure::ControlDelay};

enum class FigureUnit { None, Seconds, MilesPerHour, Feet, Percent, PerMile };

struct MeasureKind {
    const char* Key;   ///< in JSON
    const char* Name;  ///< "Travel time"
    FigureUnit Unit;
};
const MeasureKind& KindOf(Measure measure);

/// One value for each measure.
template <class Value>
struct ByMeasure {
    std::array<Value, AllMeasures.size()> Values{};
    Value& operator[](Measure measure) { return Values[static_cast<std::size_t>(measure)]; }
    const Value& operator[](Measure measure) const { return Values[static_cast<std::size_t>(measure)]; }
    bool operator==(const ByMeasure&) const = default;
};

}  // namespace vantor
