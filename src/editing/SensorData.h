#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "core/AppSettings.h"
#include "core/RunArithmetic.h"
#include "core/RunRecords.h"

namespace vantor {

/// A data word that takes another value. Data points count from 1.
struct WordChange {
    std::int32_t Point = 0;
    std::int16_t Old = 0;
    std::int16_t New = 0;

    bool operator==(const WordChange&) const = default;
};
/// Words that change together, by rising data point, each once and to another value.
using WordChanges = std::vector<WordChange>;

/// Speeds of a run's data words, and repairs of their pulses. No repair touches the words that it is given, nor the
/// high byte of any: its key or its node stays. What does not fit into a word is error 6.
class SensorData {
public:
    /// `calConstant` in feet per 1000 pulses; of the settings the speed factor and the units are taken.
    SensorData(std::int16_t calConstant, const AppSettings& settings);

    /// Whole miles per hour: the distance of the word in whole feet times the speed factor, halves to even.
    std::int16_t SpeedOf(std::int16_t word) const;

    /// A point whose speed differs from that of its left neighbour by more than 20 miles per hour, or from both
    /// neighbours by more than 10, gets the mean of their pulses, halves to even. The left neighbour counts as
    /// repaired. The first point and the last three always stay, and so does a run of fewer than 5 points.
    WordChanges DeSpike(const OneBased<std::int16_t>& words) const;
    /// As DeSpike, for the points whose speed differs from that of their left neighbour by `factor` or more.
    WordChanges Smooth(const OneBased<std::int16_t>& words, std::int16_t factor) const;

    /// The word with the pulses of a speed as it was typed, in kilometres per hour where the units are metric. A
    /// number equal to the word's speed in miles per hour leaves the word as it is, in both units. Error 11 where
    /// the speed factor or the calibration is 0.
    std::int16_t WithSpeed(std::int16_t word, std::int16_t typed) const;
    /// What becomes of a text typed as a word's speed where it is not taken as it stands: "above 174 MPH: wraps to 83",
    /// or what NoteOnNumber says; else empty.
    std::string NoteOnSpeed(std::int16_t word, std::string_view typed) const;

private:
    /// The pulses of a speed in miles per hour, which a word may be too small for.
    std::int32_t PulsesOfSpeed(std::int16_t mph) const;

    /// `IsBad(left, middle, right)`: the middle one of three speeds is to be replaced.
    template <class IsBad>
    WordChanges Repair(const OneBased<std::int16_t>& words, IsBad isBad) const;

    RunArithmetic arithmetic_;
    double feetPerPulse_;
    double speedFactor_;
    bool isMetric_;
};

/// What a text counts as that is read as a 16-bit whole number and is none: "no number: counts as 0", "counts as 13";
/// else empty.
std::string NoteOnNumber(std::string_view typed);

}  // namespace vantor
