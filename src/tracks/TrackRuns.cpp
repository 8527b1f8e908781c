#include "tracks/TrackRuns.h"

#include <utility>

#include "tracks/TrackSeconds.h"

namespace vantor {

bool TrackRuns::EndsBefore(const TrackPoint& point) const {
    const TrackPoint& last = stretch_.back();
    if (cuts_.AtSegments && point.Segment != last.Segment) return true;
    if (cuts_.GapSeconds > 0 && *point.Time - *last.Time > cuts_.GapSeconds) return true;
    return *point.Time - *stretch_.front().Time >= LongestPiece - 1;
}

bool TrackRuns::Add(const TrackPoint& point) {
    if (!point.Time) {
        ++left_;
        return true;
    }
    if (!stretch_.empty() && EndsBefore(point) && !CutStretch()) return false;
    stretch_.push_back(point);
    stretch_.back().Name = {};  // it holds for this call alone
    return true;
}

bool TrackRuns::Finish() { return CutStretch(); }

bool TrackRuns::CutStretch() {
    const std::vector<TrackPoint> told = WholeSecondsOf(std::exchange(stretch_, {}));
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
