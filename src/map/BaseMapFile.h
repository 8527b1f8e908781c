#pragma once

#include <memory>
#include <string>

#include "map/MapTiles.h"

namespace vantor {

/// The file of a base map, opened, or why it cannot be, on one line; neither where none is chosen.
struct BaseMapFile {
    std::shared_ptr<const TileSource> Source;
    std::string Problem;
};
BaseMapFile OpenBaseMap(const TileFiles& files, const std::string& path);

/// The tiles of a window that is drawn once, about as fine as `detail` pixels to its unit, however fine the tracks are
/// that lie on them; nothing where they would be too many.
std::shared_ptr<const MapTiles> TilesOf(const TileSource& source, const MapWindow& window, double detail);

}  // namespace vantor
