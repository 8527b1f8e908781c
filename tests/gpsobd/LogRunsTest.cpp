#include "gpsobd/LogRuns.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/RunFile.h"
#include "fakes/FakePorts.h"
#include "fakes/ThrowsError.h"
#include "gpsobd/LogPoints.h"

namespace vantor {
namespace {

using testing::ElementsAre;
using testing::Pair;

struct Row {
    int Second;
    float Speed;
    std::int16_t Node = 0;
    std::int16_t DelayNumber = -1;
    std::int16_t Direction = 0;
    std::int16_t RunNumber = 1;
};

/// A log of any kind; the speeds of a combined one are the vehicle's. Seconds count from 14 March 2008, 07:05:09.
FieldLog LogOf(LogKind kind, const std::vector<Row>& rows) {
    const std::int64_t start = WholeSecondsOf({DateOf(2008, 3, 14).Days + TimeOf(7, 5, 9).Days});
    FieldLog log;
    log.Kind = kind;
    log.Name = "Trip";
    for (const Row& row : rows) {
        LogPoint point;
        const auto fill = [&](auto& half) {
            half.RunNumber = row.RunNumber;
            half.DateTime = DateOfSeconds(start + row.Second);
            half.Speed = row.Speed;
            half.Node = row.Node;
            half.DelayNumber = row.DelayNumber;
            half.Direction = row.Direction;
        };
        WithLeadingHalf(kind, point, fill);
        if (kind == LogKind::GpsObd) point.Obd.Speed = row.Speed;
        log.Points.push_back(point);
    }
    return log;
}

class LogRunsTest : public testing::Test {
protected:
    RunRecord Made(const FieldLog& log) {
        return MakeRun(log, PointsOfRuns(log).begin()->second, {}, Program.State.Settings);
    }
    static std::vector<int> ValuesOf(const RunRecord& run) {
        std::vector<int> values;
        for (const std::int16_t value : run.SampleValues) values.push_back(static_cast<std::uint16_t>(value));
        return values;
    }
    std::vector<int> Values(const std::vector<Row>& rows) { return ValuesOf(Made(LogOf(LogKind::GpsLaptop, rows))); }
    std::vector<std::string> Written(const FieldLog& log) {
        return WriteLogRuns(Program.Files, log, {}, "/start/Temp", Program.State.Settings);
    }

