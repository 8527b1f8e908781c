#include "corridor/SignalArrivals.h"

#include <gmock/gmock.h>

#include "Drives.h"
#include "corridor/CorridorFigures.h"

namespace vantor {
namespace {

using testing::ElementsAre;

constexpr double SevenOClock = 7 * 3600;  // a multiple of 80 s

SignalTiming Timing(double start, double green) { return {{}, {}, "", 80, start, green}; }

TEST(SignalArrivalsTest, ARunArrivesWhereItBeginsToStandElseWhereItPasses) {
    Drives drives;
    drives.Street.Nodes[1].Timings = {Timing(10, 30)};
    drives.Street.Nodes[2].Timings = {Timing(10, 30)};
    drives.Add(Drives::Drive(30));
    drives.Add(Drives::Drive(0));
    const auto stopped = ArrivalAt(drives.Street, drives.Runs, 0, 1);
    ASSERT_TRUE(stopped);
    EXPECT_TRUE(stopped->HasStopped);
    EXPECT_DOUBLE_EQ(stopped->Arrival, SevenOClock + 45) << "45 s at 40 ft are 200 ft before the node";
    EXPECT_DOUBLE_EQ(stopped->Departure, SevenOClock + 80) << "30 s of standing, then 200 ft";
    EXPECT_DOUBLE_EQ(stopped->ArrivalInCycle, 35);
    EXPECT_DOUBLE_EQ(stopped->DepartureInCycle, 70) << "10 s before the next green";
    EXPECT_FALSE(stopped->IsOnGreen) << "green for 30 s";
    const auto passing = ArrivalAt(drives.Street, drives.Runs, 1, 2);
    ASSERT_TRUE(passing);
    EXPECT_FALSE(passing->HasStopped);
    EXPECT_DOUBLE_EQ(passing->Arrival, passing->Departure);
    EXPECT_DOUBLE_EQ(passing->ArrivalInCycle, 65);

    drives.Runs[0].Read = [&] {
        auto located = std::make_shared<RunReading>(*drives.Runs[0].Read);
        located->Run.RunSamples[1].Latitude = 42;
        located->Run.RunSamples[1].Longitude = -83;
        return located;
    }();
    EXPECT_DOUBLE_EQ(ArrivalAt(drives.Street, drives.Runs, 0, 1)->Arrival, SevenOClock + 44)
        << "the first position has the time of the run and ends its first second";
}

TEST(SignalArrivalsTest, NothingIsKnownWithoutTimingClockOrBand) {
    Drives drives;
    drives.Street.Nodes[0].Timings = {Timing(0, 40)};
    drives.Street.Nodes[1].Timings = {Timing(10, 40)};
    drives.Add(Drives::Drive(30));
    drives.Add(Drives::Drive(0)).Measured.RunDate = {};
    const auto whole = Drives::Drive(0);
    drives.Add({whole.begin() + 15, whole.end()});
    drives.Add(Drives::Drive(0), {.SetNodes = {{0, 0}}});
    const auto known = [&](std::size_t node) {
        std::vector<bool> is;
        for (std::size_t run = 0; run < drives.Runs.size(); ++run)
            is.push_back(ArrivalAt(drives.Street, drives.Runs, run, node).has_value());
        return is;
    };
    EXPECT_THAT(known(0), ElementsAre(true, false, false, false))
        << "without a date; begun 400 ft before, inside the band; not passed";
    EXPECT_THAT(known(1), ElementsAre(true, false, true, true));
    EXPECT_THAT(known(2), ElementsAre(false, false, false, false)) << "no timing";

    const auto results = ComputeCorridor(drives.Street, drives.Runs, {});
    const auto json = ResultsAsJson(drives.Street, drives.Runs, {}, results)["ways"][0]["nodes"];
    EXPECT_EQ(json[1]["arrivals"]["n"], 3);
    EXPECT_EQ(json[1]["arrivals"]["on_green"], 2) << "at 35 s of the cycle, and at 40 and 25 s: green is below 40 s";
    EXPECT_TRUE(json[2]["arrivals"].is_null());
    const auto table = ArrivalsTable(drives.Street, drives.Runs, FindingsOf(drives.Street, drives.Runs, {}));
    ASSERT_EQ(table.Rows.size(), 2);
    EXPECT_EQ(table.Rows[1][4].Text, "67");
}

TEST(SignalArrivalsTest, TheTimingThatSaysMostHolds) {
    CorridorNode node;
    const auto add = [&](std::optional<Way> way, std::optional<bool> isBefore, const char* period, double start) {
        node.Timings.push_back({way, isBefore, period, 90, start, 40});
    };
    add({}, {}, "", 1);
    add(Way::Back, {}, "", 2);
    add(Way::Back, true, "AM", 3);
    add({}, {}, "AM", 4);
    add({}, {}, "AM", 5);
    const auto start = [&](Way way, bool isBefore, const char* period) {
        return TimingFor(node, way, isBefore, period)->GreenStartSeconds;
    };
    EXPECT_EQ(start(Way::Forward, true, "PM"), 1);
    EXPECT_EQ(start(Way::Back, false, "PM"), 2);
    EXPECT_EQ(start(Way::Back, true, "AM"), 3);
    EXPECT_EQ(start(Way::Forward, true, "AM"), 4) << "the first of equal ones";
    EXPECT_EQ(TimingFor({}, Way::Back, true, ""), nullptr);

    const SignalTiming timing{{}, {}, "", 70, 60, 30};
    EXPECT_DOUBLE_EQ(SecondInCycle(timing, 50), 60) << "the green before midnight has gone on";
    EXPECT_DOUBLE_EQ(SecondInCycle(timing, 24 * 3600 + 65), 5) << "by the clock of the next day, not 86465 - 60";
    EXPECT_TRUE(IsGreenAt(timing, 89.9));
    EXPECT_FALSE(IsGreenAt(timing, 90));
}

}  // namespace
}  // namespace vantor
