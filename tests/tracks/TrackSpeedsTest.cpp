#include "tracks/TrackSpeeds.h"

#include <cmath>
#include <numeric>
#include <random>

#include "Tracks.h"
#include "tracks/TrackCut.h"
#include "tracks/TrackTimes.h"

namespace vantor {
namespace {

constexpr double MetreOfLatitude = 180 / (3.14159265358979324 * 6371008.8);

/// A drive along a parallel: three times 60 s standing, speeding up by 2 m/s², 40 s at 16 m/s, braking; then 60 s
/// standing. Positions in metres at so many a second, with noise of that size and a slow wander three times as large.
std::vector<TrackPoint> Drive(double perSecond, double noise, double latitude, double longitude) {
    std::mt19937 engine(7);
    const auto random = [&] { return (static_cast<double>(engine()) / 4294967296.0 - 0.5) * 2; };
    std::vector<TrackPoint> points;
    double metres = 0;
    for (double t = 0; t < 3 * 116 + 60; t += 1 / perSecond) {
        const double phase = std::fmod(t, 116);
        const double moving = phase - 60;
        const bool isMoving = moving > 0 && t < 3 * 116;
        const double lap = !isMoving     ? 0
                           : moving < 8  ? moving * moving
                           : moving < 48 ? 64 + 16 * (moving - 8)
                                         : 768 - (56 - moving) * (56 - moving);
        metres = std::min(std::floor(t / 116), 3.0) * 768 + (t < 3 * 116 ? lap : 0);
        const double east = metres + noise * (random() + 3 * std::sin(t / 40));
        const double north = noise * (random() + 3 * std::cos(t / 55));
        double lon = longitude + east * MetreOfLatitude / std::cos(latitude / 180 * 3.14159265358979324);
        if (lon > 180) lon -= 360;
        points.push_back({.Time = 1772625600 + t, .Position = TrackPosition{latitude + north * MetreOfLatitude, lon}});
    }
    return points;
}

/// Standing seconds of the four stops, and the length in metres.
struct Driven {
    std::array<double, 4> Stops{};
    double Metres = 0;
};

Driven Measure(const std::vector<TrackPoint>& seconds) {
    Driven driven;
    for (std::size_t i = 1; i < seconds.size(); ++i) {
        const double step = *seconds[i].Time - *seconds[i - 1].Time;
        driven.Metres += *seconds[i].Speed * 1609.344 / 3600 * step;
        const double t = *seconds[i].Time - 1772625600;
        if (*seconds[i].Speed == 0) driven.Stops[static_cast<std::size_t>(std::min((t + 20) / 116, 3.0))] += step;
    }
    return driven;
}

TEST(TrackSpeedsTest, StandingAndLengthAgreeWithTheMotion) {
    for (const auto& [latitude, longitude] : {std::pair{42.3, -83.0}, {-33.9, 151.2}, {-17.0, 179.99999}})
        for (const double noise : {0.0, 0.5}) {
            for (const double perSecond : {1.0, 5.0, 0.2}) {
                auto seconds = WholeSecondsOf(Drive(perSecond, noise, latitude, longitude));
                ASSERT_EQ(seconds.size(), perSecond == 0.2 ? 82U : perSecond == 1 ? 408U : 409U);
                const FilledSpeeds filled = FillSpeeds(seconds);
                EXPECT_EQ(filled.FromPositions, seconds.size());
                const Driven driven = Measure(seconds);
                // A log of five seconds tells no edge better than these.
                for (const double stop : driven.Stops) EXPECT_NEAR(stop, 60, perSecond == 0.2 ? 7 : 2) << noise;
                EXPECT_NEAR(driven.Metres, 3 * 768, noise == 0 ? 0.01 * 768 : 0.02 * 3 * 768) << perSecond;
            }
        }
}

TEST(TrackSpeedsTest, JitterIsSmoothedAndCleanSpeedsStay) {
    const auto metresASecond = [](double noise) {
        auto seconds = WholeSecondsOf(Drive(1, noise, 42.3, -83.0));
        FillSpeeds(seconds);
        std::vector<double> speeds;
        for (const TrackPoint& point : seconds) speeds.push_back(*point.Speed * 1609.344 / 3600);
        return speeds;
    };
    const auto clean = metresASecond(0);
    for (const auto& [second, speed] : {std::pair{64, 7.0}, {68, 15.0}, {69, 16.0}, {108, 16.0}, {109, 15.0}})
        EXPECT_NEAR(clean[static_cast<std::size_t>(second)], speed, 1e-3) << second;
    // Without smoothing the error is the noise of two positions, 1 m/s.
    const auto noisy = metresASecond(1.2);
    double squares = 0;
    for (std::size_t i = 72; i < 106; ++i) squares += std::pow(noisy[i] - 16, 2);
    EXPECT_LT(std::sqrt(squares / 34), 0.35);
}

TEST(TrackSpeedsTest, AReceiverThatWandersForLongStands) {
    std::vector<TrackPoint> points;
    points.reserve(1200);
    for (int t = 0; t < 1200; ++t)
        points.push_back({.Time = 1772625600 + t,
                          .Position = TrackPosition{(t % 3 + 9 * std::sin(t / 60.0)) * MetreOfLatitude,
                                                    9 * std::cos(t / 80.0) * MetreOfLatitude}});
    EXPECT_EQ(FillSpeeds(points).Standing, 1200U);
}

TEST(TrackSpeedsTest, CreepingIsNoStandingAndToldSpeedsStay) {
    std::vector<TrackPoint> creeping;
    creeping.reserve(120);
    for (int i = 0; i < 120; ++i)
        creeping.push_back({.Time = 1772625600 + i, .Position = TrackPosition{10 + 0.6 * i * MetreOfLatitude, 0}});
    creeping[50].Speed = 9;
    const FilledSpeeds filled = FillSpeeds(creeping);
    EXPECT_TRUE(filled.Told == 1 && *creeping[50].Speed == 9);
    EXPECT_LT(filled.Standing, 9U) << "a few metres at an end may be anything";
    EXPECT_NEAR(*creeping[70].Speed, 0.6 * 3600 / 1609.344, 1e-6);
    // A quarter of the equator: by the sphere of mean radius, 10007.5 km.
    EXPECT_NEAR(FeetBetween({0, 135}, {0, -135}) * 0.3048, 10007557.2, 1);
}

TEST(TrackSpeedsTest, SecondsHaveTheNearestPointAndTheMeanSpeed) {
    std::vector<TrackPoint> points;
    for (const auto& [time, speed, node] :
         {std::tuple{100.6, 10.0, 0}, {100.9, 20.0, 0}, {101.2, 30.0, 4}, {101.6, 40.0, 5}})
        points.push_back({.Time = 1e9 + time,
                          .Position = TrackPosition{speed, 0},
                          .Speed = speed,
                          .Node = static_cast<std::int16_t>(node)});
    points.push_back({.Speed = 50});
    const auto seconds = WholeSecondsOf(points);
    ASSERT_EQ(seconds.size(), 2U);
    EXPECT_EQ(Told(seconds[0]), "0:1000000101 20.000000 0.000000 v=20.0000 n=4");
    EXPECT_EQ(Told(seconds[1]), "0:1000000102 40.000000 0.000000 v=40.0000 n=5");
}

/// Speeds second by second: "60x0" is 60 s standing, "gap400" a gap, "|" a new segment.
std::string Cut(const std::vector<std::pair<int, double>>& stretches, const TrackCuts& cuts = {}) {
    std::vector<TrackPoint> points;
    double time = 1e9;
    int segment = 0;
    for (const auto& [seconds, speed] : stretches) {
        if (speed < 0) time += seconds;
        if (speed < -1) ++segment;
        for (int i = 0; i < seconds && speed >= 0; ++i)
            points.push_back({.Time = time++, .Speed = speed, .Segment = segment});
    }
    std::string told;
    const TrackPieces pieces = CutTrack(points, cuts);
    for (const TrackPiece& piece : pieces.Pieces)
        told += std::to_string(piece.First) + "+" + std::to_string(piece.Count) + (piece.GoesOn ? "..." : "") + "(" +
                std::to_string(static_cast<int>(piece.CutFromStart)) + "," +
                std::to_string(static_cast<int>(piece.CutFromEnd)) + ") ";
    return told + std::to_string(pieces.Left);
}

TEST(TrackCutTest, PiecesEndAtGapsSegmentsStandingAndTheLengthOfARun) {
    EXPECT_EQ(Cut({{100, 20}, {299, -1}, {100, 20}, {300, -1}, {50, 20}}), "0+200(0,0) 200+50(0,0) 0");
    EXPECT_EQ(Cut({{100, 20}, {0, -2}, {100, 20}, {0, -2}, {1, 20}}), "0+100(0,0) 100+100(0,0) 1");
    EXPECT_EQ(Cut({{60, 0}, {100, 20}, {40, 0}, {9, 5}, {32, 0}}), "59+151(59,31) 90");
    EXPECT_EQ(Cut({{60, 0}, {100, 20}, {60, 0}}, {.StandingSeconds = 0}) + Cut({{60, 0}}), "0+220(0,0) 060");
    EXPECT_EQ(Cut({{40000, 20}, {60, 0}}), "0+32767...(0,0) 32767+7234(0,59) 59");
    EXPECT_EQ(Cut({}), "0");
}

TEST(TrackTimesTest, ZonesWithTheirSummers) {
    const FixedClock clock;
    const TrackTimes summer(clock, "Summer");
    EXPECT_EQ(IsoDateTime(summer.LocalOf(1616893199)) + IsoDateTime(summer.LocalOf(1616893200)),
              "2021-03-28T01:59:592021-03-28T03:00:00");
    EXPECT_EQ(summer.UtcOf(1616893199 + 3600), 1616893199);
    EXPECT_EQ(summer.UtcOf(1616893200 + 7200.5), 1616893200.5);
    EXPECT_EQ(summer.UtcOf(1616893200 + 3600 + 60), 1616893200 + 60) << "a time that no clock showed";
    EXPECT_ERROR(TypeMismatch, TrackTimes(clock, "Nowhere"));
}

}  // namespace
}  // namespace vantor
