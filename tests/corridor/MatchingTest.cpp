#include <gmock/gmock.h>

#include <cmath>

#include "analysis/DelayStatistics.h"
#include "core/RunDecoding.h"
#include "corridor/CorridorIntake.h"
#include "corridor/NodeDelays.h"

namespace vantor {
namespace {

using testing::ElementsAre;
using testing::Optional;

/// At this latitude so many feet are a degree to the north: 6371008.8 m / 0.3048 * pi / 180.
constexpr double FeetNorth = 364813.3;
constexpr double Latitude = 42;
const double FeetEast = FeetNorth * std::cos((Latitude + 0.005) * 3.14159265358979 / 180);

Position At(double north, double east = 0) { return {Latitude + north / FeetNorth, -83 + east / FeetEast}; }

/// Nodes every 1000 ft to the north.
Corridor StreetOf(int nodes) {
    Corridor corridor;
    for (int i = 0; i < nodes; ++i) {
        CorridorNode node;
        node.Name = "N" + std::to_string(i + 1);
        node.At = At(1000.0 * i);
        node.DistanceFt = 1000.0 * i;
        node.Around = {300, 200};
        corridor.Nodes.push_back(node);
    }
    return corridor;
}

/// A run of one foot a pulse.
struct Drive {
    RunRecord Run;
    double North = 0, East = 0;

    explicit Drive(double north, double east = 0) : North(north), East(east) { Run.Header.CalConstant = 1000; }

