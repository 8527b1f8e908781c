#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "tracks/TrackPoint.h"

namespace vantor {

/// What is kept of the text of an element.
inline constexpr std::size_t LongestText = 256;

/// A name without its prefix: "gpxtpx:speed" is "speed".
inline std::string_view LocalName(std::string_view name) {
    const std::size_t prefix = name.rfind(':');
    return prefix == std::string_view::npos ? name : name.substr(prefix + 1);
}

/// A track point of GPX as its attributes and the elements in it come.
class GpxPoint {
public:
    /// Nothing is told yet.
    void Clear();
    void SetAttribute(std::string_view name, std::string_view text);
    void SetLatitude(std::optional<double> degrees) { latitude_ = degrees; }
    void SetLongitude(std::optional<double> degrees) { longitude_ = degrees; }
    void SetElement(std::string_view localName, std::string_view told);

    /// The point; without a position where that is missing or impossible.
    TrackPoint& Point();
    /// The name of its node, where it has one.
    const std::string& NodeName() const { return nodeName_; }
    bool IsVoid() const { return isVoid_; }

private:
    TrackPoint point_;
    std::optional<double> latitude_;
    std::optional<double> longitude_;
    std::string nodeName_;
    bool isVoid_ = false;
};

/// How far a plain point goes.
struct PlainPoint {
    std::size_t Length = 0;
    std::size_t LineEnds = 0;
};

/// Reads one track point of the plainest kind at the start of `text`: "<trkpt" with both coordinates, in it elements
/// without attributes, in them ASCII without references, all closed in their order; blanks may stand before it. Length
/// 0 for anything else, which an XML parser has to read.
PlainPoint ReadPlainPoint(std::string_view text, GpxPoint& point);

}  // namespace vantor
