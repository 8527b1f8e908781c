#include "gpsobd/BattelleLog.h"

#include "Logs.h"

namespace vantor {
namespace {

class BattelleLogTest : public LogFileScene {
protected:
    LogSummary Summary(const std::string& text) {
        return LogFileScene::Summary(LogKind::Battelle, text, "/f/Loop.txt");
    }
    FieldLog Whole(const std::string& text) { return LogFileScene::Whole(LogKind::Battelle, text, "/f/Loop.txt"); }
    /// Date and time of the one fix of a log, "" where it is passed over.
    std::string TimeOfFix(const std::string& dateAndTime) {
        const auto summary = Summary("$G," + dateAndTime + ",4230.0,8330.0\n");
        return summary.StartTime ? IsoDateTime(*summary.StartTime) : "";
    }
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
    // The last time, not the greatest.
    EXPECT_EQ(Told(summary), "05/14/03|2003-05-14T07:58:30|2003-05-14T08:15:00|3");
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
    ASSERT_EQ(log.PointCount(), 3U);  // the fix before the first run belongs to none

    GpsPoint full{1, 0, 31.5F, 271.25F, {LogDay + 43201.0 / 86400}, 42.26, -83.7505, 7, 1.5F, 0, -1, -1};
    EXPECT_NEAR(log.Gps[0].Latitude, full.Latitude, 1e-12);
    EXPECT_NEAR(log.Gps[0].Longitude, full.Longitude, 1e-12);
    full.Latitude = log.Gps[0].Latitude;
    full.Longitude = log.Gps[0].Longitude;
    EXPECT_EQ(log.Gps[0], full);
    const auto bare = [](double second, double latitude, double longitude) {
        return GpsPoint{2, 0, -1, -1, {LogDay + second / 86400}, latitude, longitude, 0, 0, 0, -1, -1};
    };
    EXPECT_EQ(log.Gps[1], bare(43202, 42.5, -83.5));
    EXPECT_EQ(log.Gps[2], bare(43203.5, -1, -1));
}

TEST_F(BattelleLogTest, PositionsKeepTheirSignsOnDemand) {
    Sources.HasSignedCoordinates = true;
    const GpsPoint sydney = Whole("$s\n$G,05/14/03,12:00:00,-3352.8000,15112.0000\n").Gps[0];
    EXPECT_NEAR(sydney.Latitude, -33.88, 1e-9);
    EXPECT_NEAR(sydney.Longitude, 151.2, 1e-9);
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
        ASSERT_EQ(log.PointCount(), 1U) << before;
        ASSERT_EQ(log.Gps[0].Longitude, -83.5) << before;
    }
    EXPECT_EQ(Summary(std::string(2000000, 'x') + "$s\n$s").Runs, 1);
    EXPECT_EQ(Whole("$s\n$G,05/14/03,12:00:00," + std::string(2000000, '4')).PointCount(), 1U);
    int asked = 0;
    EXPECT_EQ(ReadLogSummary(Sources, FormatOf(LogKind::Battelle), "/f/Loop.txt", [&] { return ++asked < 2; }),
              std::nullopt);
    EXPECT_EQ(asked, 2);
}

TEST_F(BattelleLogTest, OtherTextsAndTooManyRuns) {
    EXPECT_ERROR(TypeMismatch, Whole("Minutes of the meeting\nItem 1\n"));
    EXPECT_EQ(Summary("Minutes of the meeting\nItem 1\n").StartTime, std::nullopt);
    EXPECT_FALSE(Summary("Minutes of the meeting").Problem.empty());
    EXPECT_EQ(Summary("").Problem + Summary("x\n$s").Problem, "");
    EXPECT_EQ(Whole("").PointCount(), 0U);
    EXPECT_EQ(Whole("$s\n").StudyDate, std::nullopt);
    EXPECT_ERROR(FileNotFound, ReadFieldLog(Sources, FormatOf(LogKind::Battelle), "/f/None.txt"));
    std::string runs;
    for (int i = 0; i < 32767; ++i) runs += "$s\n";
    EXPECT_EQ(Whole(runs + "$G,05/14/03,12:00:00\n").Gps.back().RunNumber, 32767);
    EXPECT_ERROR(Overflow, Whole(runs + "$s\n"));
    EXPECT_EQ(Summary(runs + "$s\n").Runs, 32768);
}

TEST_F(BattelleLogTest, IsWrittenAsALaptopLogNamedAfterItsFile) {
    WriteFieldLog(Files, Whole("$s\n$G,05/14/03,12:00:00,4230.0000,8330.0000,31.5,271.25,1.5,7\n"));
    EXPECT_EQ(Files.Bytes("/f/Loop.gd2"),
              BytesOf(Prefix(2) + Padded("Loop", 32) + Padded("Loop", 20) + Padded("", 32) + std::string(16, '\0') +
                      Pack("hhffdddhfhhh", 1, 0, 31.5, 271.25, LogDay + 0.5, 42.5, -83.5, 7, 1.5, 0, -1, -1)));
}

}  // namespace
}  // namespace vantor
