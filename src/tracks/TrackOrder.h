#pragma once

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
};

/// A new track; its name is kept.
void NoteTrack(TrackSummary& summary, std::string_view name);

}  // namespace vantor
