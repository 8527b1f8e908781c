#include "editing/VisibleTrace.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <map>

#include "Profiles.h"

namespace vantor {
namespace {

TEST(ProfileTrace, DistancesAreSumsOfRoundedSteps) {
    // 43 pulses of 1.246 feet are 53.578, so 54 feet a second; together they are 107.156 feet.
    const ProfileTrace trace(RunOf({43, 43}, 1246), EnglishSettings().SpeedFactor);
    EXPECT_EQ(trace.DistanceOf(1), 54);
    EXPECT_EQ(trace.DistanceOf(2), 108);
    EXPECT_NEAR(trace.SpeedOf(1), 54 * 0.6818182, 1e-4);
    EXPECT_EQ(trace.Extent().Feet, 107);
    EXPECT_EQ(trace.Extent().TraceFeet, 108);
    EXPECT_EQ(trace.Extent().Seconds, 2);
}

TEST(ProfileTrace, MarksAreNodesWithTheirNamesAndKeysWithTheirLabels) {
    RunRecord run = RunOf({10, 0x8000 | 10, 16 << 8 | 10, 5 << 8, 40 << 8, 0x9000 | 7, 0});
    run.Header.SectionName[1] = "Oak St  ";
    const auto marks = ProfileTrace(run, 1).Marks();
    ASSERT_EQ(marks.size(), 5u);
    struct Case {
        std::int32_t Sample;
        bool IsNode;
        const char* Label;
    };
    const Case expected[] = {{2, true, "Oak St"}, {3, false, "Signal"}, {4, false, ""}, {5, false, ""}, {6, true, ""}};
    for (std::size_t i = 0; i < marks.size(); ++i) {
        EXPECT_EQ(marks[i].Sample, expected[i].Sample);
        EXPECT_EQ(marks[i].IsNode, expected[i].IsNode);
        EXPECT_EQ(marks[i].Label, expected[i].Label);
    }
    // More nodes than there are names.
    EXPECT_EQ(ProfileTrace(RunOf(std::vector<int>(300, 0x8000 | 1)), 1).Marks().size(), 300u);
}

TEST(ProfileTrace, SampleAtAPlace) {
    const ProfileTrace trace(RunOf({10, 0, 0, 20, 30}), 1);  // 10 10 10 30 60 feet
    struct Case {
        BoundaryAxis Axis;
        double Place;
        std::int32_t Sample;
    };
    constexpr auto Distance = BoundaryAxis::Distance;
    constexpr auto Time = BoundaryAxis::Time;
    for (const Case& c : {Case{Distance, -5, 1},
                          {Distance, 10, 1},
                          {Distance, 10.5, 4},
                          {Distance, 30, 4},
                          {Distance, 60, 5},
                          {Distance, 999, 5},
                          {Time, -1, 1},
                          {Time, 2, 2},
                          {Time, 2.1, 3},
                          {Time, 99, 5}})
        EXPECT_EQ(trace.SampleAt(c.Axis, c.Place), c.Sample) << c.Place;
}

TEST(ProfileTrace, DamagedRunsDoNotMove) {
    EXPECT_FALSE(ProfileTrace(RunOf({}), 1).HasMovement());
    EXPECT_FALSE(ProfileTrace(RunOf({0, 0}), 1).HasMovement());
    EXPECT_FALSE(ProfileTrace(RunOf({9, 9}, 0), 1).HasMovement());
    EXPECT_FALSE(ProfileTrace(RunOf({9, 9}, -1000), 1).HasMovement());
    EXPECT_FALSE(ProfileTrace(RunOf({255, 255, 255}, 1), 1).HasMovement());  // a foot in all, none in any second

    const ProfileTrace noSpeed(RunOf({10}), std::numeric_limits<float>::quiet_NaN());
    EXPECT_EQ(noSpeed.TopSpeed(), 0.0F);

    RunRecord run = RunOf({1, 2, 3, 4});
    for (const auto& [told, kept] : {std::pair{3, 3}, {9, 4}, {-1, 0}}) {
        run.Header.SampleCount = told;
        EXPECT_EQ(ProfileTrace(run, 1).SampleCount(), kept) << told;
    }
}

ProfileGeometry GeometryFor(const ProfileTrace& trace, BoundaryAxis axis) {
    ProfileGeometry geometry({}, trace.Extent());
    geometry.SetRectangle(RoundArea);
    geometry.SetAxis(axis);
    return geometry;
}

TEST(VisibleTrace, FewSamplesAreAllThere) {
    const ProfileTrace trace(RunOf({10, 20, 30}), 1);
    ProfileGeometry geometry = GeometryFor(trace, BoundaryAxis::Time);  // 20 pixels a second
    const VisibleTrace visible = VisibleTraceOf(trace, geometry, 1);
    EXPECT_FALSE(visible.IsDense);
    ASSERT_EQ(visible.Points.size(), 3u);
    EXPECT_DOUBLE_EQ(visible.Points[1].X, 90);
    EXPECT_EQ(visible.Points[1].Speed, 20.0F);
}

TEST(VisibleTrace, ScrolledPartReachesBeyondBothEdges) {
    const ProfileTrace trace(RunWithStop(), 1);
    ProfileGeometry geometry = GeometryFor(trace, BoundaryAxis::Time);
    geometry.SetScaleStep(5, 50);
    geometry.SetOffset(60);
    const VisibleTrace visible = VisibleTraceOf(trace, geometry, 1);
    EXPECT_EQ(visible.Points.size(), 52u);  // seconds 59 to 110
    EXPECT_DOUBLE_EQ(visible.Points.front().X, 30);
    EXPECT_DOUBLE_EQ(visible.Points.back().X, 1050);
}

TEST(VisibleTrace, ManySamplesKeepTheRangeOfEveryPixelColumn) {
    std::vector<int> values;
    for (std::uint32_t i = 0, noise = 7; i < 32767; ++i) {
        noise = noise * 1664525U + 1013904223U;
        values.push_back(static_cast<int>(noise >> 24) % 90);
    }
    const ProfileTrace trace(RunOf(std::move(values)), 1);
    for (const double columnsPerPixel : {1.0, 2.0}) {
        ProfileGeometry geometry = GeometryFor(trace, BoundaryAxis::Time);
        geometry.SetRectangle({50.3, 40, 1047.9, 440});  // no sample on the border of two columns
        const VisibleTrace visible = VisibleTraceOf(trace, geometry, columnsPerPixel);
        EXPECT_TRUE(visible.IsDense);
        std::map<int, std::pair<float, float>> drawn;
        const auto columnOf = [&](double x) { return static_cast<int>(std::floor(x * columnsPerPixel)); };
        const auto widen = [](auto& ranges, int column, float speed) {
            const auto [range, isNew] = ranges.try_emplace(column, speed, speed);
            range->second = {std::min(range->second.first, speed), std::max(range->second.second, speed)};
        };
        for (const TracePoint& point : visible.Points) widen(drawn, columnOf(point.X), point.Speed);
        std::map<int, std::pair<float, float>> expected;
        for (int i = 1; i <= trace.SampleCount(); ++i) widen(expected, columnOf(geometry.XOf(i)), trace.SpeedOf(i));
        EXPECT_EQ(drawn, expected);
        EXPECT_LE(visible.Points.size(), 4 * expected.size());
        EXPECT_EQ(visible.Points.back().Speed, trace.SpeedOf(trace.SampleCount()));
    }
}

}  // namespace
}  // namespace vantor
