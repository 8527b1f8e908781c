#include "gpsobd/TrackChoices.h"

#include <array>
#include <charconv>

#include "core/ContentHash.h"
#include "core/Numeric.h"

namespace vantor {
namespace {

/// Heads of files are long, and have characters that a key cannot have.
std::string KeyOf(const std::string& head) {
    std::array<char, 16> digits{};
    const auto end = std::to_chars(digits.begin(), digits.end(), ContentHash(std::as_bytes(std::span(head))), 16).ptr;
    return "csv-" + std::string(digits.begin(), end);
}

}  // namespace

double TrackGapOf(const UserChoices& choices) {
    const auto seconds = CountOfText(ChoiceOf(choices, TrackGapKey), 86400);
    return seconds ? *seconds : TrackCuts().GapSeconds;
}

TrackSources TrackSourcesOf(const UserChoices& choices, const Programs& programs) {
    TrackSources sources;
    sources.Zone = ChoiceOf(choices, TrackZoneKey);
    sources.Cuts.GapSeconds = TrackGapOf(choices);
    sources.OtherPrograms = &programs;
    sources.KeptMapping = [choices](const std::string& head) { return CsvMappingOf(ChoiceOf(choices, KeyOf(head))); };
    return sources;
}

UserChoices KeptMapping(const std::string& head, const CsvMapping& mapping) {
    return {{KeyOf(head), CsvMappingText(mapping)}};
}

}  // namespace vantor
