#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include "fakes/RecordingCanvas.h"
#include "map/MapDrawing.h"
#include "map/MapFromRun.h"
#include "map/SpeedScale.h"

namespace vantor {
namespace {

using testing::Contains;
using testing::ElementsAre;

constexpr CanvasBox Area{0, 0, 800, 600};

RecordingCanvas Drawn(const MapScene& scene, const MapWindow& window, const MapLook& look = {}) {
    RecordingCanvas canvas;
    DrawMap(canvas, scene, window, look);
    return canvas;
}

std::vector<std::string> TextsOf(const RecordingCanvas& canvas) {
    std::vector<std::string> texts;
    for (const auto& text : canvas.Texts) texts.push_back(text.Shown);
    return texts;
}

TEST(MapTrack, CrossesTheDateLineInOnePieceAndPartsWherePositionsAreMissing) {
    MapTrack track;
    for (const double longitude : {179.9, 179.95, -180.0, -179.95}) track.Add({{-16.8, longitude}, 30});
    track.Add({{0, 0}, 30});
    track.Add({{-16.8, -179.9}, 30});
    EXPECT_EQ(track.LeftOut(), 1);
    EXPECT_NEAR(track.Bounds().High.X - track.Bounds().Low.X, 0.2 / 360, 1e-9);
    EXPECT_TRUE(track.Points()[0].Begins && !track.Points()[3].Begins && track.Points()[4].Begins);

    MapContents contents;
    contents.Tracks = {track, {}};
    contents.Tracks[1].Add({{-16.8, -179.97}, 30});  // recorded on the other side
    contents.Nodes = {{"West", {-16.8, 179.96}}, {"Lost", {-1, -1}}};
    const MapScene scene(contents);
    EXPECT_LT(scene.Bounds().High.X - scene.Bounds().Low.X, 0.3 / 360);
    EXPECT_EQ(scene.Nodes().size(), 1);
}

/// A thousand points on a straight road: 40 MPH, a stop of sixty points in the middle, one peak to the side.
MapContents StraightRoad() {
    MapContents contents;
    MapTrack& track = contents.Tracks.emplace_back();
    track.Name = "NB-1";
    for (int i = 0; i < 1000; ++i) {
        const bool stands = i >= 500 && i < 560;
        const double way = stands ? 500 : i;
        track.Add({{33.7 + (i == 250 ? 0.01 : 0), -84.4 + way * 1e-4}, stands ? 0.0 : 40.0, {39521 + i / 86400.0}});
    }
    return contents;
}

TEST(MapThinning, KeepsExtremesAndStopsAtEveryZoomWithFewPoints) {
    const MapScene scene(StraightRoad());
    const auto& all = scene.Track(1).Points();
    for (double zoom = 9; zoom <= 15; zoom += 0.5) {
        const int level = ThinnedTrack::LevelOf(zoom);
        const auto& kept = scene.Thinned(1).Points(level);
        MapWindow window{.Centre = scene.Bounds().Middle(), .Zoom = zoom, .Area = Area};
        EXPECT_LE(kept.size(), 12) << zoom;
        EXPECT_THAT(kept, Contains(testing::Field(&ThinPoint::Speed, 0))) << zoom;
        EXPECT_TRUE(kept.front().Point == 0 && kept.back().Point == 999);
        // No point of the track is farther than a pixel from the ways that are left.
        for (std::size_t i = 1; i < kept.size(); ++i) {
            const CanvasPoint a = window.PlaceOf(kept[i - 1].At);
            const CanvasPoint b = window.PlaceOf(kept[i].At);
            for (auto point = kept[i - 1].Point; point <= kept[i].Point; ++point) {
                const CanvasPoint p = window.PlaceOf(all[point].At);
                const double length = std::max(std::hypot(b.X - a.X, b.Y - a.Y), 1e-9);
                const double aside = std::abs((b.X - a.X) * (p.Y - a.Y) - (b.Y - a.Y) * (p.X - a.X)) / length;
                EXPECT_LT(std::min(aside, std::hypot(p.X - a.X, p.Y - a.Y)), 1) << zoom << " point " << point;
            }
        }
    }
    EXPECT_EQ(scene.Thinned(1).Seen(0, {WorldOf({40, 8}), WorldOf({39, 9})}).size(), 0) << "out of view";
}

TEST(MapScene, FindsThePointUnderTheMouse) {
    const MapScene scene(StraightRoad());
    const MapWindow window = FittedWindow(scene.Bounds(), Area);
    CanvasPoint place = window.PlaceOf(scene.Track(1).Points()[700].At);
    place.Y += 4;
    const MapHit hit = scene.Find(window, place, 8);
    EXPECT_NEAR(static_cast<double>(hit.Point), 700, 2);
    EXPECT_EQ(scene.TextOf({1, 720}), "NB-1, 40 MPH at 00:12:00");
    EXPECT_EQ(scene.Find(window, {place.X, place.Y + 40}, 8).Item, 0);
}

TEST(MapDrawing, HasScaleLegendNorthAndNamesThatDoNotMeet) {
    MapContents contents = StraightRoad();
    contents.Nodes = {{"Oak St", {33.7, -84.38}}, {"Elm Ave", {33.7, -84.379}}, {"Birch", {33.7, -84.34}}};
    contents.Shown = {true};
    const MapScene scene(contents);
    const RecordingCanvas canvas = Drawn(scene, FittedWindow(scene.Bounds(), Area));
    for (const char* text : {"N", "KPH", "start", "end", "0", "Oak St", "Elm Ave", "Birch", "1 km"})
        EXPECT_THAT(TextsOf(canvas), Contains(text));
    for (const auto& one : canvas.Texts)
        for (const auto& other : canvas.Texts)
            EXPECT_TRUE(&one == &other || one.Box.X >= other.Box.X + other.Box.Width ||
                        other.Box.X >= one.Box.X + one.Box.Width || one.Box.Y >= other.Box.Y + other.Box.Height ||
                        other.Box.Y >= one.Box.Y + one.Box.Height)
                << one.Shown << " meets " << other.Shown;
    // At the equator and zoom 16 a pixel is 7.837 ft.
    const MapWindow equator{.Zoom = 16, .Area = Area};
    EXPECT_EQ(ScaleBarOf(equator, {}, 120).Name, "500 ft");
    EXPECT_NEAR(ScaleBarOf(equator, {}, 120).Width, 63.8, 0.1);
    EXPECT_EQ(ScaleBarOf(equator, {true}, 120).Name, "200 m");
    EXPECT_EQ(ScaleBarOf({.Zoom = 8, .Area = Area}, {}, 120).Name, "20 miles");
}

TEST(SpeedScale, IsOfTheSpeedsWithoutAFewFarAbove) {
    std::vector<float> speeds;
    for (int second = 0; second < 200; ++second) speeds.push_back(static_cast<float>(second % 46));
    const SpeedScale sound(speeds, {});
    EXPECT_EQ(sound.Classes(), 5) << "up to 45 mph";
    EXPECT_EQ(sound.NameOf(4), "40");
    for (const float fault : {800.0F, 650.0F, std::numeric_limits<float>::infinity()}) speeds.push_back(fault);
    const SpeedScale damaged(speeds, {});
    EXPECT_EQ(damaged.Classes(), 5);
    EXPECT_EQ(damaged.NameOf(4), "> 40");
    EXPECT_EQ(damaged.ClassOf(800), 4);
    EXPECT_EQ(SpeedScale({10, 60}, {}).NameOf(5), "50") << "few points are all there is";
}

TEST(MapTiles, AreAskedForFromTheMiddleAndEnlargedWhereTheyEnd) {
    MapTiles tiles({"", "", 3, 4});
    MapWindow window{.Centre = {0.001, 0.5}, .Zoom = 6, .Area = {0, 0, 256, 256}};
    // Two levels beyond the file's: a tile is 1024 units wide; two lie west of the middle, beyond the date line.
    EXPECT_THAT(tiles.Missing(window, 1), testing::UnorderedElementsAre(TilePlace{4, 0, 7}, TilePlace{4, 0, 8},
                                                                        TilePlace{4, 15, 7}, TilePlace{4, 15, 8}));
    for (const TilePlace& place : tiles.Missing(window, 1)) tiles.Put(place, std::nullopt);
    EXPECT_THAT(tiles.Missing(window, 1), testing::UnorderedElementsAre(TilePlace{3, 0, 3}, TilePlace{3, 0, 4},
                                                                        TilePlace{3, 7, 3}, TilePlace{3, 7, 4}));
    tiles.Put({3, 0, 3}, Pixels{256, 256, std::vector<std::uint32_t>(256 * 256)});
    RecordingCanvas canvas;
    tiles.Draw(canvas, window, 1);
    ASSERT_EQ(canvas.Pictures.size(), 1);
    // 4/0/7 is the lower left quarter of 3/0/3.
    EXPECT_THAT((std::array{canvas.Pictures[0].Part.X, canvas.Pictures[0].Part.Y, canvas.Pictures[0].Part.Width}),
                ElementsAre(0, 128, 128));
    for (int x = 0; x < 2000; ++x) tiles.Put({12, x, 0}, std::nullopt);
    EXPECT_LT(tiles.Kept(), 1000) << "a bounded memory";
}

TEST(MapFromRun, TakesPositionsAndNamedNodesOfSamples) {
    RunRecord run;
    for (int i = 0; i < 4; ++i) {
        run.SampleValues.Append(static_cast<std::int16_t>(i == 1 || i == 2 ? 10 | NodeFlag : 10));
        run.RunSamples.Append({.Latitude = -1, .Longitude = -1});
    }
    EXPECT_FALSE(HasPositions(run));
    run.RunSamples[3] = {.Latitude = 33.7, .Longitude = -84.4, .Speed = 25};
    run.Header.SectionName[2] = "Elm Ave   ";
    EXPECT_TRUE(HasPositions(run));
    EXPECT_EQ(TrackOf(run, "R1").LeftOut(), 3);
    EXPECT_EQ(TrackOf(run, "R1").Points().front().Mph, 25);
    const std::vector<MapNode> nodes = NodesOf(run);
    ASSERT_EQ(nodes.size(), 1) << "the first node has no position";
    EXPECT_EQ(nodes[0].Name, "Elm Ave");
}

}  // namespace
}  // namespace vantor
