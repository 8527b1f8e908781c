#include "map/MapTiles.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace vantor {
namespace {

/// 128 MB of tiles of 256 points in width and height: more than a screen of 4000 points across shows.
constexpr std::size_t MostKept = 512;

TilePlace Above(const TilePlace& place) { return {place.Zoom - 1, place.X / 2, place.Y / 2}; }

}  // namespace

std::vector<MapTiles::Square> MapTiles::SquaresOf(const MapWindow& window, double detail) const {
    // From half a level on, the tiles of the next one are shown smaller.
    const int nearest = static_cast<int>(std::floor(window.Zoom + std::log2(detail) + 0.5));
    const int zoom = std::clamp(nearest, facts_.LeastZoom, facts_.GreatestZoom);
    const double count = std::exp2(zoom);
    const double side = window.Scale() / count;
    constexpr double MostSquares = 4096;
    // Far out, the least tiles of a file of small ones would be specks.
    if (window.Area.Width / side * (window.Area.Height / side) > MostSquares) return {};
    const WorldBox view = window.View();
    const int last = static_cast<int>(count) - 1;
    std::vector<Square> squares;
    for (int y = std::max(static_cast<int>(std::floor(view.Low.Y * count)), 0);
         y <= std::min(static_cast<int>(std::floor(view.High.Y * count)), last); ++y) {
        for (int x = static_cast<int>(std::floor(view.Low.X * count));
             x <= static_cast<int>(std::floor(view.High.X * count)); ++x) {
            const CanvasPoint corner = window.PlaceOf({x / count, y / count});
            const int turned = (x % (last + 1) + last + 1) % (last + 1);
            squares.push_back({{zoom, turned, y}, {corner.X, corner.Y, side, side}});
        }
    }
    return squares;
}

const MapTiles::Tile* MapTiles::Find(const TilePlace& place) const {
    const auto tile = tiles_.find(place);
    return tile == tiles_.end() ? nullptr : &tile->second;
}

std::vector<TilePlace> MapTiles::Missing(const MapWindow& window, double detail) {
    std::vector<Square> squares = SquaresOf(window, detail);
    const double x = window.Area.X + window.Area.Width / 2;
    const double y = window.Area.Y + window.Area.Height / 2;
    std::ranges::sort(squares, {}, [&](const Square& square) {
        return std::hypot(square.Box.X + square.Box.Width / 2 - x, square.Box.Y + square.Box.Height / 2 - y);
    });
    std::vector<TilePlace> missing;
    for (const Square& square : squares) {
        for (TilePlace place = square.Place; place.Zoom >= facts_.LeastZoom; place = Above(place)) {
            const auto tile = tiles_.find(place);
            if (tile == tiles_.end()) {
                if (std::ranges::find(missing, place) == missing.end()) missing.push_back(place);
                break;
            }
            tile->second.Seen = ++time_;
            if (tile->second.Picture) break;
        }
    }
    return missing;
}

void MapTiles::Put(const TilePlace& place, std::optional<Pixels> picture) {
    tiles_[place] = {std::move(picture), ++time_};
    if (tiles_.size() <= MostKept) return;
    tiles_.erase(std::ranges::min_element(tiles_, {}, [](const auto& tile) { return tile.second.Seen; }));
}

MapTiles::Found MapTiles::PictureOf(TilePlace place) const {
    Found found;
    for (; place.Zoom >= facts_.LeastZoom; place = Above(place)) {
        if (const Tile* tile = Find(place); tile != nullptr && tile->Picture) {
            found.Picture = &*tile->Picture;
            break;
        }
        CanvasBox& part = found.Part;
        part = {(part.X + place.X % 2) / 2, (part.Y + place.Y % 2) / 2, part.Width / 2, part.Height / 2};
    }
    return found;
}

bool MapTiles::Covers(const MapWindow& window, double detail) const {
    return std::ranges::any_of(SquaresOf(window, detail),
                               [&](const Square& square) { return PictureOf(square.Place).Picture != nullptr; });
}

void MapTiles::Draw(Canvas& canvas, const MapWindow& window, double detail) const {
    for (const Square& square : SquaresOf(window, detail)) {
        const auto [picture, part] = PictureOf(square.Place);
        if (picture == nullptr) continue;
        canvas.DrawPicture(square.Box, *picture,
                           {part.X * picture->Width, part.Y * picture->Height, part.Width * picture->Width,
                            part.Height * picture->Height});
    }
}

}  // namespace vantor
