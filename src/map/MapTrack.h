#pragma once

#include <limits>
#include <string>
#include <vector>

#include "core/Date.h"
#include "map/Projection.h"

namespace vantor {

/// A point of a track as it was recorded.
struct RecordedPoint {
    Position At;
    double Mph = std::numeric_limits<double>::quiet_NaN();  ///< no number where it is not known
    Date Time{};                                            ///< no valid date where it is not known
};

/// A point of a track in the world.
struct MapPoint {
    WorldPoint At;
    float Mph = 0;
    bool Begins = false;  ///< a segment: no way leads here from the point before
    Date Time;
};

/// A track with its gaps. Points without a position are left out and part it; one that crosses the date line goes on
/// beyond it.
class MapTrack {
public:
    std::string Name;
    bool IsSetAside = false;

    void Add(const RecordedPoint& point);
    /// The next point begins a segment.
    void Part() { isParted_ = true; }
    /// Moves the track by so many turns.
    void Turn(double turns);

    const std::vector<MapPoint>& Points() const { return points_; }
    const WorldBox& Bounds() const { return bounds_; }
    std::size_t LeftOut() const { return leftOut_; }
    bool LacksSpeeds() const { return lacksSpeeds_; }

private:
    std::vector<MapPoint> points_;
    WorldBox bounds_;
    std::size_t leftOut_ = 0;
    bool lacksSpeeds_ = false;
    bool isParted_ = true;
};

/// A named place, such as an intersection.
struct MapNode {
    std::string Name;
    Position At;
};

}  // namespace vantor
