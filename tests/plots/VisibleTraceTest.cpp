#include "plots/VisibleTrace.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <map>

#include "Profiles.h"

namespace vantor {
namespace {

using Case = std::pair<double, std::int32_t>;

ProfileGeometry GeometryOf(const RunExtent& extent, BoundaryAxis axis = BoundaryAxis::Distance, bool metric = false) {
    ProfileGeometry geometry({metric}, extent);
    geometry.SetRectangle(RoundArea);
    geometry.SetAxis(axis);
    return geometry;
}

TEST(ProfileGeometry, SmallestScaleThatShowsTheWholeRun) {
    for (const auto& [length, step] :
         {Case{0, 5}, Case{50, 5}, Case{50.1, 10}, Case{500, 50}, Case{501, 100}, Case{5000, 500}, Case{5001, 750},
          Case{7953, 1000}, Case{200000, 20000}, Case{273e6, 20000}})
        EXPECT_EQ(ScaleSteps[SmallestScaleShowing(length)], step) << length;
}

TEST(ProfileGeometry, SpeedAxisIsRoundAndLeavesRoom) {
    using AxisCase = std::tuple<double, int, int>;
    const double none = std::numeric_limits<double>::quiet_NaN();
    for (const auto& [topSpeed, maximum, gridStep] :
         {AxisCase{0, 10, 5}, AxisCase{9, 10, 5}, AxisCase{20, 25, 5}, AxisCase{36, 40, 5}, AxisCase{37, 50, 10},
          AxisCase{42, 50, 10}, AxisCase{75, 100, 20}, AxisCase{110, 140, 20}, AxisCase{1e12, 40000, 5000},
          AxisCase{none, 10, 5}}) {
        EXPECT_EQ(NiceSpeedAxis(topSpeed).Maximum, maximum) << topSpeed;
        EXPECT_EQ(NiceSpeedAxis(topSpeed).GridStep, gridStep) << topSpeed;
    }
}

TEST(ProfileGeometry, DistanceOrTimeUnderAPixel) {
    // 1000 feet a step, so 10 feet a pixel.
    const ProfileGeometry geometry = GeometryOf({7953, 227, 7961});
    ASSERT_EQ(geometry.ScaleStep(), 1000);
    for (const auto& [x, feet] :
         {Case{50, 0}, Case{20, 0}, Case{51, 10}, Case{50.25, 2}, Case{50.75, 8}, Case{51.25, 12}, Case{845, 7950},
          Case{845.25, 7952}, Case{845.5, 7953}, Case{846, 7953}, Case{1050, 7953}, Case{5000, 7953}})
        EXPECT_EQ(geometry.BoundaryAt(x), feet) << x;
    EXPECT_DOUBLE_EQ(geometry.XOf(geometry.AxisValueOf(7950)), 845);

    // 30 seconds a step, 0.3 seconds a pixel; halves go to even.
    const ProfileGeometry time = GeometryOf({7953, 227, 7961}, BoundaryAxis::Time);
    ASSERT_EQ(time.ScaleStep(), 30);
    for (const auto& [x, second] : {Case{50, 0}, Case{0, 0}, Case{55, 2}, Case{150, 30}, Case{950, 227}})
        EXPECT_EQ(time.BoundaryAt(x), second) << x;
}

TEST(ProfileGeometry, ScrolledAndZoomedAroundThePointer) {
    ProfileGeometry geometry = GeometryOf({7953, 227, 7961});
    geometry.SetScaleStep(100, 550);  // 5000 feet stay under pixel 550, a foot a pixel now
    EXPECT_DOUBLE_EQ(geometry.Offset(), 4500);
    EXPECT_EQ(geometry.BoundaryAt(550), 5000);
    geometry.SetOffset(3000);
    for (const auto& [x, feet] : {Case{50, 3000}, Case{40, 2990}, Case{150.5, 3100}})
        EXPECT_EQ(geometry.BoundaryAt(x), feet) << x;
    EXPECT_DOUBLE_EQ(geometry.XOf(3100), 150);
    geometry.SetOffset(99999);
    EXPECT_DOUBLE_EQ(geometry.Offset(), 6961);  // the trace ends at the right edge
    EXPECT_EQ(geometry.BoundaryAt(1049), 7953);
    geometry.SetScaleStep(1000, 50);
    EXPECT_DOUBLE_EQ(geometry.Offset(), 0);  // all of it is shown again
}

TEST(ProfileGeometry, MetricShowsMetresAndKilometresPerHour) {
    // A mile is 1609 metres: 200 metres a step, 2 metres a pixel.
    ProfileGeometry geometry = GeometryOf({5280, 100, 5280}, BoundaryAxis::Distance, true);
    ASSERT_EQ(geometry.ScaleStep(), 200);
    // 200 m are 656.3 ft, 100 m 328.2 ft.
    for (const auto& [x, feet] : {Case{150, 656}, Case{100, 328}, Case{900, 5280}})
        EXPECT_EQ(geometry.BoundaryAt(x), feet) << x;
    EXPECT_NEAR(geometry.XOf(geometry.AxisValueOf(5280)), 854.5, 1e-6);

    geometry.SetTopSpeed(60);  // 96.54 km/h
    EXPECT_EQ(geometry.Speeds().Maximum, 120);
    EXPECT_EQ(geometry.IdealSpeedAt(279.1), 30);  // 160.9 pixels of 400 / 120 a km/h = 48.27 km/h
    EXPECT_NEAR(geometry.YOf(30), 279.1, 1e-3);
}

TEST(ProfileGeometry, IdealSpeedOnlyBetweenTopAndBaseline) {
    ProfileGeometry geometry = GeometryOf({9000, 200, 9000});
    geometry.SetTopSpeed(42);  // 50 mph up to the top, 8 pixels each
    for (const auto& [y, mph] : {Case{440, 0}, Case{436, 0}, Case{428, 2}, Case{240, 25}, Case{40, 50}})
        EXPECT_EQ(geometry.IdealSpeedAt(y), mph) << y;
    for (const double y : {39.9, 440.1, -500.0}) EXPECT_EQ(geometry.IdealSpeedAt(y), std::nullopt) << y;
    EXPECT_DOUBLE_EQ(geometry.YOf(25), 240);
}

TEST(ProfileGeometry, StandsAnAreaWithoutRoomAndARunWithoutLength) {
    ProfileGeometry geometry = GeometryOf({0, 0, 0});
    geometry.SetRectangle({10, 10, 5, 5});
    EXPECT_TRUE(std::isfinite(geometry.XOf(100) + geometry.YOf(100)));
    EXPECT_EQ(geometry.BoundaryAt(400), 0);
}

TEST(ProfileTrace, DistancesAreSumsOfRoundedSteps) {
    // 43 pulses of 1.246 feet are 53.578, so 54 feet a second; together they are 107.156 feet.
    const ProfileTrace trace(RunOf({43, 43}, 1246), EnglishSettings().SpeedFactor);
    EXPECT_EQ(std::pair(trace.DistanceOf(1), trace.DistanceOf(2)), std::pair(54, 108));
    EXPECT_NEAR(trace.SpeedOf(1), 54 * 0.6818182, 1e-4);
    EXPECT_EQ(std::pair(trace.Extent().Feet, trace.Extent().TraceFeet), std::pair(107, 108));
    EXPECT_EQ(trace.Extent().Seconds, 2);
}

TEST(ProfileTrace, MarksAreNodesWithTheirNamesAndKeysWithTheirLabels) {
    RunRecord run = RunOf({10, Node | 10, 16 << 8 | 10, 5 << 8, 40 << 8, Node | 0x1000 | 7, 0});
    run.Header.SectionName[1] = "Oak St  ";
    const ProfileTrace trace(run, 1);
    std::string marks;
    for (const ProfileMark& mark : trace.Marks())
        marks += std::to_string(mark.Sample) + (mark.IsNode ? " node " : " key ") + mark.Label + "; ";
    EXPECT_EQ(marks, "2 node Oak St; 3 key Signal; 4 key ; 5 key ; 6 node ; ");
    // More nodes than there are names.
    EXPECT_EQ(ProfileTrace(RunOf(std::vector<int>(300, Node | 1)), 1).Marks().size(), 300u);
}

TEST(ProfileTrace, SampleAtAPlace) {
    const ProfileTrace trace(RunOf({10, 0, 0, 20, 30}), 1);  // 10 10 10 30 60 feet
    for (const auto& [place, sample] :
         {Case{-5, 1}, Case{10, 1}, Case{10.5, 4}, Case{30, 4}, Case{60, 5}, Case{999, 5}})
        EXPECT_EQ(trace.SampleAt(BoundaryAxis::Distance, place), sample) << place;
    for (const auto& [place, sample] : {Case{-1, 1}, Case{2, 2}, Case{2.1, 3}, Case{99, 5}})
        EXPECT_EQ(trace.SampleAt(BoundaryAxis::Time, place), sample) << place;
}

TEST(ProfileTrace, DamagedRunsDoNotMove) {
    // The last one has a foot in all and none in any second.
    for (const RunRecord& run :
         {RunOf({}), RunOf({0, 0}), RunOf({9, 9}, 0), RunOf({9, 9}, -1000), RunOf({255, 255, 255}, 1)})
        EXPECT_FALSE(ProfileTrace(run, 1).HasMovement());
    EXPECT_EQ(ProfileTrace(RunOf({10}), std::numeric_limits<float>::quiet_NaN()).TopSpeed(), 0.0F);

    RunRecord run = RunOf({1, 2, 3, 4});
    for (const auto& [told, kept] : {std::pair{3, 3}, {9, 4}, {-1, 0}}) {
        run.Header.SampleCount = told;
        EXPECT_EQ(ProfileTrace(run, 1).SampleCount(), kept) << told;
    }
}

TEST(VisibleTrace, FewSamplesAreAllThere) {
    const ProfileTrace trace(RunOf({10, 20, 30}), 1);
    const std::vector<TracePoint> visible =
        VisibleTraceOf(trace, GeometryOf(trace.Extent(), BoundaryAxis::Time), 1);  // 20 pixels a second
    ASSERT_EQ(visible.size(), 3u);
    EXPECT_EQ(std::pair(visible[1].X, visible[1].Speed), std::pair(90.0, 20.0F));
}

TEST(VisibleTrace, ScrolledPartReachesBeyondBothEdges) {
    const ProfileTrace trace(RunWithStop(), 1);
    ProfileGeometry geometry = GeometryOf(trace.Extent(), BoundaryAxis::Time);
    geometry.SetScaleStep(5, 50);
    geometry.SetOffset(60);
    const std::vector<TracePoint> visible = VisibleTraceOf(trace, geometry, 1);
    EXPECT_EQ(visible.size(), 52u);  // seconds 59 to 110
    EXPECT_DOUBLE_EQ(visible.front().X, 30);
    EXPECT_DOUBLE_EQ(visible.back().X, 1050);
}

TEST(VisibleTrace, ManySamplesKeepTheRangeOfEveryPixelColumn) {
    std::vector<int> values;
    for (std::uint32_t i = 0, noise = 7; i < 32767; ++i) {
        noise = noise * 1664525U + 1013904223U;
        values.push_back(static_cast<int>(noise >> 24) % 90);
    }
    const ProfileTrace trace(RunOf(std::move(values)), 1);
    for (const double columnsPerPixel : {1.0, 2.0}) {
        ProfileGeometry geometry = GeometryOf(trace.Extent(), BoundaryAxis::Time);
        geometry.SetRectangle({50.3, 40, 1047.9, 440});  // no sample on the border of two columns
        const std::vector<TracePoint> visible = VisibleTraceOf(trace, geometry, columnsPerPixel);
        std::map<int, std::pair<float, float>> drawn, expected;
        const auto widen = [&](auto& ranges, double x, float speed) {
            const auto column = static_cast<int>(std::floor(x * columnsPerPixel));
            const auto [range, isNew] = ranges.try_emplace(column, speed, speed);
            range->second = {std::min(range->second.first, speed), std::max(range->second.second, speed)};
        };
        for (const TracePoint& point : visible) widen(drawn, point.X, point.Speed);
        for (int i = 1; i <= trace.SampleCount(); ++i) widen(expected, geometry.XOf(i), trace.SpeedOf(i));
        EXPECT_EQ(drawn, expected);
        EXPECT_LE(visible.size(), 4 * expected.size());
        EXPECT_EQ(visible.back().Speed, trace.SpeedOf(trace.SampleCount()));
    }
}

}  // namespace
}  // namespace vantor
