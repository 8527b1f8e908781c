#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <tuple>

#include "core/Pixels.h"

namespace vantor {

/// Where a tile of a map lies: zoom level `Zoom` has 2^Zoom tiles on each side, the first one north-west.
struct TilePlace {
    int Zoom = 0;
    int X = 0;
    int Y = 0;

    bool operator==(const TilePlace&) const = default;
    bool operator<(const TilePlace& other) const {
        return std::tie(Zoom, X, Y) < std::tie(other.Zoom, other.X, other.Y);
    }
};

/// What a file of tiles says of itself. Names are UTF-8 and may be empty.
struct TileFacts {
    std::string Name;
    std::string Attribution;  ///< who is to be named beside the map, without markup
    int LeastZoom = 0;
    int GreatestZoom = 0;
};

/// The tiles of one file, in Web Mercator. Used by one thread at a time.
class TileSource {
public:
    virtual ~TileSource() = default;
    virtual const TileFacts& Facts() const = 0;
    /// The picture of a tile; nothing where the file has none there, or one that cannot be drawn.
    virtual std::optional<Pixels> Tile(const TilePlace& place) const = 0;
};

/// Opens files of tiles; by several threads at once.
class TileFiles {
public:
    virtual ~TileFiles() = default;
    /// Error 53 for a missing file, 13 with the reason and the remedy for one that has no tiles that can be drawn.
    virtual std::unique_ptr<TileSource> Open(const std::string& path) const = 0;
};

}  // namespace vantor
