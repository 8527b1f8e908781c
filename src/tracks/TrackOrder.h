#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "tracks/TrackPoint.h"

namespace vantor {

/// What every reader hands its points to: it counts them, gives them to the sink, and sees to it that within a segment
/// time only goes on. A point that is not later than the one before is passed over and counted, unless the clock was
/// set back for good: ten such points in a row, each later than the one before it, begin a new segment.
class TrackOrder {
public:
    TrackOrder(const TrackSink& sink, TrackSummary& summary) : sink_(sink), summary_(summary) {}

    /// The next point begins a new segment.
    void BeginSegment();
    /// False when nothing more is wanted. Its segment is set here; an impossible time is taken off it.
    bool Add(TrackPoint& point);
    /// The number of a node by its name: its own where it is a number and free, else the first free one. Every name has
    /// one number, and the summary has the name.
    std::int16_t NodeOf(std::string_view name, std::optional<std::int16_t> number = std::nullopt);
    /// Notes a line that could not be read.
    void AddBroken(std::uint64_t line, std::string_view reason);

private:
    bool Give(TrackPoint& point);
    bool AddBackward(const TrackPoint& point);

    const TrackSink& sink_;
    TrackSummary& summary_;
    bool isNew_ = true;
    std::optional<double> latest_;
    std::vector<TrackPoint> backward_;
    std::map<std::string, std::int16_t, std::less<>> nodes_;  ///< by name
    std::set<std::int16_t> numbers_;                          ///< of nodes that have no other name
};

/// A new track; its name is kept.
void NoteTrack(TrackSummary& summary, std::string_view name);

}  // namespace vantor
