#include "editing/ProfileGeometry.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "Profiles.h"

namespace vantor {
namespace {

ProfileGeometry GeometryOf(const RunExtent& extent, BoundaryAxis axis = BoundaryAxis::Distance, bool metric = false) {
    ProfileGeometry geometry({metric}, extent);
    geometry.SetRectangle(RoundArea);
    geometry.SetAxis(axis);
    return geometry;
}

TEST(ProfileGeometry, SmallestScaleThatShowsTheWholeRun) {
    struct Case {
        double Length;
        int Step;
    };
    for (const Case& c : {Case{0, 5},
                          {50, 5},
                          {50.1, 10},
                          {500, 50},
                          {501, 100},
                          {5000, 500},
                          {5001, 750},
                          {7953, 1000},
                          {200000, 20000},
                          {273e6, 20000}})
        EXPECT_EQ(ScaleSteps[SmallestScaleShowing(c.Length)], c.Step) << c.Length;
}

TEST(ProfileGeometry, SpeedAxisIsRoundAndLeavesRoom) {
    struct Case {
        double TopSpeed;
        int Maximum;
        int GridStep;
    };
    const double none = std::numeric_limits<double>::quiet_NaN();
    for (const Case& c : {Case{0, 10, 5},
                          {9, 10, 5},
                          {20, 25, 5},
                          {36, 40, 5},
                          {37, 50, 10},
                          {42, 50, 10},
                          {75, 100, 20},
                          {110, 140, 20},
                          {1e12, 40000, 5000},
                          {none, 10, 5}}) {
        EXPECT_EQ(NiceSpeedAxis(c.TopSpeed).Maximum, c.Maximum) << c.TopSpeed;
        EXPECT_EQ(NiceSpeedAxis(c.TopSpeed).GridStep, c.GridStep) << c.TopSpeed;
    }
}

TEST(ProfileGeometry, DistanceUnderAPixel) {
    // 1000 feet a step, so 10 feet a pixel.
    const ProfileGeometry geometry = GeometryOf({7953, 227, 7961});
    ASSERT_EQ(geometry.ScaleStep(), 1000);
    struct Case {
        double X;
        std::int32_t Feet;
    };
    for (const Case& c : {Case{50, 0},
                          {20, 0},
                          {51, 10},
                          {50.25, 2},
                          {50.75, 8},
                          {51.25, 12},
                          {845, 7950},
                          {845.25, 7952},
                          {845.5, 7953},
                          {846, 7953},
                          {1050, 7953},
                          {5000, 7953}}) {
        EXPECT_EQ(geometry.BoundaryAt(c.X), c.Feet) << c.X;
    }
    EXPECT_DOUBLE_EQ(geometry.XOf(geometry.AxisValueOf(7950)), 845);
}

TEST(ProfileGeometry, ScrolledAndZoomedAroundThePointer) {
    ProfileGeometry geometry = GeometryOf({7953, 227, 7961});
    geometry.SetScaleStep(100, 550);  // 5000 feet stay under pixel 550, a foot a pixel now
    EXPECT_DOUBLE_EQ(geometry.Offset(), 4500);
    EXPECT_EQ(geometry.BoundaryAt(550), 5000);
    geometry.SetOffset(3000);
    EXPECT_EQ(geometry.BoundaryAt(50), 3000);
    EXPECT_EQ(geometry.BoundaryAt(40), 2990);
    EXPECT_EQ(geometry.BoundaryAt(150.5), 3100);
    EXPECT_DOUBLE_EQ(geometry.XOf(3100), 150);
    geometry.SetOffset(99999);
    EXPECT_DOUBLE_EQ(geometry.Offset(), 6961);  // the trace ends at the right edge
    EXPECT_EQ(geometry.BoundaryAt(1049), 7953);
    geometry.SetScaleStep(1000, 50);
    EXPECT_DOUBLE_EQ(geometry.Offset(), 0);  // all of it is shown again
}

TEST(ProfileGeometry, TimeUnderAPixel) {
    // 30 seconds a step, 0.3 seconds a pixel.
    const ProfileGeometry geometry = GeometryOf({7953, 227, 7961}, BoundaryAxis::Time);
    ASSERT_EQ(geometry.ScaleStep(), 30);
    EXPECT_EQ(geometry.BoundaryAt(50), 0);
    EXPECT_EQ(geometry.BoundaryAt(0), 0);
    EXPECT_EQ(geometry.BoundaryAt(55), 2);  // 1.5, to even
    EXPECT_EQ(geometry.BoundaryAt(150), 30);
    EXPECT_EQ(geometry.BoundaryAt(950), 227);
}

TEST(ProfileGeometry, MetricShowsMetresAndKilometresPerHour) {
    // A mile is 1609 metres: 200 metres a step, 2 metres a pixel.
    ProfileGeometry geometry = GeometryOf({5280, 100, 5280}, BoundaryAxis::Distance, true);
    ASSERT_EQ(geometry.ScaleStep(), 200);
    EXPECT_EQ(geometry.BoundaryAt(150), 656);  // 200 m = 656.3 ft
    EXPECT_EQ(geometry.BoundaryAt(100), 328);  // 100 m = 328.2 ft
    EXPECT_EQ(geometry.BoundaryAt(900), 5280);
    EXPECT_NEAR(geometry.XOf(geometry.AxisValueOf(5280)), 854.5, 1e-6);

    geometry.SetTopSpeed(60);  // 96.54 km/h
    EXPECT_EQ(geometry.Speeds().Maximum, 120);
    EXPECT_EQ(geometry.IdealSpeedAt(279.1), 30);  // 160.9 pixels of 400 / 120 a km/h = 48.27 km/h
    EXPECT_NEAR(geometry.YOf(30), 279.1, 1e-3);
}

TEST(ProfileGeometry, IdealSpeedOnlyBetweenTopAndBaseline) {
    ProfileGeometry geometry = GeometryOf({9000, 200, 9000});
    geometry.SetTopSpeed(42);  // 50 mph up to the top, 8 pixels each
    struct Case {
        double Y;
        std::optional<std::int32_t> Mph;
    };
    for (const Case& c : {Case{440, 0},
                          {436, 0},
                          {428, 2},
                          {240, 25},
                          {40, 50},
                          {39.9, std::nullopt},
                          {440.1, std::nullopt},
                          {-500, std::nullopt}})
        EXPECT_EQ(geometry.IdealSpeedAt(c.Y), c.Mph) << c.Y;
    EXPECT_DOUBLE_EQ(geometry.YOf(25), 240);
}

TEST(ProfileGeometry, StandsAnAreaWithoutRoomAndARunWithoutLength) {
    ProfileGeometry geometry = GeometryOf({0, 0, 0});
    geometry.SetRectangle({10, 10, 5, 5});
    EXPECT_TRUE(std::isfinite(geometry.XOf(100)));
    EXPECT_TRUE(std::isfinite(geometry.YOf(100)));
    EXPECT_EQ(geometry.BoundaryAt(400), 0);
}

}  // namespace
}  // namespace vantor
