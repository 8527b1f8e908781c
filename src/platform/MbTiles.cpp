#include "platform/MbTiles.h"

#include <sqlite3.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <string_view>
#include <utility>

#include "core/Numeric.h"
#include "core/RunTimeError.h"
#include "core/Text.h"
#include "platform/NativeFile.h"

namespace vantor {
namespace {

/// No tile of a map to be looked at is larger.
constexpr int MostTileBytes = 4'000'000;
/// Steps of the database's machine that one question may take; a tile found by an index takes some hundred.
constexpr int StepsAtOnce = 100'000;
constexpr int MostRounds = 200;
constexpr int MostZoom = 30;
constexpr std::size_t MostText = 200;

struct CloseDatabase {
    void operator()(sqlite3* database) const { sqlite3_close(database); }
};
struct FinishStatement {
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};
using Database = std::unique_ptr<sqlite3, CloseDatabase>;
using Statement = std::unique_ptr<sqlite3_stmt, FinishStatement>;

[[noreturn]] void Refuse(const std::string& path, const std::string& reason) {
    throw RunTimeError(ErrorNumber::TypeMismatch,
                       reason + " Choose an MBTiles file with raster tiles (PNG or JPEG).\n" + path);
}

/// The texts of a file without its markup, on one line.
std::string PlainText(std::string_view text) {
    std::string plain;
    bool isMarkup = false;
    for (const char character : text) {
        if (character == '<') isMarkup = true;
        if (!isMarkup) plain += static_cast<unsigned char>(character) < ' ' ? ' ' : character;
        if (character == '>') isMarkup = false;
    }
    constexpr std::array<std::pair<std::string_view, std::string_view>, 5> Entities = {
        {{"&copy;", "\u00A9"}, {"&lt;", "<"}, {"&gt;", ">"}, {"&nbsp;", " "}, {"&amp;", "&"}}};
    for (const auto& [entity, character] : Entities)
        for (std::size_t at = 0; (at = plain.find(entity, at)) != std::string::npos; at += character.size())
            plain.replace(at, entity.size(), character);
    return std::string(FirstCharacters(Trim(plain), MostText));
}

class Source : public TileSource {
public:
    Source(const std::string& path, MbTiles::Decoder decode) : path_(path), decode_(std::move(decode)) {
        sqlite3* opened = nullptr;
        const int outcome = sqlite3_open_v2(PortablePath(NativePath(path)).c_str(), &opened,
                                            SQLITE_OPEN_READONLY | SQLITE_OPEN_NOMUTEX, nullptr);
        database_.reset(opened);
        if (outcome != SQLITE_OK) Refuse(path, "The file cannot be opened as a database.");
        sqlite3_limit(opened, SQLITE_LIMIT_LENGTH, MostTileBytes);
        sqlite3_db_config(opened, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
        sqlite3_db_config(opened, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
        sqlite3_progress_handler(
            opened, StepsAtOnce, [](void* rounds) { return ++*static_cast<int*>(rounds) > MostRounds ? 1 : 0; },
            &rounds_);
        ReadFacts();
        tile_ = Prepare("SELECT tile_data FROM tiles WHERE zoom_level=?1 AND tile_column=?2 AND tile_row=?3");
        CheckFirstTile();
    }

    const TileFacts& Facts() const override { return facts_; }

    std::optional<Pixels> Tile(const TilePlace& place) const override {
        const std::int64_t count = std::int64_t{1} << place.Zoom;
        rounds_ = 0;
        sqlite3_reset(tile_.get());
        sqlite3_bind_int(tile_.get(), 1, place.Zoom);
        sqlite3_bind_int64(tile_.get(), 2, place.X);
        sqlite3_bind_int64(tile_.get(), 3, count - 1 - place.Y);  // rows count from the south
        if (sqlite3_step(tile_.get()) != SQLITE_ROW) return std::nullopt;
        return decode_(BytesOf(tile_.get()));
    }

private:
    /// Nothing where the database cannot answer it.
    Statement Prepare(const char* question) const {
        rounds_ = 0;
        sqlite3_stmt* statement = nullptr;
        const int outcome = sqlite3_prepare_v2(database_.get(), question, -1, &statement, nullptr);
        if (outcome == SQLITE_NOTADB) Refuse(path_, "The file is no database.");
        return Statement(statement);
    }

    static std::span<const std::byte> BytesOf(sqlite3_stmt* row) {
        const auto* bytes = static_cast<const std::byte*>(sqlite3_column_blob(row, 0));
        return {bytes, bytes == nullptr ? 0 : static_cast<std::size_t>(sqlite3_column_bytes(row, 0))};
    }

    std::string Metadata(const char* name) const {
        const Statement statement = Prepare("SELECT value FROM metadata WHERE name=?1");
        if (!statement) return {};
        sqlite3_bind_text(statement.get(), 1, name, -1, SQLITE_STATIC);
        if (sqlite3_step(statement.get()) != SQLITE_ROW) return {};
        const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement.get(), 0));
        return text == nullptr ? std::string() : PlainText(text);
    }

