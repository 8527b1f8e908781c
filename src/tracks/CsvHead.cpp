#include "tracks/CsvHead.h"

#include <algorithm>
#include <initializer_list>
#include <vector>

#include "core/Text.h"

namespace vantor {
namespace {

bool IsLower(char character) { return character >= 'a' && character <= 'z'; }
bool IsUpper(char character) { return character >= 'A' && character <= 'Z'; }

/// The words of a head in lower case: "gpsSpeed_kmh" is "gps", "speed", "kmh".
std::vector<std::string> WordsOf(std::string_view head) {
    std::vector<std::string> words;
    bool isInWord = false;
    for (std::size_t i = 0; i < head.size(); ++i) {
        const char character = head[i];
        const bool isLetter = IsLower(character) || IsUpper(character) || IsDigit(character);
        const bool isHump =
            i > 0 && IsUpper(character) &&
            (IsLower(head[i - 1]) || (i + 1 < head.size() && IsUpper(head[i - 1]) && IsLower(head[i + 1])));
        if (isLetter && (!isInWord || isHump)) words.emplace_back();
        if (isLetter) words.back() += IsUpper(character) ? static_cast<char>(character | 0x20) : character;
        isInWord = isLetter;
    }
    return words;
}

/// Words and what they say of a head.
class HeadWords {
public:
    explicit HeadWords(std::string_view head) : words_(WordsOf(head)) {}

    bool HasAny(std::initializer_list<std::string_view> words) const {
        return std::ranges::any_of(
            words, [this](std::string_view word) { return std::ranges::find(words_, word) != words_.end(); });
    }
    bool HasBoth(std::string_view first, std::string_view second) const { return HasAny({first}) && HasAny({second}); }

    /// Where there is one at all.
    bool AreAll(std::initializer_list<std::string_view> words) const {
        return !words_.empty() && std::ranges::all_of(words_, [&](const std::string& word) {
            return std::ranges::find(words, word) != words.end();
        });
    }

private:
    std::vector<std::string> words_;
};

std::optional<CsvSpeedUnit> UnitOf(const HeadWords& words) {
    if (words.HasAny({"kmh", "kph", "kmph"}) || words.HasBoth("km", "h") || words.HasBoth("km", "hr"))
        return CsvSpeedUnit::KilometresPerHour;
    if (words.HasAny({"mph"}) || words.HasBoth("mi", "h") || words.HasBoth("miles", "hour"))
        return CsvSpeedUnit::MilesPerHour;
    if (words.HasAny({"mps", "ms"}) || words.HasBoth("m", "s") || words.HasBoth("m", "sec") ||
        (words.HasAny({"meters", "metres", "meter", "metre"}) && words.HasAny({"second", "s", "sec"})))
        return CsvSpeedUnit::MetresPerSecond;
    if (words.HasAny({"knots", "knot", "kn", "kt", "kts"})) return CsvSpeedUnit::Knots;
    return std::nullopt;
}

CsvColumn ColumnOf(const HeadWords& words) {
    if (words.HasAny({"accuracy", "error", "std", "zone", "timezone", "limit", "max", "maximum", "average", "avg",
                      "engine", "wind", "fan", "view", "trip", "difference", "since"}))
        return CsvColumn::Other;
    if (words.HasAny({"lat", "latitude"})) return CsvColumn::Latitude;
    if (words.HasAny({"lon", "lng", "long", "longitude"})) return CsvColumn::Longitude;
    if ((words.HasAny({"position"}) && words.AreAll({"gps", "position"})) ||
        words.HasAny({"coordinates", "coordinate", "latlon", "latlng"}))
        return CsvColumn::Position;
    if (words.HasBoth("n", "s") || words.HasAny({"ns"})) return CsvColumn::NorthSouth;
    if (words.HasBoth("e", "w") || words.HasAny({"ew"})) return CsvColumn::EastWest;
    if (words.HasAny({"speed", "velocity", "speedkmh", "speedmph"})) return CsvColumn::Speed;
    if (words.HasAny({"time", "timestamp", "datetime", "epoch", "elapsed"})) return CsvColumn::Time;
    if (words.HasAny({"date"})) return CsvColumn::Date;
    if (words.HasAny({"utc"})) return CsvColumn::Time;
    if (words.HasAny({"course", "heading", "bearing", "cog", "direction"})) return CsvColumn::Course;
    if (words.HasAny({"satellites", "satellite", "sats", "sat", "nsat", "numsat"})) return CsvColumn::Satellites;
    if (words.HasAny({"hdop"}) || words.HasBoth("horizontal", "dilution")) return CsvColumn::HDOP;
    if (words.HasAny({"fix", "quality"})) return CsvColumn::Fix;
    if (words.HasAny({"node", "mark", "marker"})) return CsvColumn::Node;
    if (words.HasAny({"segment", "seg", "track", "run"})) return CsvColumn::Segment;
    // A unit alone is the head of a speed.
    return words.HasAny({"kmh", "kph", "mph", "mps"}) ? CsvColumn::Speed : CsvColumn::Other;
}

}  // namespace

std::optional<CsvSpeedUnit> SpeedUnitOf(std::string_view text) { return UnitOf(HeadWords(text)); }

CsvHeadCell CsvHeadOf(std::string_view cell) {
    CsvHeadCell head;
    constexpr std::size_t LongestHead = 100;
    if (cell.empty() || cell.size() > LongestHead) return head;
    const HeadWords words(cell);
    head.Column = ColumnOf(words);
    if (head.Column == CsvColumn::Speed) {
        head.Unit = words.HasAny({"speedkmh"})   ? CsvSpeedUnit::KilometresPerHour
                    : words.HasAny({"speedmph"}) ? CsvSpeedUnit::MilesPerHour
                                                 : UnitOf(words);
        // The vehicle's own speed counts before that of the receiver.
        head.Rank = words.HasAny({"obd", "vehicle"}) ? 1 : 0;
    }
    head.IsUtc = words.HasAny({"utc", "gmt", "zulu"});
    head.IsElapsed = words.HasAny({"elapsed"});
    head.IsMilliseconds = words.HasAny({"ms", "millis", "milliseconds"});
    if (head.Column == CsvColumn::Time || head.Column == CsvColumn::Date)
        head.Rank = head.IsUtc                                            ? 2
                    : words.HasAny({"gps"})                               ? 1
                    : words.HasAny({"device", "local"}) || head.IsElapsed ? -1
                                                                          : 0;
    return head;
}

}  // namespace vantor
