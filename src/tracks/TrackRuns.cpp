#include "tracks/TrackRuns.h"

#include <cmath>

#include "tracks/TrackSeconds.h"

namespace vantor {

bool TrackRuns::EndsBefore(const TrackPoint& point) const {
    if (cuts_.AtSegments && point.Segment != stretch_.Points().back().Segment) return true;
    return cuts_.GapSeconds > 0 && *point.Time - lastTime_ > cuts_.GapSeconds;
}

bool TrackRuns::IsFullBefore(const TrackPoint& point) const {
    return std::floor(*point.Time + 0.5) - *stretch_.Points().front().Time >= LongestPiece;
}

bool TrackRuns::Add(const TrackPoint& point) {
    if (!point.Time) {
        ++left_;
        return true;
    }
    if (!stretch_.Points().empty()) {
        const bool ends = EndsBefore(point);
        const bool isFull = !ends && IsFullBefore(point);
        if (isFull) ++goingOn_;
        if ((ends || isFull) && !CutStretch()) return false;
    }
    TrackPoint kept = point;
    kept.Name = {};  // it holds for this call alone
    stretch_.Add(kept);
    lastTime_ = *point.Time;
    return true;
}

bool TrackRuns::Finish() { return CutStretch(); }

bool TrackRuns::CutStretch() {
    const std::vector<TrackPoint> told = stretch_.Take();
    std::vector<TrackPoint> points = told;
    const FilledSpeeds filled = FillSpeeds(points);
    if (const double interval = IntervalOf(points); interval > 0) {
        interval_ = interval;
        points = WithSecondsBetween(points, told);
    }
    speeds_.Told += filled.Told;
    speeds_.FromPositions += filled.FromPositions;
    speeds_.Standing += filled.Standing;
    speeds_.None += filled.None;
    const TrackPieces cut = CutTrack(points, cuts_);
    left_ += cut.Left;
    for (const TrackPiece& piece : cut.Pieces) {
        standing_ += piece.CutFromStart + piece.CutFromEnd;
        if (!take_(std::span(points).subspan(piece.First, piece.Count))) return false;
    }
    return true;
}

}  // namespace vantor
