#include "tracks/TrackCut.h"

#include <utility>

namespace vantor {
namespace {

double SecondsBetween(const TrackPoint& from, const TrackPoint& to) { return *to.Time - *from.Time; }

bool IsStanding(const TrackPoint& point, const TrackCuts& cuts) {
    return point.Speed && *point.Speed <= cuts.StandingMph;
}

bool BeginsPiece(const TrackPoint& before, const TrackPoint& point, const TrackCuts& cuts) {
    if (cuts.AtSegments && before.Segment != point.Segment) return true;
    const double seconds = SecondsBetween(before, point);
    return seconds <= 0 || (cuts.GapSeconds > 0 && seconds > cuts.GapSeconds);
}

/// Takes standing off both ends of a piece.
void CutStanding(std::span<const TrackPoint> points, const TrackCuts& cuts, TrackPiece& piece) {
    if (cuts.StandingSeconds <= 0) return;
    std::size_t first = piece.First;
    std::size_t last = piece.First + piece.Count - 1;
    const std::size_t begin = first;
    const std::size_t end = last;
    while (first < last && IsStanding(points[first], cuts) && IsStanding(points[first + 1], cuts)) ++first;
    while (last > first && IsStanding(points[last], cuts) && IsStanding(points[last - 1], cuts)) --last;
    if (SecondsBetween(points[begin], points[first]) <= cuts.StandingSeconds) first = begin;
    if (SecondsBetween(points[last], points[end]) <= cuts.StandingSeconds) last = end;
    piece.CutFromStart = SecondsBetween(points[begin], points[first]);
    piece.CutFromEnd = SecondsBetween(points[last], points[end]);
    piece.First = first;
    piece.Count = last - first + 1;
}

/// Divides a piece into such as a run holds.
void AddPieces(std::span<const TrackPoint> points, TrackPiece piece, std::vector<TrackPiece>& pieces) {
    const double cutFromEnd = std::exchange(piece.CutFromEnd, 0);
    std::size_t rest = piece.Count;
    for (piece.Count = 1; --rest > 0; ++piece.Count) {
        const std::size_t next = piece.First + piece.Count;
        // A run has a sample for its first second and its last one.
        if (SecondsBetween(points[piece.First], points[next]) < LongestPiece) continue;
        piece.GoesOn = true;
        pieces.push_back(piece);
        piece = {.First = next, .Count = 0};
    }
    piece.CutFromEnd = cutFromEnd;
    pieces.push_back(piece);
}

}  // namespace

TrackPieces CutTrack(std::span<const TrackPoint> points, const TrackCuts& cuts) {
    TrackPieces result;
    std::vector<TrackPiece> found;
    for (std::size_t i = 0; i < points.size(); ++i) {
        if (!points[i].Time) continue;
        const bool isNew = found.empty() || found.back().First + found.back().Count != i ||
                           BeginsPiece(points[i - 1], points[i], cuts);
        if (isNew) found.push_back({.First = i, .Count = 0});
        ++found.back().Count;
    }
    result.Left = points.size();
    for (TrackPiece& piece : found) {
        CutStanding(points, cuts, piece);
        if (piece.Count > 1) AddPieces(points, piece, result.Pieces);
    }
    for (const TrackPiece& piece : result.Pieces) result.Left -= piece.Count;
    return result;
}

}  // namespace vantor
