#include "platform/MbTiles.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <QBuffer>
#include <QImage>

#include "DiskFolder.h"
#include "platform/DecodePicture.h"

namespace vantor {
namespace {

/// The blob of a picture of one colour, as SQL has it.
std::string Blob(const char* format, int side = 4) {
    QImage image(side, side, QImage::Format_RGB32);
    image.fill(0xFF336699);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    image.save(&buffer, format);
    return "x'" + bytes.toHex().toStdString() + "'";
}

struct MbTilesTest : testing::Test, DiskFolder {
    /// Makes a database by SQL.
    std::string Make(const std::string& name, const std::string& sql) {
        sqlite3* database = nullptr;
        EXPECT_EQ(sqlite3_open(At(name).c_str(), &database), SQLITE_OK);
        char* problem = nullptr;
        EXPECT_EQ(sqlite3_exec(database, sql.c_str(), nullptr, nullptr, &problem), SQLITE_OK) << problem;
        sqlite3_close(database);
        return At(name);
    }
    /// What opening a file is refused with; empty where it is opened.
    std::string Refusal(const std::string& path) {
        try {
            Files.Open(path);
            return {};
        } catch (const RunTimeError& error) {
            EXPECT_NE(error.Place().find(path), std::string::npos) << "the file is named";
            return error.Place().substr(0, error.Place().find('.'));
        }
    }
    const std::string Tables =
        "CREATE TABLE metadata(name, value); CREATE TABLE tiles(zoom_level, tile_column, tile_row, tile_data);";
    MbTiles Files{DecodePicture};
};

TEST_F(MbTilesTest, RowsCountFromTheSouthAndPngAndJpegAreDecoded) {
    const auto source = Files.Open(
        Make("a.mbtiles", Tables +
                              "INSERT INTO metadata VALUES('name','Town'),('attribution','<a href=x>&copy; Me</a>');"
                              "INSERT INTO tiles VALUES(3,2,7," +
                              Blob("PNG") + "),(3,2,0," + Blob("JPG", 8) + "),(5,0,0," + Blob("PNG", 2000) + ");"));
    EXPECT_EQ(source->Facts().Name, "Town");
    EXPECT_EQ(source->Facts().Attribution, "\u00A9 Me");
    EXPECT_EQ(source->Facts().LeastZoom, 3);
    EXPECT_EQ(source->Facts().GreatestZoom, 5) << "as the tiles say where the metadata do not";
    const auto north = source->Tile({3, 2, 0});
    ASSERT_TRUE(north);
    EXPECT_EQ(north->Width, 4);
    EXPECT_EQ(north->Points, std::vector<std::uint32_t>(16, 0xFF336699));
    EXPECT_EQ(source->Tile({3, 2, 7})->Width, 8);
    EXPECT_FALSE(source->Tile({3, 3, 0}));
    EXPECT_FALSE(source->Tile({5, 0, 31})) << "too large a picture";
}

TEST_F(MbTilesTest, WhatCannotBeDrawnIsRefusedWithTheReason) {
    EXPECT_EQ(Refusal(At("gone.mbtiles")), "The file of the base map is not there");
    EXPECT_EQ(Refusal(Folder), "What has this name is no file");
    Put("text.mbtiles", std::string(5000, 'x'));
    EXPECT_EQ(Refusal(At("text.mbtiles")), "The file is no database");
    EXPECT_EQ(Refusal(Make("other.mbtiles", "CREATE TABLE t(a);")), "The database has no tiles");
    EXPECT_EQ(Refusal(Make("empty.mbtiles", Tables)), "The file holds no tile");
    EXPECT_EQ(Refusal(Make("huge.mbtiles", Tables + "INSERT INTO tiles VALUES(0,0,0,zeroblob(100000000));")),
              "The file holds a tile of more than 4 MB");
    EXPECT_EQ(Refusal(Make("pbf.mbtiles", Tables + "INSERT INTO metadata VALUES('format','pbf');")),
              "The file holds vector tiles, which cannot be drawn");
    EXPECT_EQ(Refusal(Make("gz.mbtiles", Tables + "INSERT INTO tiles VALUES(0,0,0,x'1F8B0800');")),
              "The file holds vector tiles, which cannot be drawn");
    EXPECT_EQ(Refusal(Make("webp.mbtiles", Tables + "INSERT INTO tiles VALUES(0,0,0,'RIFF');")),
              "The file holds tiles that are no pictures, or too large ones");
    // A view that never ends.
    EXPECT_EQ(
        Refusal(Make("loop.mbtiles",
                     "CREATE VIEW tiles AS WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n) SELECT i "
                     "AS zoom_level, i AS tile_column, i AS tile_row, i AS tile_data FROM n WHERE i<0;")),
        "The database is damaged, or its tiles cannot be read");
}

}  // namespace
}  // namespace vantor
