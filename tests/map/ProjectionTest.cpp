#include "map/Projection.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace vantor {
namespace {

constexpr CanvasBox Area{10, 20, 800, 600};

TEST(Projection, PlacesAreThoseOfTheTileNames) {
    // Worked out by hand: n = 2^z, x = n (lon + 180) / 360, y = n (1 - ln(tan lat + sec lat) / pi) / 2.
    const WorldPoint zurich = WorldOf({47.3769, 8.5417});
    EXPECT_EQ(std::floor(zurich.X * 1024), 536);  // 10/536/358
    EXPECT_EQ(std::floor(zurich.Y * 1024), 358);
    const WorldPoint sydney = WorldOf({-33.8688, 151.2093});
    EXPECT_EQ(std::floor(sydney.X * 4096), 3768);  // 12/3768/2457
    EXPECT_EQ(std::floor(sydney.Y * 4096), 2457);
    EXPECT_NEAR(WorldOf({85.0511287798, 0}).Y, 0, 1e-9);
    EXPECT_NEAR(WorldOf({-90, 0}).Y, 1, 1e-9) << "the poles lie at the limit";
    for (const Position at : {Position{47.3769, 8.5417}, Position{-33.8688, 151.2093}}) {
        const Position back = PositionOf(WorldOf(at));
        EXPECT_NEAR(back.Latitude, at.Latitude, 1e-9);
        EXPECT_NEAR(back.Longitude, at.Longitude, 1e-9);
    }
    EXPECT_NEAR(PositionOf(WorldPoint{1.25, 0.5}).Longitude, -90, 1e-9) << "a turn further";
    // 2 pi 6378137 m = 131,479,713.5 ft; half of that at 60 degrees.
    EXPECT_NEAR(GroundFeet(WorldOf({60, 0}).Y), 65739856.8, 1);
}

TEST(Projection, WhatIsNoPositionIsKnown) {
    constexpr double None = std::numeric_limits<double>::quiet_NaN();
    for (const Position none : {Position{0, 0}, Position{-1, -1}, Position{None, 8}, Position{91, 8},
                                Position{47, 180.1}, Position{47, None}})
        EXPECT_FALSE(IsPosition(none)) << none.Latitude << " " << none.Longitude;
    EXPECT_TRUE(IsPosition({0, 8}) && IsPosition({-90, -180}) && IsPosition({-2, 1}));
}

TEST(Projection, WindowsFitZoomAndMove) {
    WorldBox box;
    box.Include(WorldOf({33.70, -84.50}));
    box.Include(WorldOf({33.90, -84.30}));
    const MapWindow fitted = FittedWindow(box, Area);
    for (const WorldPoint& corner : {box.Low, box.High}) {
        const CanvasPoint at = fitted.PlaceOf(corner);
        EXPECT_TRUE(at.X > 30 && at.X < 790 && at.Y > 40 && at.Y < 600) << at.X << " " << at.Y;
    }
    constexpr CanvasBox Pane{0, 0, 350, 295};
    EXPECT_LT(FittedWindow(box, Pane).PlaceOf(box.High).Y, 295 - 80) << "scale and legend stand above each other there";
    const CanvasPoint about{200, 100};
    const Position before = PositionOf(fitted.WorldAt(about));
    const MapWindow nearer = ZoomedWindow(fitted, about, 1.5);
    EXPECT_NEAR(PositionOf(nearer.WorldAt(about)).Latitude, before.Latitude, 1e-9);
    EXPECT_NEAR(fitted.FeetPerUnit() / nearer.FeetPerUnit(), std::exp2(1.5), 0.01);
    EXPECT_EQ(ZoomedWindow(fitted, about, 99).Zoom, MapWindow::MostZoom);
    const MapWindow moved = MovedWindow(fitted, about, {260, 130});
    EXPECT_NEAR(PositionOf(moved.WorldAt({260, 130})).Longitude, before.Longitude, 1e-9);
    EXPECT_EQ(FittedWindow({}, Area).Zoom, 0) << "nothing: the world";
}

}  // namespace
}  // namespace vantor
