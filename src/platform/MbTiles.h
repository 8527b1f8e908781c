#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>

#include "core/ports/TileSource.h"

namespace vantor {

/// MBTiles: an SQLite database with a table or view `tiles` (zoom_level, tile_column, tile_row, tile_data), its rows
/// counted from the south, and mostly a table `metadata` (name, value). Opened to read only. What a file may cost is
/// bounded: a tile by its bytes and the picture in it, a question by its steps, for `tiles` may be any view.
class MbTiles : public TileFiles {
public:
    /// Decodes a picture; nothing where it is none.
    using Decoder = std::function<std::optional<Pixels>(std::span<const std::byte> file)>;

    explicit MbTiles(Decoder decode) : decode_(std::move(decode)) {}

    std::unique_ptr<TileSource> Open(const std::string& path) const override;

private:
    Decoder decode_;
};

}  // namespace vantor
