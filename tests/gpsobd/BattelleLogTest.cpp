#include "gpsobd/BattelleLog.h"

#include <gtest/gtest.h>

#include "fakes/MemoryFileSystem.h"
#include "fakes/ThrowsError.h"
#include "gpsobd/LogBytes.h"

namespace vantor {
namespace {

class BattelleLogTest : public testing::Test {
protected:
    LogSummary Summary(const std::string& text) {
        Files.PutText("/f/Loop.txt", text);
        return ReadBattelleSummary(Files, "/f/Loop.txt").value();
    }
    FieldLog Whole(const std::string& text) {
        Files.PutText("/f/Loop.txt", text);
        return ReadBattelleLog(Files, "/f/Loop.txt");
    }
    /// Date and time of the one fix of a log, "" where it is passed over.
    std::string TimeOfFix(const std::string& dateAndTime) {
        const auto summary = Summary("$G," + dateAndTime + ",4230.0,8330.0\n");
        return summary.StartTime ? IsoDateTime(*summary.StartTime) : "";
    }

    MemoryFileSystem Files;
};

TEST_F(BattelleLogTest, SummaryOfAllFixesAndRuns) {
    const auto summary = Summary(
        "Battelle logger 1.2\r\n"
        "$G,05/14/03,07:58:30,4230.0000,8330.0000\r\n"
        "$s,1\r\n"
        "$G,05/14/03,09:30:00,4230.0000,8330.0000\r\n"
        " $s and $G within a line\r\n"
        "$s,2\r\n"
        "$g,05/14/03,11:00:00,4230.0000,8330.0000\r\n"
        "$G,05/14/03,08:15:00,4230.0000,8330.0000\r\n"
        "$s");
    EXPECT_EQ(summary.StudyDate, Date{LogDay});
    EXPECT_EQ(IsoDateTime(*summary.StartTime), "2003-05-14T07:58:30");
    EXPECT_EQ(IsoDateTime(*summary.EndTime), "2003-05-14T08:15:00");  // the last one, not the greatest
    EXPECT_EQ(summary.Runs, 3);
    const auto unended = Summary("$s\n$G,05/14/03,12:00:00,1,1\n$G,05/14/03,12:00:59,1,1");
    EXPECT_EQ(IsoDateTime(*unended.EndTime), "2003-05-14T12:00:59");
}

TEST_F(BattelleLogTest, ReadsTheFieldsBehindTheTime) {
    const auto log = Whole(
        "$G,05/14/03,12:00:00,4230.0000,8330.0000,30\n"
        "$s\n"
        "$G,x,05/14/03,A,12:00:01,4215.6000,8345.0300,31.5,271.25,1.5,7\r\n"
        "$s\n"
        "$G,05/14/03,12:00:02,4230.0000,8330.0000\r\n"
        "$G,12:00:03.5,05/14/03,,n/a,,nan,1e999,32768\r\n");
    EXPECT_EQ(log.Folder + log.Name + log.Extension, "/f/Loop.txt");
    EXPECT_EQ(log.StudyDate, Date{LogDay});
    ASSERT_EQ(log.Points.size(), 3U);  // the fix before the first run belongs to none

    const GpsPoint& full = log.Points[0].Gps;
    EXPECT_EQ(full.RunNumber, 1);
    EXPECT_EQ(full.DateTime, Date{LogDay + 43201.0 / 86400});
    EXPECT_NEAR(full.Latitude, 42.26, 1e-12);
    EXPECT_NEAR(full.Longitude, -83.7505, 1e-12);
    EXPECT_EQ(full.Speed, 31.5F);
    EXPECT_EQ(full.Heading, 271.25F);
    EXPECT_EQ(full.HDOP, 1.5F);
    EXPECT_EQ(full.SatUsed, 7);

    GpsPoint bare = MissingGpsPoint();
    bare.RunNumber = 2;
    bare.DateTime = {LogDay + 43202.0 / 86400};
    bare.Latitude = 42.5;
    bare.Longitude = -83.5;
    EXPECT_EQ(log.Points[1].Gps, bare);
    EXPECT_EQ(bare.Speed == -1 && bare.Heading == -1 && bare.DelayNumber == -1 && bare.Direction == -1, true);
    EXPECT_EQ(bare.HDOP == 0 && bare.SatUsed == 0 && bare.Node == 0 && bare.FixQuality == 0, true);

    bare.DateTime = {LogDay + 43203.5 / 86400};
    bare.Latitude = -1;
    bare.Longitude = -1;
    EXPECT_EQ(log.Points[2].Gps, bare);
}

TEST_F(BattelleLogTest, FixesWithoutADateOrATimeArePassedOver) {
    EXPECT_EQ(TimeOfFix("05/14/03,12:00:00"), "2003-05-14T12:00:00");
    EXPECT_EQ(TimeOfFix("5/4/2003, 7:05 "), "2003-05-04T07:05:00");
    EXPECT_EQ(TimeOfFix("02/29/29,00:00:00"), "");
    EXPECT_EQ(TimeOfFix("02/28/29,00:00:00"), "2029-02-28T00:00:00");
    EXPECT_EQ(TimeOfFix("12/30/30,23:59:59"), "1930-12-30T23:59:59");
    for (const char* lacking :
         {"05/14/03", "12:00:00", "", "05-14-03,12:00:00", "13/01/03,12:00:00", "5/14,12:00:00", "05/14/03,24:00:00",
          "05/14/03,12:60", "05/14/03,12:00:60", "05/14/03,12:00:0x", "05/14/99999999999,12:00", "-5/14/03,12:00",
          "05/14/03,12", "//,::", "05/14/03,1:02 PM"})
        EXPECT_EQ(TimeOfFix(lacking), "") << lacking;
}

TEST_F(BattelleLogTest, LinesOfAnyLengthAnywhereInThePieces) {
    const std::string fix = "$G,05/14/03,12:00:00,4230.0000,8330.0000\n";
    for (std::size_t before = LogPieceSize - fix.size() - 4; before <= LogPieceSize + 1; ++before) {
        const auto log = Whole("$s\n" + std::string(before - 1, '$') + "\n" + fix);
        ASSERT_EQ(log.Points.size(), 1U) << before;
        ASSERT_EQ(log.Points[0].Gps.Longitude, -83.5) << before;
    }
    EXPECT_EQ(Summary(std::string(2000000, 'x') + "$s\n$s").Runs, 1);
    EXPECT_EQ(Whole("$s\n$G,05/14/03,12:00:00," + std::string(2000000, '4')).Points.size(), 1U);
    int asked = 0;
    EXPECT_EQ(ReadBattelleSummary(Files, "/f/Loop.txt", [&] { return ++asked < 2; }), std::nullopt);
    EXPECT_EQ(asked, 2);
}

TEST_F(BattelleLogTest, OtherTextsAndTooManyRuns) {
    EXPECT_ERROR(TypeMismatch, Whole("Minutes of the meeting\nItem 1\n"));
    EXPECT_EQ(Summary("Minutes of the meeting\nItem 1\n").StartTime, std::nullopt);
    EXPECT_FALSE(Summary("Minutes of the meeting").Problem.empty());
    EXPECT_EQ(Summary("").Problem + Summary("x\n$s").Problem, "");
    Files.PutText("/f/Loop.txt", "$s\n$G,05/14/03,12:00:00,-3352.8000,15112.0000\n");
    const GpsPoint sydney = ReadBattelleLog(Files, "/f/Loop.txt", true).Points[0].Gps;
    EXPECT_NEAR(sydney.Latitude, -33.88, 1e-9);
    EXPECT_NEAR(sydney.Longitude, 151.2, 1e-9);
    EXPECT_TRUE(Whole("").Points.empty());
    EXPECT_EQ(Whole("$s\n").StudyDate, std::nullopt);
    EXPECT_ERROR(FileNotFound, ReadBattelleLog(Files, "/f/None.txt"));
    std::string runs;
    for (int i = 0; i < 32767; ++i) runs += "$s\n";
    EXPECT_EQ(Whole(runs + "$G,05/14/03,12:00:00\n").Points.back().Gps.RunNumber, 32767);
    EXPECT_ERROR(Overflow, Whole(runs + "$s\n"));
    EXPECT_EQ(Summary(runs + "$s\n").Runs, 32768);
}

TEST_F(BattelleLogTest, IsWrittenAsALaptopLogNamedAfterItsFile) {
    WriteFieldLog(Files, Whole("$s\n$G,05/14/03,12:00:00,4230.0000,8330.0000,31.5,271.25,1.5,7\n"));
    const auto bytes = Files.Bytes("/f/Loop.gd2").value();
    const LogBytes expected = PrefixBytes(2)
                                  .Text("Loop", 32)
                                  .Text("Loop", 20)
                                  .Text("", 32)
                                  .Raw(std::string(16, '\0'))
                                  .Int16(1)
                                  .Int16(0)
                                  .Single(31.5F)
                                  .Single(271.25F)
                                  .Double(LogDay + 0.5)
                                  .Double(42.5)
                                  .Double(-83.5)
                                  .Int16(7)
                                  .Single(1.5F)
                                  .Int16(0)
                                  .Int16(-1)
                                  .Int16(-1);
    EXPECT_EQ(bytes, BytesOf(expected.Bytes()));
}

}  // namespace
}  // namespace vantor
