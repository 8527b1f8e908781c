#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

#include "tracks/TrackPoint.h"

namespace vantor {

/// A name without its prefix: "gpxtpx:speed" is "speed".
std::string_view LocalName(std::string_view name);

/// A track point of GPX as its attributes and the elements in it come.
class GpxPoint {
public:
    void SetAttribute(std::string_view name, std::string_view text);
    void SetElement(std::string_view localName, std::string_view text);

    /// The point; without a position where that is missing or impossible.
    const TrackPoint& Point();
    bool IsVoid() const { return isVoid_; }

private:
    TrackPoint point_;
    std::optional<double> latitude_;
    std::optional<double> longitude_;
    bool isVoid_ = false;
};

/// Reads one track point of the plainest kind at the start of `text`: "<trkpt" with both coordinates, in it elements
/// without attributes, in them ASCII without references, all closed in their order; blanks may stand before it. Returns
/// its length with these blanks; 0 for anything else, which an XML parser has to read.
std::size_t ReadPlainPoint(std::string_view text, GpxPoint& point);

}  // namespace vantor
