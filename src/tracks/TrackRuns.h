#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <utility>

#include "tracks/TrackCut.h"
#include "tracks/TrackSpeeds.h"

namespace vantor {

/// Cuts the points of a track into pieces for runs as they come, and holds no more than the seconds of the stretch
/// that is not cut yet, at most those of one run.
class TrackRuns {
public:
    /// Gets a piece: its points stand at whole seconds, each with its time and speed. False ends the work.
    using Take = std::function<bool(std::span<const TrackPoint> points)>;

    TrackRuns(const TrackCuts& cuts, Take take) : cuts_(cuts), take_(std::move(take)) {}

    /// False when nothing more is wanted.
    bool Add(const TrackPoint& point);
    /// After the last point.
    bool Finish();

    const FilledSpeeds& Speeds() const { return speeds_; }
    /// Points outside of any piece: without a time, alone, or standing throughout.
    std::uint64_t Left() const { return left_; }
    /// Of a logger that writes a point every few seconds, else 0; between those its seconds are filled.
    double Interval() const { return interval_; }
    /// Pieces that go on in the next one: a run holds no more.
    std::size_t GoingOn() const { return goingOn_; }
    double SecondsOfStanding() const { return standing_; }  ///< cut off at ends

private:
    bool EndsBefore(const TrackPoint& point) const;
    bool IsFullBefore(const TrackPoint& point) const;
    bool CutStretch();

    TrackCuts cuts_;
    Take take_;
    WholeSeconds stretch_;
    double lastTime_ = 0;
    FilledSpeeds speeds_;
    std::uint64_t left_ = 0;
    std::size_t goingOn_ = 0;
    double standing_ = 0;
    double interval_ = 0;
};

}  // namespace vantor
