#include "gpsobd/LogGaps.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <nlohmann/json.hpp>

#include "fakes/FakePorts.h"
#include "gpsobd/LaptopLog.h"
#include "gpsobd/LogOverview.h"
#include "gpsobd/LogRuns.h"
#include "gpsobd/PalmDatabase.h"

namespace vantor {
namespace {

using testing::ElementsAre;

struct Row {
    double Second;
    float Speed;
    double Latitude;
    double Longitude = -83;
};

FieldLog LogOf(const std::vector<Row>& rows, double start = 39600, LogKind kind = LogKind::GpsLaptop) {
    FieldLog log = NewFieldLog(FormatOf(kind), "/f/Trip.log");
    for (const Row& row : rows) {
        const Date time{39521 + (start + row.Second) / 86400};
        log.Add({{1, 1, row.Speed, -1, time, row.Latitude, row.Longitude, 8, 1, 0, -1, 2},
                 {1, time, row.Speed, 0, 0, 0, 0, 0, 0, 0, 0, -1, 0, "", "", ""}});
    }
    ArrangeForReview(log);
    return log;
}

RunRecord Made(const FieldLog& log, const std::vector<LogGap>& gaps) {
    return MakeRun(log, RunsAmong(RunsOf(log).Points).front(), gaps, TestProgram().State.Settings);
}

std::vector<int> Pulses(const RunRecord& run) {
    std::vector<int> pulses;
    for (const std::int16_t value : run.SampleValues) pulses.push_back(PulsesOf(value));
    return pulses;
}

constexpr double Foot = 1 / 364813.25;  ///< in degrees of latitude

TEST(LogGaps, AreFilledByTheirPositionsAndSpeeds) {
    struct Case {
        const char* What;
        std::vector<Row> Rows;
        std::optional<GapFill> Fill;  ///< nothing where there is no gap
        double Feet = -1;             ///< -1 for none
        double FeetBySpeed = 0;
    };
    const double there = 42 + 90 * Foot;
    const Case cases[] = {
        {"two seconds", {{0, 30, 42}, {2, 30, 43}}, {}},
        {"three seconds", {{0, 30, 42}, {3, 60, 42 + 200 * Foot}}, GapFill::Position, 200, 198},
        {"rounded seconds", {{0.4, 0, 42}, {2.6, 0, there}}, GapFill::Standing, 90, 0},
        {"a little less than 100 feet", {{0, 14, 42}, {60, 30, 42 + 99.9 * Foot}}, GapFill::Standing, 99.9, 1936},
        {"a little more", {{0, 14, 42}, {60, 30, 42 + 100.1 * Foot}}, GapFill::Position, 100.1, 1936},
        {"both fast", {{0, 15, 42}, {60, 15, there}}, GapFill::Position, 90, 1320},
        {"slow behind", {{0, 45, 42}, {4, 14.5F, there}}, GapFill::Standing, 90, 174.53},
        {"a missing speed is not slow", {{0, -1, 42}, {4, 30, there}}, GapFill::Position, 90, 176},
        {"speeds from farther away", {{0, 10, 42}, {2, -1, 42}, {6, 40, there}}, GapFill::Position, 90, 176},
        {"no position", {{0, 3, -1, -1}, {4, 3, there}}, GapFill::Speed, -1, 17.6},
        {"no fix", {{0, 3, 0, 0}, {4, 3, 0, 0}}, GapFill::Speed, -1, 17.6},
        {"degrees and minutes of -1", {{0, 3, 1 / 60.0, -1 / 60.0}, {4, 3, there}}, GapFill::Speed, -1, 17.6},
        {"the last row of a second", {{0, 30, 42}, {0, 3, 42}, {4, 30, there}}, GapFill::Standing, 90, 96.8},
        {"another hemisphere", {{0, 30, -0.5, 179.9999}, {4, 3, -0.5, -179.9999}}, GapFill::Standing, 72.96, 96.8}};
    for (const Case& gap : cases) {
        SCOPED_TRACE(gap.What);
        const std::vector<LogGap> gaps = FindGaps(RunsOf(LogOf(gap.Rows)));
        ASSERT_EQ(gaps.size(), gap.Fill ? 1U : 0U);
        if (!gap.Fill) continue;
        EXPECT_EQ(gaps[0].Filled, *gap.Fill);
        EXPECT_NEAR(gaps[0].FeetByPosition.value_or(-1), gap.Feet, 0.01);
        EXPECT_NEAR(gaps[0].FeetBySpeed, gap.FeetBySpeed, 0.01);
    }
    EXPECT_FALSE(FindGaps(RunsOf(LogOf({{0, 3, 42}, {4, 3, there}}, 39600, LogKind::ObdLaptop)))[0].FeetByPosition);
}

TEST(LogGaps, MakeTheSamplesOfTheirSeconds) {
    const FieldLog log =
        LogOf({{0, 60, 42}, {5, 30, 42 + 440 * Foot}, {8, 0, 42 + 441 * Foot}, {9, 6, 42 + 441 * Foot}});
    std::vector<LogGap> gaps = FindGaps(RunsOf(log));
    EXPECT_THAT(Pulses(Made(log, gaps)), ElementsAre(88, 88, 88, 88, 88, 44, 0, 0, 0, 9));
    EXPECT_EQ(Made(log, gaps).Header.Notes, "Direction NB; gaps: 1 standing 3 s, 1 by position 5 s");
    gaps[1].Filled = GapFill::Speed;
    EXPECT_THAT(Pulses(Made(log, gaps)), ElementsAre(88, 88, 88, 88, 88, 44, 29, 15, 0, 9));
    EXPECT_EQ(Made(log, gaps).Header.Notes, "Direction NB; gaps: 1 by position 5 s, 1 by speed 3 s");
    EXPECT_THAT(Pulses(Made(log, {})), ElementsAre(88, 79, 70, 62, 53, 44, 29, 15, 0, 9));
    EXPECT_EQ(Made(log, {}).Header.Notes, "Direction NB");
}

TEST(LogGaps, GiveDrivesBackWhatTheirLoggersMissed) {
    nlohmann::json drives;
    std::ifstream(VANTOR_TEST_DATA "drive_logs.json") >> drives;
    for (const auto& drive : drives) {
        SCOPED_TRACE(drive["name"]);
        std::vector<Row> rows;
        for (const auto& row : drive["rows"]) rows.push_back({row[0], row[1], row[2], row[3]});
        const FieldLog log = LogOf(rows, drive["start"]);
        const std::vector<LogGap> gaps = FindGaps(RunsOf(log));
        ASSERT_EQ(gaps.size(), drive["gaps"].size());
        const std::int64_t start = WholeSecondsOf({39521 + drive["start"].get<double>() / 86400});
        for (std::size_t i = 0; i < gaps.size(); ++i) {
            const auto& gap = drive["gaps"][i];
            EXPECT_EQ(gaps[i].From - start, gap[0]);
            EXPECT_EQ(gaps[i].To - start, gap[1]);
            EXPECT_EQ(gaps[i].Filled, gap[2] == "standing" ? GapFill::Standing : GapFill::Position);
        }
        // A logger that writes seldom loses what was crept between two rows.
        const double tolerance = gaps.size() > 100 ? 0.05 : 0.01;
        const double feet = drive["feet"];
        EXPECT_NEAR(Made(log, gaps).Header.RunLength, feet, tolerance * feet);
    }
}

TEST(LogGaps, AreFoundAlikeWithoutTheLogInMemory) {
    MemoryFileSystem files;
    const FakeDatabases databases;
    const PalmDatabase devices(files);
    const FixedClock clock;
    const LogSources sources{files, databases, devices, clock};
    const std::vector<Row> inOrder = {{0, 30, 42}, {0, 3, 42}, {4, -1, 43}, {4, -1, 42}, {9, -1, 0, 0}, {12, 45, 42.1}};
    const std::vector<Row> goingBack = {{9, 30, 42}, {0, 40, 42.1}, {4, 50, 42.2}};
    for (const LogKind kind : {LogKind::GpsLaptop, LogKind::ObdLaptop, LogKind::GpsObd})
        for (const double start : {39600.0, -4.0})  // at -4 one second is midnight, which is no time
            for (const auto& rows : {inOrder, goingBack}) {
                FieldLog log = LogOf(rows, start, kind);
                log.IsArranged = false;
                files.Put("/f/Trip.log", EncodeLaptopLog(log));
                FieldLog read = ReadFieldLog(sources, FormatOf(kind), "/f/Trip.log");
                ArrangeForReview(read);
                const LogOverview overview = ReadLogOverview(sources, FormatOf(kind), "/f/Trip.log");
                EXPECT_EQ(overview.PointCount, rows.size());
                EXPECT_FALSE(overview.Gaps.empty());
                EXPECT_EQ(overview.Gaps, FindGaps(RunsOf(read)));
                EXPECT_EQ(overview.Gaps, FindGaps(ReadRunsOfLog(sources, FormatOf(kind), "/f/Trip.log")));
            }
}

}  // namespace
}  // namespace vantor