    /// At 50 ft a second.
    Drive& To(double north, double east, bool hasPositions = true) {
        const double feet = std::hypot(north - North, east - East);
        const int seconds = std::max(1, static_cast<int>(feet / 50 + 0.5));
        for (int i = 1; i <= seconds; ++i)
            Add(North + (north - North) * i / seconds, East + (east - East) * i / seconds,
                static_cast<std::int16_t>(feet / seconds + 0.5), hasPositions);
        North = north;
        East = east;
        return *this;
    }
    void Add(double north, double east, std::int16_t pulses, bool hasPosition) {
        Run.SampleValues.Append(pulses);
        RunSample sample;
        if (hasPosition) {
            sample.Latitude = At(north, east).Latitude;
            sample.Longitude = At(north, east).Longitude;
        }
        Run.RunSamples.Append(sample);
    }
    const RunRecord& Driven() {
        Run.Header.SampleCount = Run.SampleValues.LastIndex();
        return Run;
    }
};

/// "F:1,2,3 B:3,2" for passes forward past the nodes 1 to 3 and back past two.
std::string PassesOf(Drive& drive, const Corridor& corridor) {
    std::string text;
    for (const Pass& pass : FindPasses(drive.Driven(), corridor, *CorridorLine::Of(corridor))) {
        text += std::string(text.empty() ? "" : " ") + (pass.Along == Way::Forward ? "F:" : "B:");
        for (std::size_t i = 0; i < corridor.Nodes.size(); ++i) {
            const std::size_t node = NodeAlong(corridor, pass.Along, i);
            if (pass.Nodes[node].IsKnown()) text += std::to_string(node + 1);
        }
    }
    return text;
}

TEST(PassesTest, AreCutWhereTheVehicleTurnsOrLeavesTheStreet) {
    const Corridor street = StreetOf(4);
    const auto passes = [&](Drive drive) { return PassesOf(drive, street); };
    EXPECT_EQ(passes(Drive(-900).To(3900, 0)), "F:1234");
    EXPECT_EQ(passes(Drive(-900).To(3900, 0).To(-900, 0)), "F:1234 B:4321");
    EXPECT_EQ(passes(Drive(-900).To(2500, 0).To(-900, 0)), "F:123 B:321") << "a turn in the street";
    EXPECT_EQ(passes(Drive(-900).To(1500, 0).To(1500, 600).To(1500, 0).To(3900, 0)), "F:12 F:34") << "a side trip";
    EXPECT_EQ(passes(Drive(-900).To(2400, 0).To(2400, 500).To(1600, 500).To(1600, 0).To(3900, 0)), "F:123 F:34")
        << "round a block";
    EXPECT_EQ(passes(Drive(-900, 150).To(3900, 150)), "") << "a parallel street";
    EXPECT_EQ(passes(Drive(-900, 60).To(3900, 60)), "F:1234") << "a receiver 60 ft off";
    EXPECT_EQ(passes(Drive(1500, -2000).To(1500, 2000)), "") << "across";
    EXPECT_EQ(passes(Drive(1500).To(3900, 0)), "F:34") << "begins in the middle";
    EXPECT_EQ(passes(Drive(-900).To(500, 0).To(1500, 0, false).To(3900, 0)), "F:1234") << "positions missing";
}

TEST(PassesTest, HaveRoomForTheirBandsAndNoMore) {
    const Corridor street = StreetOf(3);
    Drive drive(-2000);
    drive.To(4000, 0);
    const auto passes = PassesOfTrack(drive.Driven(), street, {"a.gpx", 7, {}, {}});
    ASSERT_EQ(passes.size(), 1U);
    const RunRecord& run = passes.front().Run;
    EXPECT_EQ(passes.front().Source.Hash, 7U);
    // 300 ft of band and 500 ft of lead before the first node, 200 ft and a little behind the last one.
    const OneBased<std::int32_t> distances = RunningDistances(run);
    std::vector<std::int32_t> nodes;
    for (int i = 1; i <= run.SampleValues.LastIndex(); ++i)
        if (HasNode(run.SampleValues[i])) nodes.push_back(distances[i]);
    ASSERT_EQ(nodes.size(), 3U);
    EXPECT_NEAR(nodes.front(), 800, 51);
    EXPECT_NEAR(distances[distances.LastIndex()] - nodes.back(), 420, 60);
    EXPECT_EQ(run.Header.SectionName[2], "N2");
    EXPECT_EQ(run.Header.Notes, "Direction NB");
    EXPECT_EQ(run.Header.NumberOfSections, 5);
}

TEST(CorridorLineTest, MeasuresFiftyKilometresWithinATenthOfAPercent) {
    Corridor corridor = StreetOf(2);
    corridor.Nodes[1].At = Position{Latitude + 0.3, -82.5};
    const auto line = CorridorLine::Of(corridor);
    const double length = FeetBetween(*corridor.Nodes[0].At, *corridor.Nodes[1].At);
    EXPECT_THAT(line->Nodes()[1], Optional(testing::DoubleNear(length, 1)));
    // The middle of the great circle, by the formula of the midpoint.
    EXPECT_NEAR(line->FootOf(Position{42.1500815, -82.7505960}).Along, length / 2, length / 1000);
}

TEST(MarksTest, AreMatchedByTheirDistances) {
    const std::vector<double> nodes = {0, 1000, 2500, 3200};
    const auto matched = [&](const std::vector<double>& marks) { return MatchMarks(nodes, marks).MarkOf; };
    using Mark = std::optional<std::size_t>;
    EXPECT_THAT(matched({400, 1410, 2890, 3620}), ElementsAre(Mark(0), Mark(1), Mark(2), Mark(3)));
    EXPECT_THAT(matched({400, 1410, 1450, 2890, 3620}), ElementsAre(Mark(0), Mark(1), Mark(3), Mark(4))) << "twice";
    EXPECT_THAT(matched({400, 2890, 3620}), ElementsAre(Mark(0), Mark(), Mark(1), Mark(2))) << "forgotten";
    EXPECT_THAT(matched({400, 1410, 3350, 3620}), ElementsAre(Mark(0), Mark(1), Mark(), Mark(3))) << "far too late";
    EXPECT_THAT(matched({}), ElementsAre(Mark(), Mark(), Mark(), Mark()));
}

TEST(MarksTest, LeaveNodesBetweenToTheDistances) {
    Drive drive(0);
    for (int i = 0; i < 100; ++i)
        drive.Add(0, 0, static_cast<std::int16_t>(50 | (i == 19 || i == 59 ? NodeFlag : 0)), false);
    Corridor street = StreetOf(3);
    const RunMatch match = MatchRun(drive.Driven(), street, nullptr, Way::Forward);
    EXPECT_EQ(match.Nodes[1].Source, MatchSource::Distance);
    EXPECT_EQ(match.Nodes[1].Sample, 40);
    EXPECT_EQ(match.Nodes[2].Source, MatchSource::Mark);
    const std::vector<SetNode> set = {{1, 0}, {2, 70}};
    const RunMatch corrected = MatchRun(drive.Driven(), street, nullptr, Way::Forward, set);
    EXPECT_FALSE(corrected.Nodes[1].IsKnown());
    EXPECT_EQ(corrected.Nodes[2].Source, MatchSource::User);
    EXPECT_EQ(corrected.Nodes[2].Feet, 3500);
}

TEST(BandsTest, EndInTheMiddleOfWhatTheyShare) {
    Corridor street = StreetOf(2);
    street.Nodes[0].Around = {100, 700};
    street.Nodes[1].Around = {500, 100};
    RunMatch match;
    match.Nodes = {{MatchSource::Mark, 10, 500, {}}, {MatchSource::Mark, 30, 1500, {}}};
    CorridorRun run;
    auto bands = BandsOf(street, run, match);
    EXPECT_EQ(bands[0]->StartFt, 400);
    EXPECT_EQ(bands[0]->EndFt, 1100);
    EXPECT_EQ(bands[1]->StartFt, 1100);
    EXPECT_TRUE(bands[1]->IsCut);
    run.OwnBands = {{1, {600, 100}}};
    bands = BandsOf(street, run, match);
    EXPECT_EQ(bands[0]->EndFt, 900);
    EXPECT_EQ(bands[1]->StartFt, 900);
    street.BandsMayOverlap = true;
    EXPECT_EQ(BandsOf(street, run, match)[0]->EndFt, 1200);
}

TEST(DelaysTest, AreThereOnlyWhereTheRunCoversTheBand) {
    Drive drive(0);
    for (int i = 0; i < 60; ++i) drive.Add(0, 0, i >= 20 && i < 30 ? 0 : 50, false);
    RunReading reading;
    reading.Outcome = RunOutcome::Run;
    reading.Run = drive.Driven();
    Corridor street = StreetOf(3);
    street.Of(Way::Forward).IdealSpeedMph = 34;
    RunMatch match;
    match.Nodes = {
        {MatchSource::Mark, 5, 250, {}}, {MatchSource::Mark, 31, 1050, {}}, {MatchSource::Mark, 58, 2400, {}}};
    const AppSettings settings{.SpeedFactor = 0.6818F};
    const auto delays = DelaysOf(reading, street, {.Name = "001"}, match, settings);
    EXPECT_EQ(delays[0].Problem, "Not covered: the run begins inside the band.");
    EXPECT_EQ(delays[2].Problem, "Not covered: the run ends inside the band.");
    ASSERT_TRUE(delays[1].HasFigure());
    // From 750 to 1250 ft: second 15 to second 34, for the first sample's distance counts twice, less 500 ft at 34 mph.
    EXPECT_EQ(delays[1].Row.Entry.ControlDelay, 19 - 10);
    EXPECT_EQ(delays[1].Row.Entry.CDStartDist, 750);
    // 200 ft more take 4 s more and are 4 s more of ideal time; slower ideals leave less delay.
    EXPECT_THAT(delays[1].Shifted[7], Optional(9));
    EXPECT_LT(*delays[1].Shifted[4], 9);
}

}  // namespace
}  // namespace vantor
