#include "tracks/TrackRuns.h"

#include "Tracks.h"
#include "core/Units.h"

namespace vantor {
namespace {

struct TrackRunsTest : testing::Test {
    std::vector<std::vector<TrackPoint>> Pieces;
    std::vector<TrackPoint> Points;  ///< as they were told

    /// So many points, the first one `step` seconds behind the one before, each that many degrees to the north.
    void Drive(int count, double step, double degrees, std::optional<double> speed = {}, int segment = 0) {
        for (int i = 0; i < count; ++i) {
            const double time = Points.empty() ? 1e9 : *Points.back().Time + step;
            const double latitude = Points.empty() ? 42 : Points.back().Position->Latitude + degrees;
            Points.push_back(
                {.Time = time, .Position = TrackPosition{latitude, -83}, .Speed = speed, .Segment = segment});
        }
    }
    TrackRuns Cut(const TrackCuts& cuts = {}) {
        Pieces.clear();
        TrackRuns runs(cuts, [&](std::span<const TrackPoint> points) {
            Pieces.emplace_back(points.begin(), points.end());
            return true;
        });
        for (const TrackPoint& point : Points) EXPECT_TRUE(runs.Add(point));
        EXPECT_TRUE(runs.Finish());
        return runs;
    }
    /// The way from the second behind `from` to `to`, by the speeds, feet.
    static double Feet(const std::vector<TrackPoint>& piece, double from, double to) {
        double feet = 0;
        for (const TrackPoint& point : piece)
            if (*point.Time > from && *point.Time <= to) feet += *point.Speed * FeetPerSecondOfMph;
        return feet;
    }
};

TEST_F(TrackRunsTest, TheSecondsOfASlowLoggerCoverTheWayBetweenItsPositions) {
    Drive(10, 5, 0.0005);
    Drive(12, 5, 0);
    Drive(10, 5, 0.0008);
    const double beforeGap = *Points.back().Time;
    Drive(1, 20, 0.001);
    Drive(9, 5, 0.0008);
    const TrackRuns runs = Cut();
    EXPECT_EQ(runs.Interval(), 5);
    ASSERT_EQ(Pieces.size(), 1U);
    // 41 steps of 5 s but for the gap, whose seconds between stay away.
    EXPECT_EQ(Pieces[0].size(), 1U + 40 * 5 + 1);
    EXPECT_EQ(std::ranges::count_if(
                  Pieces[0], [&](const TrackPoint& p) { return *p.Time > beforeGap && *p.Time < beforeGap + 20; }),
              0);
    for (std::size_t i = 1; i < Points.size(); ++i)
        if (const double begin = *Points[i - 1].Time; *Points[i].Time == begin + 5) {
            const double way = FeetBetween(*Points[i - 1].Position, *Points[i].Position);
            EXPECT_NEAR(Feet(Pieces[0], begin, begin + 5), way, 1e-6) << i;
        }
    EXPECT_EQ(std::ranges::count_if(Pieces[0], [](const TrackPoint& point) { return *point.Speed == 0; }), 60);
    EXPECT_NEAR(Pieces[0][2].Position->Latitude, 42 + 0.0005 * 2 / 5, 1e-9);
}

TEST_F(TrackRunsTest, SpeedsThatAreToldLeadFromPointToPoint) {
    // 10 mph, then 20 mph: 15 in the middle, 73.333 feet a 5 s of 10 mph, 110 feet of 15 mph in the mean.
    for (int i = 0; i < 4; ++i) Points.push_back({.Time = 1e9 + 5 * i, .Speed = i < 2 ? 10 : 20});
    Cut();
    std::string speeds;
    for (const TrackPoint& point : Pieces.at(0)) speeds += std::to_string(static_cast<int>(*point.Speed * 10)) + " ";
    EXPECT_EQ(speeds, "100 100 100 100 100 100 110 130 150 170 190 200 200 200 200 200 ");
    Points.clear();
    Drive(4, 1, 0.0001, 30);
    EXPECT_EQ(Cut().Interval(), 0) << "a point every second";
    EXPECT_EQ(Feet(Pieces.at(0), 0, 2e9), 4 * 30 * FeetPerSecondOfMph);
}

TEST_F(TrackRunsTest, StretchesEndAtSegmentsGapsAndTheLengthOfARun) {
    Drive(100, 1, 0.0001);
    Drive(50, 1, 0.0001, {}, 1);
    Drive(1, 301, 0.0001, {}, 1);
    Drive(49, 1, 0.0001, {}, 1);
    Points.push_back({.Segment = 1});
    const TrackRuns runs = Cut();
    EXPECT_EQ(Pieces.size(), 3U);
    EXPECT_EQ(runs.Left(), 1U);
    EXPECT_EQ(Cut({.GapSeconds = 0, .AtSegments = false}).Left(), 1U);
    EXPECT_EQ(Pieces.size(), 1U);
    Points.clear();
    // Ten points a second are held as one.
    Drive(400000, 0.1, 0.00001);
    EXPECT_EQ(Cut().GoingOn(), 1U);
    ASSERT_EQ(Pieces.size(), 2U);
    EXPECT_EQ(Pieces[0].size(), 32767U);
    EXPECT_EQ(*Pieces[1].front().Time - *Pieces[0].back().Time, 1);
}

}  // namespace
}  // namespace vantor
