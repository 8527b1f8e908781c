#include "gpsobd/LaptopLog.h"

#include <limits>

#include "Logs.h"

namespace vantor {
namespace {

using testing::ElementsAre, testing::HasSubstr;
using enum LogKind;

constexpr double NotANumber = std::numeric_limits<double>::quiet_NaN();
const std::string Gd2 = Prefix(2) + GpsHeader();  // without a record

using LaptopLogTest = LogFileScene;

TEST_F(LaptopLogTest, SecondFormatTellsAllPointsAndHasThoseOfRuns) {
    const std::string bytes = Gd2 + GpsRecord(0, LogDay + 0.5) + GpsRecord(-4, LogDay + 0.75) +
                              GpsRecord(3, LogDay + 0.25) + GpsRecord(2, 37755.5) + GpsRecord(0, LogDay + 0.875);
    const auto summary = Summary(GpsLaptop, bytes);
    EXPECT_FALSE(summary.IsFirstFormat);
    EXPECT_EQ(Told(summary), "05/14/03|2003-05-14T12:00:00|2003-05-14T21:00:00|3");
    EXPECT_EQ(Told(Summary(GpsLaptop, Gd2)), "05/14/03|||0");

    const auto log = Whole(GpsLaptop, bytes, "/f/Trip One.GD2");
    EXPECT_EQ(log.Folder + "|" + log.Name + "|" + log.Extension, "/f/|Trip One|.gd2");
    EXPECT_EQ(StudyName(log) + "|" + BaseName(log), "Main St \u00c4|Main");
    ASSERT_EQ(log.PointCount(), 3U);
    EXPECT_EQ(log.Gps[0].RunNumber, -4);
    EXPECT_EQ(log.Gps[2], (GpsPoint{2, 1, 31.5F, 271.25F, {37755.5}, 42.5, -83.5, 7, 1.5F, 2, 16, 4}));
}

TEST_F(LaptopLogTest, LongitudesAboveOneBecomeWestern) {
    for (const auto& [stored, read] : {std::pair{83.5, -83.5}, {0.5, 0.5}, {1.0, 1.0}, {1.0625, -1.0625}, {-1.0, -1.0}})
        for (const bool isSigned : {false, true}) {
            Sources.HasSignedCoordinates = isSigned;
            const std::string record = GpsRecord(1, LogDay, stored);
            EXPECT_EQ(Whole(GpsLaptop, Gd2 + record).Gps[0].Longitude, isSigned ? stored : read);
            EXPECT_EQ(Whole(GpsObd, Prefix(2) + ObdHeader() + record + ObdRecord(9, 1)).Gps[0].Longitude,
                      isSigned ? stored : read);
        }
}

TEST_F(LaptopLogTest, FormatNumbers0And1HaveTheFirstLayoutWhateverTheExtension) {
    for (const int formatNumber : {0, 1}) {
        const std::string bytes = Prefix(formatNumber) + GpsHeader() + Ver1GpsRecord(0, LogDay + 0.25, 0, 0) +
                                  Ver1GpsRecord(2, LogDay + 0.5, 4230, 8330) +
                                  Ver1GpsRecord(5, LogDay + 0.375, 4215.6, -1);
        const auto summary = Summary(GpsLaptop, bytes);
        EXPECT_TRUE(summary.IsFirstFormat);
        EXPECT_EQ(Told(summary), "05/14/03|2003-05-14T06:00:00|2003-05-14T12:00:00|5");
        const auto log = Whole(GpsLaptop, bytes, "/f/Trip.gd2");
        ASSERT_EQ(log.PointCount(), 2U);
        EXPECT_EQ(log.Gps[0], (GpsPoint{2, 2, 28.5F, -1, {LogDay + 0.5}, 42.5, -83.5, 6, 2.5F, 3, -1, -1}));
        EXPECT_NEAR(log.Gps[1].Latitude, 42.26, 1e-12);
        EXPECT_DOUBLE_EQ(log.Gps[1].Longitude, -1.0 / 60);  // converted like any other
    }
    const std::string other = Prefix(-7) + GpsHeader() + GpsRecord(1, LogDay);
    EXPECT_FALSE(Summary(GpsLaptop, other).IsFirstFormat);
    EXPECT_EQ(Whole(GpsLaptop, other, "/f/Trip.gdf").PointCount(), 1U);
}

TEST_F(LaptopLogTest, EmptyLogDateBecomesToday) {
    for (const auto& [stored, read] : {std::pair{0.0, 39521.0},
                                       {36524.0, 39521.0} /* 12/30/1999 */,
                                       {36890.0, 36890.0} /* 12/30/2000 */,
                                       {1.0, 1.0},
                                       {-365.0, 39521.0} /* 12/30/1898 */}) {
        EXPECT_EQ(Summary(GpsLaptop, Prefix(2, stored) + GpsHeader()).StudyDate, Date{read}) << stored;
        EXPECT_EQ(Whole(GpsLaptop, Prefix(2, stored) + GpsHeader()).StudyDate, Date{read});
    }
    EXPECT_EQ(Summary(GpsLaptop, Prefix(2, NotANumber) + GpsHeader()).StudyDate, std::nullopt);
}

TEST_F(LaptopLogTest, ObdAndCombinedLogsHaveOneLayout) {
    const ObdPoint obd{6,     {3.5}, 33.5F, 2100, 41.5F, 17.25F,  190,     75,
                       12.5F, 1.75F, 5,     15,   2,     "P0420", "ready", std::string("\0warm", 5)};
    const std::string alone = Prefix(1) + ObdHeader() + ObdRecord(0, 4.5) + ObdRecord(6, 3.5);
    EXPECT_EQ(Told(Summary(ObdLaptop, alone)), "05/14/03|1900-01-03T12:00:00|1900-01-03T12:00:00|6");
    const auto log = Whole(ObdLaptop, alone);
    ASSERT_EQ(log.PointCount(), 1U);
    EXPECT_EQ(log.Obd[0], obd);
    EXPECT_EQ(StudyName(log) + "|" + BaseName(log), "  Elm Ave|Trip") << "its header names none";

    // The run and the time of a combined point are those of its GPS half.
    const std::string both = Prefix(2) + ObdHeader() + GpsRecord(8, LogDay + 0.5) + ObdRecord(6, 3.5) +
                             GpsRecord(0, LogDay + 0.25) + ObdRecord(11, 3.5);
    EXPECT_EQ(Told(Summary(GpsObd, both)), "05/14/03|2003-05-14T12:00:00|2003-05-14T12:00:00|8");
    const auto combined = Whole(GpsObd, both);
    ASSERT_EQ(combined.PointCount(), 1U);
    EXPECT_EQ(combined.Gps[0].RunNumber, 8);
    EXPECT_EQ(combined.Obd[0], obd);
    EXPECT_EQ(StudyName(combined), "  Elm Ave");
}

TEST_F(LaptopLogTest, IncompleteLastRecordIsDroppedAndCounted) {
    for (const std::size_t kept : {0U, 1U, 47U}) {
        const std::string cut = Gd2 + GpsRecord(1, LogDay) + GpsRecord(2, LogDay + 0.5).substr(0, kept);
        const auto summary = Summary(GpsLaptop, cut);
        EXPECT_EQ(Told(summary), "05/14/03|2003-05-14T00:00:00|2003-05-14T00:00:00|1");
        const auto log = Whole(GpsLaptop, cut);
        EXPECT_EQ(log.PointCount(), 1U);
        for (const std::uint64_t dropped : {summary.DroppedBytes, log.DroppedBytes}) EXPECT_EQ(dropped, kept);
    }
}

TEST_F(LaptopLogTest, ImpossibleTimesAreNone) {
    std::string bytes = Gd2;
    for (const double time : {NotANumber, 5.5, std::numeric_limits<double>::infinity(), 1e300, -1e300, 2958466.0, 4.5})
        bytes += GpsRecord(1, time);
    EXPECT_EQ(Told(Summary(GpsLaptop, bytes)), "05/14/03||1900-01-04T12:00:00|1");
    EXPECT_EQ(Whole(GpsLaptop, Gd2 + GpsRecord(1, NotANumber, NotANumber)).PointCount(), 1U);
}

TEST_F(LaptopLogTest, ForeignAndDamagedFilesAreRefusedByName) {
    using enum ErrorNumber;
    // Bytes 7 to 14 of this text make a date.
    const std::string text = "Hello, loop 3@ noon, as measured by wheel on the 14th. ";
    const std::string rest(200, '\0');
    const std::pair<std::string, ErrorNumber> files[] = {
        {"", InputPastEndOfFile},
        {Prefix(2).substr(0, 9), InputPastEndOfFile},
        {Gd2.substr(0, 115), InputPastEndOfFile},
        {text + text + text, TypeMismatch},
        {text, TypeMismatch},
        {std::string("\x89PNG\r\n\x1a\n\0\0\0\rIHDR\0\0\x02\x80\0\0\x01\xe0", 24) + rest, TypeMismatch},  // a picture
        {Pack("h", 1) + Padded("S001R001-MAIN-1", 32) + Pack("d", LogDay) + rest, TypeMismatch},          // a run file
        {std::string(200, '\xff'), TypeMismatch},
        {Prefix(2, NotANumber, "QQ") + GpsHeader(), TypeMismatch}};
    for (const auto& [bytes, number] : files) {
        EXPECT_THAT(PlaceOf(number, [&, &bytes = bytes] { Summary(GpsLaptop, bytes); }),
                    HasSubstr("\n/f/Trip.log, byte"));
        EXPECT_THAT(PlaceOf(number, [&, &bytes = bytes] { Whole(GpsLaptop, bytes); }),
                    HasSubstr("\n/f/Trip.log, byte"));
    }
    EXPECT_ERROR(FileNotFound, ReadFieldLog(Sources, FormatOf(GpsLaptop), "/f/None.gdf"));
    EXPECT_ERROR(InputPastEndOfFile, Summary(ObdLaptop, Gd2)) << "120 bytes of header make an OBD log, 100 do not";
    for (const double logDate : {0.0, LogDay})
        EXPECT_NO_THROW(Summary(GpsLaptop, Prefix(2, logDate, "7\x01") + GpsHeader())) << "another logger's tag";
}

TEST_F(LaptopLogTest, ReadsALogOfManyPiecesAndStopsOnDemand) {
    std::string bytes = Gd2;
    for (int i = 0; i < 30000; ++i)  // 1.44 MB
        bytes += GpsRecord(i % 7, LogDay + (i == 20000 ? 0.9 : i / 86400.0));
    const auto whole = Whole(GpsLaptop, bytes + "half a record");
    ASSERT_EQ(whole.PointCount(), 25714U);  // six of every seven
    EXPECT_EQ(whole.Gps.back().DateTime, Date{LogDay + 29999 / 86400.0});
    int asked = 0;
    const auto summary = [&](int most) {
        asked = 0;
        return ReadLogSummary(Sources, FormatOf(GpsLaptop), "/f/Trip.log", [&] { return ++asked < most; });
    };
    const auto all = summary(9);
    EXPECT_EQ(asked, 3);
    EXPECT_EQ(Told(*all), "05/14/03|2003-05-14T00:00:00|2003-05-14T21:36:00|6");
    EXPECT_EQ(all->DroppedBytes, 13U);
    EXPECT_EQ(summary(2), std::nullopt);
    EXPECT_EQ(asked, 2);
}

TEST_F(LaptopLogTest, WritesTheReviewedLogInTheSecondFormat) {
    FieldLog log = Whole(
        GpsLaptop, Prefix(1, 0, "QQ") + GpsHeader() + Ver1GpsRecord(0, 1, 2, 3) + Ver1GpsRecord(2, 1.5, 4230, 8330),
        "/f/Trip.gdf");
    log.Gps[0].Direction = 3;
    WriteFieldLog(Files, log);
    // Format 2, reserved, no date, tag; the header as it was; run 2, quality 2, 28.5 mph, heading -1, 1.5 days,
    // 42.5, -83.5, 6 satellites, HDOP 2.5, node 3, delay number -1, direction 3.
    const std::string prefix("\x02\0\0\0\0\0\0\0\0\0\0\0\0\0XX", 16);
    const std::string record(
        "\x02\0\x02\0\0\0\xe4\x41\0\0\x80\xbf\0\0\0\0\0\0\xf8\x3f\0\0\0\0\0\x40\x45\x40\0\0\0\0\0\xe0\x54\xc0"
        "\x06\0\0\0\x20\x40\x03\0\xff\xff\x03\0",
        48);
    EXPECT_EQ(Files.Bytes("/f/Trip.gd2"), BytesOf(prefix + GpsHeader() + record));
    EXPECT_THAT(Files.AllFiles(), ElementsAre("/f/Trip.gd2", "/f/Trip.gdf"));
}

TEST_F(LaptopLogTest, WritesObdAndCombinedLogsAsTheyWere) {
    const std::string obd = Prefix(2) + ObdHeader() + ObdRecord(6, 3.5) + ObdRecord(7, 4.5);
    WriteFieldLog(Files, Whole(ObdLaptop, obd, "/f/Engine.odf"));
    EXPECT_EQ(Files.Bytes("/f/Engine.od2"), BytesOf(obd));
    const std::string both = Prefix(2) + ObdHeader() + GpsRecord(8, 3.5) + ObdRecord(6, 2.5);
    WriteFieldLog(Files, Whole(GpsObd, both, "/f/Both.ddf"));
    EXPECT_EQ(Files.Bytes("/f/Both.ddf"), BytesOf(both));
    EXPECT_EQ(both.size(), 16U + 120 + 144);
}

TEST_F(LaptopLogTest, EveryFileThatIsReplacedIsKept) {
    FieldLog log = Whole(GpsLaptop, Gd2 + GpsRecord(0, 1) + GpsRecord(1, 2), "/f/Trip.gd2");
    for (int round = 0; round < 2; ++round) WriteFieldLog(Files, log);  // the second time it holds those bytes already
    log.Gps.clear();
    WriteFieldLog(Files, log);
    EXPECT_EQ(Files.Bytes("/f/Trip.gd2.bak"), BytesOf(Gd2 + GpsRecord(0, 1) + GpsRecord(1, 2)));
    EXPECT_EQ(Files.Bytes("/f/Trip.gd2.bak2"), BytesOf(Gd2 + GpsRecord(1, 2)));
    EXPECT_EQ(Files.AllFiles().size(), 3U);
}

TEST_F(LaptopLogTest, TheExtensionTellsTheKind) {
    for (const auto& [name, kind] : {std::pair{"/f/A.gdf", GpsLaptop},
                                     {"/f/A.GD2", GpsLaptop},
                                     {"/f/A.Odf", ObdLaptop},
                                     {"/f/A.od2", ObdLaptop},
                                     {"/f/A.ddf", GpsObd},
                                     {"/f/A.b.txt", Battelle}})
        EXPECT_EQ(&FormatOfFile(Sources, name), &FormatOf(kind)) << name;
    for (const char* name : {"/f/A.rd2", "/f/gdf", "/f/A.mdb"}) EXPECT_ERROR(TypeMismatch, FormatOfFile(Sources, name));
}

TEST_F(LaptopLogTest, WhatTheNameLeavesOpenTheHeadTells) {
    LogFormat sentences = FormatOf(Battelle);
    sentences.Recognises = [](const LogSources&, const LogFormat&, const std::string&, std::string_view head) {
        return head.starts_with("$GP");
    };
    const LogFormat formats[] = {sentences, FormatOf(Battelle)};
    const auto isFirst = [&](const std::string& path, const std::string& text) {
        Files.PutText(path, text);
        return &FormatOfFile(Sources, path, formats) == formats;
    };
    EXPECT_TRUE(isFirst("/f/A.txt", "$GPRMC,\n$s\n"));
    EXPECT_FALSE(isFirst("/f/A.txt", "Logger\n$s\n"));
    EXPECT_FALSE(isFirst("/f/A.txt", "neither: the last one says why")) << "of those that share the extension";
    EXPECT_TRUE(isFirst("/f/A.nmea", "$GPRMC,\n"));
    EXPECT_FALSE(isFirst("/f/A.dat", "Logger\n$s\n"));
    EXPECT_ERROR(TypeMismatch, isFirst("/f/A.dat", std::string(1024, ' ') + "\n$s\n"));
}

TEST(DirectionText, NamesTheFourDirections) {
    EXPECT_EQ(DirectionText(1) + DirectionText(2) + DirectionText(3) + DirectionText(4), "SBNBWBEB");
    EXPECT_EQ(DirectionText(0) + DirectionText(-1) + DirectionText(5), "");
}

}  // namespace
}  // namespace vantor
