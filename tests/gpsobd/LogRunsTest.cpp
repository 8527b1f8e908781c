#include "gpsobd/LogRuns.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/RunFile.h"
#include "fakes/FakePorts.h"
#include "fakes/ThrowsError.h"
#include "gpsobd/LaptopLog.h"
#include "gpsobd/LogPoints.h"

namespace vantor {
namespace {

using testing::ElementsAre, testing::Pair;

struct Row {
    int Second;
    float Speed;
    std::int16_t Node = 0;
    std::int16_t DelayNumber = -1;
    std::int16_t Direction = 0;
    std::int16_t RunNumber = 1;
};

/// Seconds count from 14 March 2008, 07:05:09.
FieldLog LogOf(LogKind kind, const std::vector<Row>& rows) {
    FieldLog log = NewFieldLog(FormatOf(kind), "/f/Trip.log");
    for (const auto& [second, speed, node, delay, direction, run] : rows) {
        const Date time = DateOfSeconds(WholeSecondsOf({39521 + 25509.0 / 86400}) + second);
        log.Add({{run, 0, speed, 0, time, 0, 0, 0, 0, node, delay, direction},
                 {run, time, speed, 0, 0, 0, 0, 0, 0, 0, node, delay, direction, "", "", ""}});
    }
    return log;
}

class LogRunsTest : public testing::Test {
protected:
    RunRecord Made(const FieldLog& log) {
        return MakeRun(log, RunsAmong(RunsOf(log).Points).front(), {}, Program.State.Settings);
    }
    static std::vector<std::uint16_t> ValuesOf(const RunRecord& run) {
        return {run.SampleValues.begin(), run.SampleValues.end()};
    }
    std::vector<std::uint16_t> Values(const std::vector<Row>& rows) {
        return ValuesOf(Made(LogOf(LogKind::GpsLaptop, rows)));
    }
    std::vector<std::string> Written(const FieldLog& log, const NamesOfRuns& replaced = {}) {
        const auto written =
            WriteLogRuns(Program.Files, RunsOf(log), {}, "/start/Temp", Program.State.Settings, replaced);
        EXPECT_EQ(written.value().LeftOut, RunsTooLong(RunsOf(log)));
        return written->Names;
    }
    RunRecord Stored(const char* name) { return ReadRun(Program.Files, std::string("/start/Temp/") + name).Run; }

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
    FieldLog log = LogOf(LogKind::GpsLaptop, {{0, 30, 0, -1, 9, 12}, {1, 30, 1, -1, 3, 12}, {3, 30, 0, 16, 2, 12}});
    log.GpsHeader.StudyName = "Main Street ";
    const RunHeader header = Made(log).Header;
    EXPECT_EQ(header.RunDate, DateOf(2008, 3, 14));
    EXPECT_EQ(header.RunTime, TimeOf(7, 5, 9));
    EXPECT_EQ(header.RunNumber, 12);
    EXPECT_EQ(header.SiteCode + "|" + header.Notes, "Main Street|Direction WB");
    EXPECT_EQ(header.CalConstant, 1000);
    EXPECT_EQ(std::pair(header.SampleCount, header.RunLength), std::pair(4, 176));
    EXPECT_EQ(header.SectionDist[1], 88);
    EXPECT_EQ(header.ButtonWord2[1], 16);
    EXPECT_EQ(Made(LogOf(LogKind::ObdLaptop, {{0, 30}})).Header.Notes, "");
}

TEST_F(LogRunsTest, TakesTheSpeedAndTheEventRecordOfEachKind) {
    FieldLog log = LogOf(LogKind::Battelle, {{0, 30, 2, 5, 3}, {2, -1}});
    const Date start = log.Gps[0].DateTime;
    log.Gps[0] = {1, 0, 30, 90, start, 42.5, 0, 8, 0, 2, 5, 3};
    RunRecord run = Made(log);
    EXPECT_EQ(run.RunSamples[1], (RunSample{42.5, 0, 30, 90, 0, 0, 8, start, 2, 5, 3}));
    EXPECT_EQ(run.RunSamples[2], RunSample{}) << "no row in that second";
    EXPECT_EQ(run.RunSamples[3].Speed, -1.0F) << "as logged, though it is bridged";
    log = LogOf(LogKind::ObdHandheld, {{0, 30, 2, 5, 3}});
    EXPECT_EQ(Made(log).RunSamples[1], (RunSample{0, 0, 30, 0, 0, 0, 0, start, 2, 5, 3}));

    FieldLog both = LogOf(LogKind::GpsObd, {{0, 60}, {1, -1}, {2, -1}, {3, 60}});
    for (const std::size_t point : {0, 1, 3}) both.Gps[point].Speed = 30;
    both.Obd[0].Node = 1;
    run = Made(both);
    EXPECT_THAT(ValuesOf(run), ElementsAre(88, 44, 66, 88)) << "the vehicle's speed, else the receiver's";
    EXPECT_THAT((std::vector{run.RunSamples[1].Speed, run.RunSamples[2].Speed, run.RunSamples[3].Speed}),
                ElementsAre(60, 30, -1));
}

TEST_F(LogRunsTest, WritesARunFileForEveryRunNumber) {
    FieldLog log = LogOf(LogKind::ObdLaptop, {{0, 30, 0, -1, 0, 2},
                                              {1, 30, 0, -1, 0, -1},
                                              {2, 30, 0, -1, 0, 1},
                                              {3, 60, 0, -1, 0, 2},
                                              {4, 30, 0, -1, 0, 1234}});
    EXPECT_THAT(Written(log), ElementsAre("Trip-R001", "Trip-R002", "Trip-R1234"));
    EXPECT_THAT(ValuesOf(Stored("Trip-R002.rd2")), ElementsAre(44, 59, 73, 88));

    EXPECT_THAT(Written(log), ElementsAre("Trip-R001-1", "Trip-R002-1", "Trip-R1234-1"));
    log.Obd.resize(1);
    EXPECT_THAT(Written(log), ElementsAre("Trip-R002-2"));
    log.ObdHeader.BaseName = "A/B..a name that is longer than the field";
    EXPECT_THAT(Written(log), ElementsAre("A_B__a name that is longer than the field-R002"));
    log.Obd.clear();
    EXPECT_TRUE(Written(log).empty());
}

TEST_F(LogRunsTest, ReplacesRunsMadeBeforeOnDemand) {
    FieldLog log = LogOf(LogKind::ObdLaptop, {{0, 30, 0, -1, 0, 1}, {9, 30, 0, -1, 0, 1}, {20, 30, 0, -1, 0, 2}});
    const auto before = [&] { return RunsMadeBefore(Program.Files, RunsOf(log), "/start/Temp"); };
    EXPECT_TRUE(before().empty());
    Written(log);
    const auto old = Program.Files.Bytes("/start/Temp/Trip-R001.rd2");
    log.Obd.erase(log.Obd.begin());
    EXPECT_THAT(before(), ElementsAre(Pair(1, "Trip-R001"), Pair(2, "Trip-R002")))
        << "of a drive that was made shorter since";
    EXPECT_THAT(Written(log, before()), ElementsAre("Trip-R001", "Trip-R002"));
    EXPECT_EQ(Program.Files.Bytes("/start/Temp/Trip-R001.rd2.bak"), old);
    EXPECT_FALSE(Program.Files.Bytes("/start/Temp/Trip-R002.rd2.bak")) << "it is as it was";
    EXPECT_EQ(Stored("Trip-R001.rd2").Header.SampleCount, 1);

    for (ObdPoint& point : log.Obd) point.DateTime.Days += 1;
    EXPECT_TRUE(before().empty()) << "another day's drives of the same name";
    EXPECT_THAT(Written(log), ElementsAre("Trip-R001-1", "Trip-R002-1"));
    EXPECT_THAT(before(), ElementsAre(Pair(1, "Trip-R001-1"), Pair(2, "Trip-R002-1")));
}

TEST_F(LogRunsTest, LeavesOutARunThatIsTooLong) {
    const FieldLog log = LogOf(
        LogKind::GpsLaptop, {{0, 1, 0, 0, 0, 1}, {32767, 1, 0, 0, 0, 1}, {0, 1, 0, 0, 0, 2}, {32766, 1, 0, 0, 0, 2}});
    EXPECT_EQ(RunsTooLong(RunsOf(log)).size(), 1u);
    EXPECT_THAT(Written(log), ElementsAre("Trip-R002"));
    EXPECT_THAT(Program.Files.AllFiles(), ElementsAre("/start/Temp/Trip-R002.rd2"));
    EXPECT_EQ(Stored("Trip-R002.rd2").Header.SampleCount, 32767);
}

TEST_F(LogRunsTest, WithoutASpeedFactorNothingIsWritten) {
    Program.State.Settings.SpeedFactor = 0;
    EXPECT_ERROR(DivisionByZero, Written(LogOf(LogKind::GpsLaptop, {{0, 1}})));
    EXPECT_TRUE(Program.Files.AllFiles().empty());
}

}  // namespace
}  // namespace vantor