    /// A zoom level of the metadata, or of the tiles themselves.
    int ZoomOf(const char* name, const char* question) const {
        if (const auto zoom = CountOfText(Metadata(name), MostZoom)) return *zoom;
        const Statement statement = Prepare(question);
        if (!statement || sqlite3_step(statement.get()) != SQLITE_ROW) return 0;
        return std::clamp(sqlite3_column_int(statement.get(), 0), 0, MostZoom);
    }

    void ReadFacts() {
        if (!Prepare("SELECT zoom_level, tile_column, tile_row, tile_data FROM tiles"))
            Refuse(path_, "The database has no tiles.");
        const std::string format = Metadata("format");
        if (EqualIgnoringCase(format, "pbf") || EqualIgnoringCase(format, "mvt")) RefuseVectors();
        facts_.Name = Metadata("name");
        facts_.Attribution = Metadata("attribution");
        facts_.LeastZoom = ZoomOf("minzoom", "SELECT min(zoom_level) FROM tiles");
        facts_.GreatestZoom = std::max(facts_.LeastZoom, ZoomOf("maxzoom", "SELECT max(zoom_level) FROM tiles"));
    }

    [[noreturn]] void RefuseVectors() const { Refuse(path_, "The file holds vector tiles, which cannot be drawn."); }

    void CheckFirstTile() const {
        const Statement first = Prepare("SELECT tile_data FROM tiles LIMIT 1");
        switch (first ? sqlite3_step(first.get()) : SQLITE_ERROR) {
            case SQLITE_ROW: break;
            case SQLITE_DONE: Refuse(path_, "The file holds no tile.");
            case SQLITE_TOOBIG: Refuse(path_, "The file holds a tile of more than 4 MB.");
            default: Refuse(path_, "The database is damaged, or its tiles cannot be read.");
        }
        const auto bytes = BytesOf(first.get());
        constexpr std::array GZipMark = {std::byte{0x1F}, std::byte{0x8B}};  // as vector tiles are packed
        if (bytes.size() > GZipMark.size() && std::ranges::equal(bytes.first(GZipMark.size()), GZipMark))
            RefuseVectors();
        if (!decode_(bytes)) Refuse(path_, "The file holds tiles that are no pictures, or too large ones.");
    }

    std::string path_;
    MbTiles::Decoder decode_;
    mutable int rounds_ = 0;
    Database database_;
    Statement tile_;  ///< goes before the database
    TileFacts facts_;
};

}  // namespace

std::unique_ptr<TileSource> MbTiles::Open(const std::string& path) const {
    const auto info = InfoOfNative(NativePath(path));
    if (!info) throw RunTimeError(ErrorNumber::FileNotFound, "The file of the base map is not there.\n" + path);
    if (!info->IsFile) Refuse(path, "What has this name is no file.");
    return std::make_unique<Source>(path, decode_);
}

}  // namespace vantor
