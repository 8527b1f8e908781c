#include "map/BaseMapFile.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

#include "core/Paths.h"
#include "core/RunTimeError.h"

namespace vantor {

BaseMapFile OpenBaseMap(const TileFiles& files, const std::string& path) {
    if (path.empty()) return {};
    try {
        return {files.Open(path), {}};
    } catch (const RunTimeError& error) {
        const std::string reason = error.Place().empty() ? ErrorText(error.Number()) : error.Place();
        return {nullptr, "No base map (" + LastComponent(path) + "): " + reason.substr(0, reason.find('\n'))};
    }
}

std::shared_ptr<const MapTiles> TilesOf(const TileSource& source, const MapWindow& window, double detail) {
    constexpr std::size_t MostTiles = 200;  // a page of paper is covered by a third of them
    TileFacts facts = source.Facts();
    const int fine = static_cast<int>(std::floor(window.Zoom + std::log2(detail) + 0.5));
    facts.GreatestZoom = std::clamp(fine, facts.LeastZoom, facts.GreatestZoom);
    const auto tiles = std::make_shared<MapTiles>(facts);
    // Where the file has no tile, larger ones are asked for in turn.
    for (std::size_t read = 0;;) {
        const std::vector<TilePlace> missing = tiles->Missing(window, detail);
        if (missing.empty()) return tiles;
        read += missing.size();
        if (read > MostTiles) return nullptr;
        for (const TilePlace& place : missing) tiles->Put(place, source.Tile(place));
    }
}

}  // namespace vantor