    TestProgram Program;
};

TEST_F(LogRunsTest, TurnsSpeedsIntoPulses) {
    // 0.681818187236786 mph are one foot a second; 3.75 mph are a little less than five and a half.
    EXPECT_THAT(Values({{0, 3.75F}, {1, 60}, {2, 173.9F}, {3, 1000}, {4, -2}}), ElementsAre(5, 88, 255, 255, 0));
    EXPECT_THAT(Values({{0, 30}, {0, 60}}), ElementsAre(88)) << "the last row of a second counts";
    EXPECT_THAT(Values({{0, 60}, {1, 30}, {1, -1}, {2, 6}}), ElementsAre(88, 48, 9))
        << "a last row without a speed leaves its second to be interpolated";
    EXPECT_THAT(Values({{0, -1}, {1, 30}, {4, 60}, {6, -1}}), ElementsAre(44, 44, 59, 73, 88, 88, 88));
    EXPECT_THAT(Values({{0, -1}, {2, -1}}), ElementsAre(0, 0, 0));
    EXPECT_THAT(Values({{2, 60}, {0, 30}}), ElementsAre(44, 66, 88)) << "whatever the order of the rows";
}

TEST_F(LogRunsTest, KeepsNodesBeforeDelayNumbers) {
    EXPECT_THAT(Values({{0, 0, 0, 7}, {1, 0, 0, 127}, {2, 0, 0, 128}, {3, 0, 0, 0}, {4, 0, -1, -1}}),
                ElementsAre(0x700, 0x7F00, 0, 0, 0));
    EXPECT_THAT(Values({{0, 30, 2, 3}, {0, 30, 0, 5}, {1, 30, 0, 5}, {1, 30, 0, 6}, {1, 30, 0, 0}}),
                ElementsAre(0x8000 + 44, 0x600 + 44));
}

TEST_F(LogRunsTest, FillsTheHeaderAndDecodes) {
    FieldLog log = LogOf(LogKind::GpsLaptop, {{0, 30, 0, -1, 9}, {1, 30, 1, -1, 3}, {3, 30, 0, 16, 2}});
    log.GpsHeader.StudyName = "Main Street ";
    log.Points.front().Gps.RunNumber = log.Points[1].Gps.RunNumber = log.Points[2].Gps.RunNumber = 12;
    const RunHeader header = Made(log).Header;
    EXPECT_EQ(header.RunDate, DateOf(2008, 3, 14));
    EXPECT_EQ(header.RunTime, TimeOf(7, 5, 9));
    EXPECT_EQ(header.RunNumber, 12);
    EXPECT_EQ(header.CountNumber, 0);
    EXPECT_EQ(header.SiteCode, "Main Street");
    EXPECT_EQ(header.Notes, "Direction WB");
    EXPECT_EQ(header.CalConstant, 1000);
    EXPECT_EQ(header.SampleCount, 4);
    EXPECT_EQ(header.Duration, 4);
    EXPECT_EQ(header.RunLength, 176);
    EXPECT_EQ(header.NumberOfSections, 3);
    EXPECT_EQ(header.SectionDist[1], 88);
    EXPECT_EQ(header.HeaderWord1, -1);
    EXPECT_EQ(header.Before, -1);
    EXPECT_EQ(header.HeaderWord3, 1);
    EXPECT_EQ(header.ButtonWord2[1], 16);
    EXPECT_EQ(Made(LogOf(LogKind::ObdLaptop, {{0, 30}})).Header.Notes, "");
}

TEST_F(LogRunsTest, TakesTheSpeedAndTheEventRecordOfEachKind) {
    FieldLog gps = LogOf(LogKind::Battelle, {{0, 30, 2, 5, 3}, {2, -1}});
    gps.Points[0].Gps.Latitude = 42.5;
    gps.Points[0].Gps.Heading = 90;
    gps.Points[0].Gps.SatUsed = 8;
    RunRecord run = Made(gps);
    EXPECT_EQ(run.RunSamples[1], (RunSample{42.5, 0, 30, 90, 0, 0, 8, gps.Points[0].Gps.DateTime, 2, 5, 3}));
    EXPECT_EQ(run.RunSamples[2], RunSample{}) << "no row in that second";
    EXPECT_EQ(run.RunSamples[3].Speed, -1.0F) << "as logged, though it is bridged";

    const FieldLog obd = LogOf(LogKind::ObdHandheld, {{0, 30, 2, 5, 3}});
    EXPECT_EQ(Made(obd).RunSamples[1], (RunSample{0, 0, 30, 0, 0, 0, 0, obd.Points[0].Obd.DateTime, 2, 5, 3}));

    FieldLog both = LogOf(LogKind::GpsObd, {{0, 60}, {1, -1}, {2, -1}, {3, 60}});
    for (LogPoint& point : both.Points) point.Gps.Speed = 30;
    both.Points[2].Gps.Speed = -1;
    both.Points[0].Obd.Node = 1;
    run = Made(both);
    EXPECT_THAT(ValuesOf(run), ElementsAre(88, 44, 66, 88));
    EXPECT_EQ(run.RunSamples[1].Speed, 60.0F);
    EXPECT_EQ(run.RunSamples[2].Speed, 30.0F);
    EXPECT_EQ(run.RunSamples[3].Speed, -1.0F);
}

TEST_F(LogRunsTest, WritesARunFileForEveryRunNumber) {
    FieldLog log = LogOf(LogKind::ObdLaptop, {{0, 30, 0, -1, 0, 2},
                                              {1, 30, 0, -1, 0, -1},
                                              {2, 30, 0, -1, 0, 1},
                                              {3, 60, 0, -1, 0, 2},
                                              {4, 30, 0, -1, 0, 1234}});
    EXPECT_THAT(Written(log), ElementsAre("Trip-R001", "Trip-R002", "Trip-R1234"));
    RunRecord run;
    ASSERT_TRUE(ReadRunFile(Program.Files, Program.Messages, run, "/start/Temp/", "Trip-R002", true));
    EXPECT_THAT(ValuesOf(run), ElementsAre(44, 59, 73, 88));

    EXPECT_THAT(Written(log), ElementsAre("Trip-R001-1", "Trip-R002-1", "Trip-R1234-1"));
    log.Points.resize(1);
    EXPECT_THAT(Written(log), ElementsAre("Trip-R002-2"));
    log.ObdHeader.BaseName = "A/B..a name that is longer than the field";
    EXPECT_THAT(Written(log), ElementsAre("A_B__a name that is longer than the field-R002"));
    log.Points.clear();
    EXPECT_TRUE(Written(log).empty());
}

TEST_F(LogRunsTest, ReplacesRunsMadeBeforeOnDemand) {
    FieldLog log = LogOf(LogKind::ObdLaptop, {{0, 30, 0, -1, 0, 1}, {9, 30, 0, -1, 0, 1}, {20, 30, 0, -1, 0, 2}});
    const auto before = [&] { return RunsMadeBefore(Program.Files, log, "/start/Temp"); };
    EXPECT_TRUE(before().empty());
    Written(log);
    const auto old = Program.Files.Bytes("/start/Temp/Trip-R001.rd2");
    log.Points.erase(log.Points.begin());
    EXPECT_THAT(before(), ElementsAre(Pair(1, "Trip-R001"), Pair(2, "Trip-R002")))
        << "of a drive that was made shorter since";
    EXPECT_THAT(WriteLogRuns(Program.Files, log, {}, "/start/Temp", Program.State.Settings, before()),
                ElementsAre("Trip-R001", "Trip-R002"));
    EXPECT_EQ(Program.Files.Bytes("/start/Temp/Trip-R001.rd2.bak"), old);
    EXPECT_FALSE(Program.Files.Bytes("/start/Temp/Trip-R002.rd2.bak")) << "it is as it was";
    EXPECT_EQ(ReadRun(Program.Files, "/start/Temp/Trip-R001.rd2").Run.Header.SampleCount, 1);

    for (LogPoint& point : log.Points) point.Obd.DateTime.Days += 1;
    EXPECT_TRUE(before().empty()) << "another day's drives of the same name";
    EXPECT_THAT(Written(log), ElementsAre("Trip-R001-1", "Trip-R002-1"));
    EXPECT_THAT(before(), ElementsAre(Pair(1, "Trip-R001-1"), Pair(2, "Trip-R002-1")));
}

TEST_F(LogRunsTest, LeavesOutARunThatIsTooLong) {
    const FieldLog log = LogOf(
        LogKind::GpsLaptop, {{0, 1, 0, 0, 0, 1}, {32767, 1, 0, 0, 0, 1}, {0, 1, 0, 0, 0, 2}, {32766, 1, 0, 0, 0, 2}});
    EXPECT_ERROR(Overflow, Written(log));
    EXPECT_THAT(Program.Files.AllFiles(), ElementsAre("/start/Temp/Trip-R002.rd2"));
    EXPECT_EQ(ReadRun(Program.Files, "/start/Temp/Trip-R002.rd2").Run.Header.SampleCount, 32767);
}

TEST_F(LogRunsTest, WritesAllRunsOrNone) {
    const FieldLog log = LogOf(LogKind::GpsLaptop, {{0, 1, 0, 0, 0, 1}, {0, 1, 0, 0, 0, 2}});
    Program.Files.FailChangeAfter(1, ErrorNumber::DiskFull);
    EXPECT_ERROR(DiskFull, Written(log));
    EXPECT_TRUE(Program.Files.AllFiles().empty());
    Program.State.Settings.SpeedFactor = 0;
    EXPECT_ERROR(DivisionByZero, Written(log));
    EXPECT_TRUE(Program.Files.AllFiles().empty());
}

}  // namespace
}  // namespace vantor
