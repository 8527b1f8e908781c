#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "map/MapTrack.h"
#include "map/SpeedScale.h"

namespace vantor {

/// A point that is left of a track, and the way that leads to it.
struct ThinPoint {
    WorldPoint At;
    std::uint32_t Point = 0;  ///< its place in the track
    std::uint8_t Speed = 0;   ///< the class of the slowest part of the way
    bool Begins = false;      ///< no way leads to it
};

/// A track thinned for the levels of zoom. Each level is made of the next finer one, once: so all of them together cost
/// a few passes over the points, and a frame costs what can be seen in it, however long the track is. No point that is
/// left out lies farther than a pixel from the line that is drawn; a way of another class is kept from three pixels on,
/// and of shorter ones the slowest stands for all, so that a stop never disappears.
class ThinnedTrack {
public:
    ThinnedTrack(const MapTrack& track, const SpeedScale& scale);

    /// A number of levels, the first the finest.
    static constexpr int Levels = 21;
    /// The level that a zoom needs whose pixels are as many units of the window.
    static int LevelOf(double zoom);

    /// Points of a level that follow each other and whose ways may be in view; a way leads to each but the first.
    using Run = std::span<const ThinPoint>;
    std::vector<Run> Seen(int level, const WorldBox& view) const;
    /// How many points those are, at the most.
    std::size_t CountSeen(int level, const WorldBox& view) const;
    const std::vector<ThinPoint>& Points(int level) const { return levels_[static_cast<std::size_t>(level)]->Points; }

private:
    struct Level {
        std::vector<ThinPoint> Points;
        std::vector<WorldBox> Blocks;  ///< the bounds of the ways to the points of each block
    };
    static void AddBlocks(Level& level);

    /// Those that would hardly be shorter are the finer ones.
    std::vector<std::shared_ptr<const Level>> levels_;
};

}  // namespace vantor
