#include "tracks/GpxPoint.h"

#include <array>
#include <cstdint>
#include <cstring>

#include "tracks/TrackTexts.h"

namespace vantor {
namespace {

// Kinds of characters, as bits of a table: most of the time of a long file is spent on looking at each.
constexpr std::uint8_t Blank = 1;
constexpr std::uint8_t NameLetter = 2;
constexpr std::uint8_t PlainText = 4;
constexpr std::uint8_t NumberPart = 8;

constexpr std::array<std::uint8_t, 256> KindsOfCharacters = [] {
    std::array<std::uint8_t, 256> kinds{};
    const auto add = [&](std::string_view characters, std::uint8_t kind) {
        for (const char character : characters) kinds[static_cast<unsigned char>(character)] |= kind;
    };
    for (std::size_t i = ' '; i < 0x7F; ++i) kinds[i] = i == '<' || i == '&' || i == '>' ? 0 : PlainText;
    add(" \n\r\t", Blank | PlainText);
    add("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ_:", NameLetter);
    add("0123456789-.", NameLetter | NumberPart);
    return kinds;
}();

bool Is(std::uint8_t kind, char character) {
    return (KindsOfCharacters[static_cast<unsigned char>(character)] & kind) != 0;
}

/// What is left of a text that is read from its start.
struct Scanner {
    const char* At;
    const char* End;
    std::size_t LineEnds = 0;  ///< passed over

    bool Pass(char character) {
        if (At == End || *At != character) return false;
        ++At;
        return true;
    }
    /// Of a length that the compiler knows, so that no function is called.
    template <std::size_t Size>
    bool Pass(const char (&literal)[Size]) {
        constexpr std::size_t Length = Size - 1;
        if (static_cast<std::size_t>(End - At) < Length || std::memcmp(At, literal, Length) != 0) return false;
        At += Length;
        return true;
    }
    template <std::uint8_t Kind>
    std::string_view While() {
        const char* next = At;
        std::size_t lineEnds = 0;
        for (; next != End && Is(Kind, *next); ++next)
            if constexpr ((Kind & (Blank | PlainText)) != 0) lineEnds += *next == '\n' ? 1 : 0;
        LineEnds += lineEnds;
        const std::string_view passed(At, static_cast<std::size_t>(next - At));
        At = next;
        return passed;
    }
};

/// The one coordinate and the other.
bool ReadCoordinates(Scanner& scanner, GpxPoint& point) {
    bool hasLatitude = false;
    bool hasLongitude = false;
    while (!hasLatitude || !hasLongitude) {
        if (scanner.While<Blank>().empty()) return false;
        const bool isLatitude = !hasLatitude && scanner.Pass("lat=\"");
        if (!isLatitude && (hasLongitude || !scanner.Pass("lon=\""))) return false;
        const char* end = scanner.At;
        auto number = TakeShortNumber(end, scanner.End);
        if (end != scanner.End && *end == '"')
            scanner.At = end;
        else
            number = TrackNumber(scanner.While<NumberPart>());
        if (!scanner.Pass('"')) return false;
        if (isLatitude)
            point.SetLatitude(number);
        else
            point.SetLongitude(number);
        (isLatitude ? hasLatitude : hasLongitude) = true;
    }
    scanner.While<Blank>();
    return scanner.Pass('>');
}

std::string_view WithoutBlanks(std::string_view text) {
    while (!text.empty() && Is(Blank, text.front())) text.remove_prefix(1);
    while (!text.empty() && Is(Blank, text.back())) text.remove_suffix(1);
    return text;
}

}  // namespace

void GpxPoint::Clear() {
    // Field by field, which takes a fraction of the time of a new point.
    latitude_.reset();
    longitude_.reset();
    isVoid_ = false;
    point_.Time.reset();
    point_.Speed.reset();
    point_.Course.reset();
    point_.FixQuality.reset();
    point_.Satellites.reset();
    point_.HDOP.reset();
    point_.Node = 0;
}

void GpxPoint::SetAttribute(std::string_view name, std::string_view text) {
    if (name == "lat") SetLatitude(TrackNumber(text));
    if (name == "lon") SetLongitude(TrackNumber(text));
}

void GpxPoint::SetElement(std::string_view localName, std::string_view told) {
    const std::string_view text = WithoutBlanks(told.substr(0, LongestText));
    const auto fill = [](auto& value, const auto& read) {
        if (!value) value = read;
    };
    if (localName == "time") {
        fill(point_.Time, IsoTime(text));
    } else if (localName == "speed") {
        fill(point_.Speed, TrackSpeed(TrackNumber(text), MphOfMetresPerSecond));
    } else if (localName == "course" || localName == "bearing" || localName == "heading") {
        fill(point_.Course, TrackCourse(TrackNumber(text)));
    } else if (localName == "hdop") {
        fill(point_.HDOP, TrackNumber(text));
    } else if (localName == "sat") {
        if (const int satellites = DigitsOf(text); satellites >= 0) point_.Satellites = satellites;
    } else if (localName == "node") {
        // Of this program's own files.
        point_.Node = 1;
        nodeName_ = text;
    } else if (localName == "fix") {
        isVoid_ = text == "none";
        if (!isVoid_) point_.FixQuality = text == "dgps" ? 2 : text == "pps" ? 3 : 1;
    }
}

TrackPoint& GpxPoint::Point() {
    point_.Position = PositionOf(latitude_, longitude_);
    return point_;
}

PlainPoint ReadPlainPoint(std::string_view text, GpxPoint& point) {
    Scanner scanner{text.data(), text.data() + text.size(), 0};
    scanner.While<Blank>();
    if (!scanner.Pass("<trkpt") || !ReadCoordinates(scanner, point)) return {};
    std::array<std::string_view, 8> open;
    std::size_t depth = 0;
    for (std::string_view content;;) {
        content = scanner.While<PlainText>();
        if (!scanner.Pass('<')) return {};
        if (!scanner.Pass('/')) {
            const std::string_view name = scanner.While<NameLetter>();
            if (depth == open.size() || name.empty() || Is(NumberPart, name[0]) || name == "trkpt" ||
                !scanner.Pass('>'))
                return {};
            open[depth++] = name;
            continue;
        }
        if (depth == 0) {
            if (!scanner.Pass("trkpt>")) return {};
            return {static_cast<std::size_t>(scanner.At - text.data()), scanner.LineEnds};
        }
        const std::string_view name = open[--depth];
        for (const char letter : name)
            if (!scanner.Pass(letter)) return {};
        if (!scanner.Pass('>')) return {};
        point.SetElement(LocalName(name), content);
    }
}

}  // namespace vantor
