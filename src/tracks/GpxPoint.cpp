#include "tracks/GpxPoint.h"

#include <array>

#include "core/Text.h"
#include "tracks/TrackTexts.h"

namespace vantor {
namespace {

bool IsBlank(char character) { return character == ' ' || character == '\n' || character == '\r' || character == '\t'; }

/// What is left of a text that is read from its start.
struct Scanner {
    const char* At;
    const char* End;

    void PassBlanks() {
        while (At != End && IsBlank(*At)) ++At;
    }
    bool Pass(std::string_view literal) {
        if (static_cast<std::size_t>(End - At) < literal.size() || std::string_view(At, literal.size()) != literal)
            return false;
        At += literal.size();
        return true;
    }
    template <class Test>
    std::string_view While(Test test) {
        const char* const start = At;
        while (At != End && test(*At)) ++At;
        return {start, static_cast<std::size_t>(At - start)};
    }
};

bool IsNameLetter(char character) {
    const char lower = static_cast<char>(character | 0x20);
    return (lower >= 'a' && lower <= 'z') || IsDigit(character) || character == '_' || character == ':' ||
           character == '-' || character == '.';
}

bool IsPlainText(char character) {
    return character != '<' && character != '&' && character != '>' && (character >= ' ' || IsBlank(character));
}

/// Two attributes, which are the coordinates.
bool ReadCoordinates(Scanner& scanner, GpxPoint& point) {
    for (int count = 0; count < 2; ++count) {
        if (scanner.At == scanner.End || !IsBlank(*scanner.At)) return false;
        scanner.PassBlanks();
        const bool isLatitude = scanner.Pass("lat=\"");
        if (!isLatitude && !scanner.Pass("lon=\"")) return false;
        const auto text = scanner.While([](char c) { return IsDigit(c) || c == '-' || c == '.'; });
        if (!scanner.Pass("\"")) return false;
        point.SetAttribute(isLatitude ? "lat" : "lon", text);
    }
    scanner.PassBlanks();
    return scanner.Pass(">");
}

}  // namespace

std::string_view LocalName(std::string_view name) {
    const std::size_t prefix = name.rfind(':');
    return prefix == std::string_view::npos ? name : name.substr(prefix + 1);
}

void GpxPoint::SetAttribute(std::string_view name, std::string_view text) {
    if (name == "lat") latitude_ = TrackNumber(text);
    if (name == "lon") longitude_ = TrackNumber(text);
}

void GpxPoint::SetElement(std::string_view localName, std::string_view text) {
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
        if (const int satellites = DigitsOf(Trim(text)); satellites >= 0) point_.Satellites = satellites;
    } else if (localName == "node") {
        // Of this program's own files: the name of a node.
        point_.Node = 1;
    } else if (localName == "fix") {
        const std::string_view fix = Trim(text);
        isVoid_ = fix == "none";
        if (!isVoid_) point_.FixQuality = fix == "dgps" ? 2 : fix == "pps" ? 3 : 1;
    }
}

const TrackPoint& GpxPoint::Point() {
    point_.Position = PositionOf(latitude_, longitude_);
    return point_;
}

std::size_t ReadPlainPoint(std::string_view text, GpxPoint& point) {
    Scanner scanner{text.data(), text.data() + text.size()};
    scanner.PassBlanks();
    if (!scanner.Pass("<trkpt") || !ReadCoordinates(scanner, point)) return 0;
    std::array<std::string_view, 8> open;
    std::size_t depth = 0;
    for (std::string_view content;;) {
        content = scanner.While(IsPlainText);
        if (!scanner.Pass("<")) return 0;
        if (!scanner.Pass("/")) {
            const std::string_view name = scanner.While(IsNameLetter);
            if (depth == open.size() || name.empty() || IsDigit(name[0]) || name[0] == '-' || name[0] == '.' ||
                name == "trkpt" || !scanner.Pass(">"))
                return 0;
            open[depth++] = name;
            continue;
        }
        if (depth == 0) return scanner.Pass("trkpt>") ? static_cast<std::size_t>(scanner.At - text.data()) : 0;
        const std::string_view name = open[--depth];
        if (!scanner.Pass(name) || !scanner.Pass(">")) return 0;
        point.SetElement(LocalName(name), content);
    }
}

}  // namespace vantor
