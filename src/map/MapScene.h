#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "core/Units.h"
#include "map/MapThinning.h"

namespace vantor {

/// What a map is made of.
struct MapContents {
    std::string Title;
    std::vector<MapTrack> Tracks;
    std::vector<MapNode> Nodes;
    std::string EmptyText;  ///< shown where there is no position at all
    Units Shown;
};

/// A point of a track that was looked for.
struct MapHit {
    int Item = 0;  ///< the track, from 1; 0 for none
    std::size_t Point = 0;
};

/// Tracks and nodes made ready to be drawn; it does not change, so that it can be made on any thread. Its items are the
/// tracks, from 1.
class MapScene {
public:
    MapScene() = default;
    explicit MapScene(MapContents contents);

    const MapContents& Contents() const { return contents_; }
    const std::vector<WorldPoint>& Nodes() const { return nodes_; }
    const SpeedScale& Speeds() const { return speeds_; }
    bool LacksSpeeds() const { return lacksSpeeds_; }
    const WorldBox& Bounds() const { return bounds_; }
    bool IsEmpty() const { return bounds_.IsEmpty(); }
    int Items() const { return static_cast<int>(contents_.Tracks.size()); }
    const MapTrack& Track(int item) const { return contents_.Tracks[static_cast<std::size_t>(item) - 1]; }
    const ThinnedTrack& Thinned(int item) const { return thinned_[static_cast<std::size_t>(item) - 1]; }
    std::size_t LeftOut() const;

    /// The level of the tracks that a window shows: as fine as its pixels, but no more ways than a frame has time to
    /// look at. `detail` is the number of pixels to its unit.
    int LevelFor(const MapWindow& window, double detail) const;
    /// The point nearest to a place of the window, no farther than `reach`, and its track; of several the chosen one.
    MapHit Find(const MapWindow& window, CanvasPoint place, double reach, int chosen = 0) const;
    /// "NB-001, 32 MPH at 08:14:20".
    std::string TextOf(const MapHit& hit) const;

private:
    MapContents contents_;
    std::vector<WorldPoint> nodes_;
    std::vector<ThinnedTrack> thinned_;
    SpeedScale speeds_;
    WorldBox bounds_;
    bool lacksSpeeds_ = false;
};

}  // namespace vantor
