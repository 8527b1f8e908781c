#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "core/RunTimeError.h"
#include "core/ports/TileSource.h"

namespace vantor {

/// One file of tiles, each of one colour; without a path there is none.
class FakeTiles : public TileFiles {
public:
    std::string Path;
    TileFacts Facts{"Streets", "(c) Surveyors", 0, 16};
    std::map<TilePlace, Pixels> Tiles;

    std::unique_ptr<TileSource> Open(const std::string& path) const override {
        if (path != Path) throw RunTimeError(ErrorNumber::FileNotFound, path);
        return std::make_unique<Source>(*this);
    }

private:
    class Source : public TileSource {
    public:
        explicit Source(const FakeTiles& tiles) : tiles_(tiles) {}
        const TileFacts& Facts() const override { return tiles_.Facts; }
        std::optional<Pixels> Tile(const TilePlace& place) const override {
            const auto tile = tiles_.Tiles.find(place);
            return tile == tiles_.Tiles.end() ? std::nullopt : std::optional(tile->second);
        }

    private:
        const FakeTiles& tiles_;
    };
};

}  // namespace vantor
