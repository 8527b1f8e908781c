#include "map/MapTrack.h"

#include <algorithm>
#include <cmath>

namespace vantor {

void MapTrack::Add(const RecordedPoint& point) {
    if (!IsPosition(point.At)) {
        ++leftOut_;
        return Part();
    }
    WorldPoint at = WorldOf(point.At);
    if (!points_.empty()) at = NearestTurn(at, points_.back().At.X);
    points_.push_back({at, static_cast<float>(point.Mph), isParted_, point.Time});
    isParted_ = false;
    bounds_.Include(at);
    if (!std::isfinite(point.Mph)) lacksSpeeds_ = true;
}

void MapTrack::Turn(double turns) {
    if (turns == 0) return;
    for (MapPoint& point : points_) point.At.X += turns;
    bounds_.Low.X += turns;
    bounds_.High.X += turns;
}

}  // namespace vantor
