#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <vector>

#include "core/ports/TileSource.h"
#include "map/Projection.h"

namespace vantor {

/// The tiles that lie under a map, as far as they have been read. Those that were not seen for the longest time are
/// forgotten; those are seen that were looked for among the missing.
class MapTiles {
public:
    explicit MapTiles(TileFacts facts) : facts_(std::move(facts)) {}

    const TileFacts& Facts() const { return facts_; }
    /// The tiles of a window that are still to be read, those in its middle first. Where the file has none, the larger
    /// one above it is asked for. `detail` is the number of pixels to a unit of the window.
    std::vector<TilePlace> Missing(const MapWindow& window, double detail);
    /// What was read; nothing where the file has no such tile.
    void Put(const TilePlace& place, std::optional<Pixels> picture);
    /// Draws what is there; for what is not, the part of a larger tile.
    void Draw(Canvas& canvas, const MapWindow& window, double detail) const;
    /// Whether a window shows a part of it, as far as it has been read.
    bool Covers(const MapWindow& window, double detail) const;
    std::size_t Kept() const { return tiles_.size(); }

private:
    struct Tile {
        std::optional<Pixels> Picture;
        std::uint64_t Seen = 0;
    };
    struct Square {
        TilePlace Place;
        CanvasBox Box;
    };
    std::vector<Square> SquaresOf(const MapWindow& window, double detail) const;
    /// The picture of a square, or of a larger tile, and the part of it, from 0 to 1, that the square is.
    struct Found {
        const Pixels* Picture = nullptr;
        CanvasBox Part{0, 0, 1, 1};
    };
    Found PictureOf(TilePlace place) const;
    const Tile* Find(const TilePlace& place) const;

    TileFacts facts_;
    std::map<TilePlace, Tile> tiles_;
    std::uint64_t time_ = 0;
};

}  // namespace vantor
