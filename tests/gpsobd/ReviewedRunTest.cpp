#include "gpsobd/ReviewedRun.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vantor {
namespace {

using testing::ElementsAre;

constexpr std::int64_t Morning = 37755 * 86400LL + 6 * 3600;

RunPoint PointAt(std::int64_t second, float speed, double latitude = 42.5, std::int16_t run = 1) {
    RunPoint point;
    point.Second = second;
    point.Speed = speed;
    point.RunNumber = run;
    point.Latitude = latitude;
    point.Longitude = latitude == 0 ? 0 : -83.5;
    return point;
}

ReviewedRun RunOf(const std::vector<RunPoint>& rows, std::int16_t run = 1) {
    return ReviewedRunOf(rows, FindProblems(rows), run, {});
}

/// What is pointed at in the middle of the plot's height.
int ItemAt(const Plot& plot, double x) {
    const PlotMap map({0, 0, 1000, 100}, plot.Whole());
    return FindItem(plot, map, {map.XOf(x), 50}, 0).Item;
}

TEST(ReviewedRun, IsPointedAtByTimeAndTellsItsProblems) {
    const ReviewedRun run = RunOf({PointAt(Morning, 30), PointAt(Morning, 50, 42.5, 2), PointAt(Morning + 1, -1),
                                   PointAt(Morning + 2, 40), PointAt(Morning + 12, 40)});
    EXPECT_THAT(run.Rows, ElementsAre(1, 3, 4, 5));
    const double six = 6 * 3600.0;
    EXPECT_EQ(run.Trace.Whole().Across, (PlotRange{six, six + 12}));
    for (const auto& [x, item] : {std::pair{six - 5, 1}, {six + 0.6, 2}, {six + 6.9, 3}, {six + 7.1, 4}, {six + 99, 4}})
        EXPECT_EQ(ItemAt(run.Trace, x), item) << x;
    EXPECT_EQ(run.Trace.Items[0].Text, "Row 1, 6:00:00 AM, 30 MPH");
    EXPECT_EQ(run.Trace.Items[1].Text, "Row 3, 6:00:01 AM\nno speed");
    EXPECT_EQ(run.Trace.Items[2].Text, "Row 4, 6:00:02 AM, 40 MPH\n10 s without rows behind it");
    EXPECT_EQ(run.Trace.Axes.Legend.size(), 3U) << "speed, problem and gap";
    EXPECT_EQ(std::pair(run.PlaceOf(4), run.PlaceOf(2)), std::pair(3, 0)) << "row 2 is of the other run";
    const ReviewedRun untimed = RunOf({PointAt(0, 30), PointAt(0, 31), PointAt(0, 32)});
    EXPECT_EQ(ItemAt(untimed.Trace, 2.2), 2) << "by its rows";
}

TEST(ReviewedRun, KnowsTheRowOfAPlaceOnTheMap) {
    const ReviewedRun run = RunOf({PointAt(Morning, 30, 0), PointAt(Morning + 1, 30, 42.5), PointAt(Morning + 2, 30, 0),
                                   PointAt(Morning + 3, 30, 42.501)});
    EXPECT_THAT(run.MapPlaces, ElementsAre(2, 4));
    EXPECT_EQ(run.PlaceOf(MapHit{1, 1}), 4);
    EXPECT_EQ(RunOf({PointAt(Morning, 30, 0)}).Map, nullptr);
}

}  // namespace
}  // namespace vantor
