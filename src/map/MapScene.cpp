#include "map/MapScene.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "core/Date.h"

namespace vantor {
namespace {

/// The distance of a place from a way, where it is below `least`, in units of the canvas.
double DistanceFrom(CanvasPoint place, CanvasPoint from, CanvasPoint to) {
    const double x = to.X - from.X;
    const double y = to.Y - from.Y;
    const double square = x * x + y * y;
    const double along =
        square == 0 ? 0 : std::clamp(((place.X - from.X) * x + (place.Y - from.Y) * y) / square, 0.0, 1.0);
    return std::hypot(place.X - from.X - along * x, place.Y - from.Y - along * y);
}

/// The end of a thinned way that a place lies nearest to.
struct NearWay {
    double Distance = std::numeric_limits<double>::infinity();
    std::size_t First = 0;  ///< points of the track
    std::size_t Last = 0;
};

NearWay NearestWay(const ThinnedTrack& track, int level, const MapWindow& window, CanvasPoint place, double reach) {
    const WorldPoint low = window.WorldAt({place.X - reach, place.Y - reach});
    const WorldPoint high = window.WorldAt({place.X + reach, place.Y + reach});
    NearWay nearest;
    for (const ThinnedTrack::Run& run : track.Seen(level, {low, high})) {
        for (std::size_t i = 0; i < run.size(); ++i) {
            const bool isWay = i > 0 && !run[i].Begins;
            const ThinPoint& from = isWay ? run[i - 1] : run[i];
            const double distance = DistanceFrom(place, window.PlaceOf(from.At), window.PlaceOf(run[i].At));
            if (distance < nearest.Distance) nearest = {distance, from.Point, run[i].Point};
        }
    }
    return nearest;
}

}  // namespace

MapScene::MapScene(MapContents contents) : contents_(std::move(contents)) {
    // What lies on both sides of the date line is brought to one.
    const auto middle = [&](const WorldBox& box) { return (bounds_.IsEmpty() ? box : bounds_).Middle().X; };
    std::vector<float> speeds;
    for (MapTrack& track : contents_.Tracks) {
        for (const MapPoint& point : track.Points()) speeds.push_back(point.Mph);
        lacksSpeeds_ = lacksSpeeds_ || track.LacksSpeeds();
        if (track.Points().empty()) continue;
        const double x = track.Bounds().Middle().X;
        track.Turn(NearestTurn({x, 0}, middle(track.Bounds())).X - x);
        bounds_.Include(track.Bounds());
    }
    std::erase_if(contents_.Nodes, [](const MapNode& node) { return !IsPosition(node.At); });
    for (const MapNode& node : contents_.Nodes) {
        const WorldPoint place = WorldOf(node.At);
        nodes_.push_back(NearestTurn(place, middle({place, place})));
        bounds_.Include(nodes_.back());
    }
    speeds_ = SpeedScale(std::move(speeds), contents_.Shown);
    thinned_.reserve(contents_.Tracks.size());
    for (const MapTrack& track : contents_.Tracks) thinned_.emplace_back(track, speeds_);
}

std::size_t MapScene::LeftOut() const {
    std::size_t count = 0;
    for (const MapTrack& track : contents_.Tracks) count += track.LeftOut();
    return count;
}

int MapScene::LevelFor(const MapWindow& window, double detail) const {
    constexpr std::size_t MostWays = 36'000;
    const WorldBox view = window.View();
    int level = ThinnedTrack::LevelOf(window.Zoom + std::log2(detail));
    for (; level + 1 < ThinnedTrack::Levels; ++level) {
        std::size_t ways = 0;
        for (const ThinnedTrack& track : thinned_) ways += track.CountSeen(level, view);
        if (ways <= MostWays) break;
    }
    return level;
}

MapHit MapScene::Find(const MapWindow& window, CanvasPoint place, double reach, int chosen) const {
    const int level = LevelFor(window, 1);
    MapHit hit;
    NearWay nearest;
    nearest.Distance = reach;
    for (int item = 1; item <= Items(); ++item) {
        const NearWay way = NearestWay(Thinned(item), level, window, place, reach);
        if (way.Distance > nearest.Distance || (way.Distance == nearest.Distance && item != chosen)) continue;
        nearest = way;
        hit.Item = item;
    }
    if (hit.Item == 0) return hit;
    const std::vector<MapPoint>& points = Track(hit.Item).Points();
    double least = std::numeric_limits<double>::infinity();
    for (std::size_t i = nearest.First; i <= nearest.Last; ++i) {
        const CanvasPoint at = window.PlaceOf(points[i].At);
        const double distance = std::hypot(place.X - at.X, place.Y - at.Y);
        if (distance >= least) continue;
        least = distance;
        hit.Point = i;
    }
    return hit;
}

std::string MapScene::TextOf(const MapHit& hit) const {
    const MapTrack& track = Track(hit.Item);
    std::string text = track.Name;
    if (hit.Point >= track.Points().size()) return text;
    const MapPoint& point = track.Points()[hit.Point];
    if (std::isfinite(point.Mph)) text += ", " + contents_.Shown.SpeedText(point.Mph);
    const std::string time = IsoDateTime(point.Time);
    constexpr std::size_t TimeAt = 11;
    if (time.size() > TimeAt && point.Time.Days != 0) text += " at " + time.substr(TimeAt);
    if (track.IsSetAside) text += " (set aside)";
    return text;
}

}  // namespace vantor
