#include "gpsobd/LaptopLog.h"

#include <gtest/gtest.h>

#include <limits>

#include "fakes/FakePorts.h"
#include "fakes/ThrowsError.h"
#include "gpsobd/LogBytes.h"

namespace vantor {
namespace {

constexpr double NotANumber = std::numeric_limits<double>::quiet_NaN();

class LaptopLogTest : public testing::Test {
protected:
    LogSummary Summary(LogKind kind, const LogBytes& log) {
        Files.PutText("/f/Trip.log", log.Bytes());
        return ReadLaptopSummary(Files, Time, kind, "/f/Trip.log").value();
    }
    FieldLog Whole(LogKind kind, const LogBytes& log, const std::string& path = "/f/Trip.log") {
        Files.PutText(path, log.Bytes());
        return ReadLaptopLog(Files, Time, kind, path);
    }
    std::string Stored(const std::string& path) {
        const auto bytes = Files.Bytes(path).value();
        return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
    }

    MemoryFileSystem Files;
    FixedClock Time;
};

LogBytes Gd2(std::initializer_list<LogBytes> records) {
    LogBytes log = PrefixBytes(2).Add(GpsHeaderBytes());
    for (const LogBytes& record : records) log.Add(record);
    return log;
}

TEST_F(LaptopLogTest, SummaryCountsPointsOutsideRunsAndTimesInAnyOrder) {
    const auto summary = Summary(LogKind::GpsLaptop, Gd2({GpsRecord(0, LogDay + 0.5), GpsRecord(3, LogDay + 0.75),
                                                          GpsRecord(2, LogDay + 0.25), GpsRecord(0, LogDay + 0.875)}));
    EXPECT_EQ(summary.StudyDate, Date{LogDay});
    EXPECT_EQ(summary.StartTime, Date{LogDay + 0.5});
    EXPECT_EQ(summary.EndTime, Date{LogDay + 0.875});
    EXPECT_EQ(summary.Runs, 3);
    EXPECT_FALSE(summary.IsFirstFormat);
    const auto empty = Summary(LogKind::GpsLaptop, Gd2({}));
    EXPECT_FALSE(empty.StartTime || empty.EndTime);
    EXPECT_EQ(empty.Runs, 0);
}

TEST_F(LaptopLogTest, SecondFormatPointsOfRuns) {
    const auto log = Whole(LogKind::GpsLaptop, Gd2({GpsRecord(0, LogDay), GpsRecord(-4, 5), GpsRecord(1, 37755.5)}),
                           "/f/Trip One.GD2");
    EXPECT_EQ(log.Folder + "|" + log.Name + "|" + log.Extension, "/f/|Trip One|.gd2");
    EXPECT_EQ(StudyName(log), "Main St \u00c4");
    EXPECT_EQ(BaseName(log), "Main");
    ASSERT_EQ(log.Points.size(), 2U);
    EXPECT_EQ(log.Points[0].Gps.RunNumber, -4);
    const GpsPoint expected{1, 1, 31.5F, 271.25F, {37755.5}, 42.5, -83.5, 7, 1.5F, 2, 16, 4};
    EXPECT_EQ(log.Points[1].Gps, expected);
}

TEST_F(LaptopLogTest, LongitudesAboveOneBecomeWestern) {
    for (const auto& [stored, read] :
         {std::pair{83.5, -83.5}, {0.5, 0.5}, {1.0, 1.0}, {1.0625, -1.0625}, {-1.0, -1.0}, {-83.5, -83.5}}) {
        EXPECT_EQ(Whole(LogKind::GpsLaptop, Gd2({GpsRecord(1, LogDay, stored)})).Points[0].Gps.Longitude, read);
        EXPECT_EQ(ReadLaptopLog(Files, Time, LogKind::GpsLaptop, "/f/Trip.log", true).Points[0].Gps.Longitude, stored);
        const LogBytes combined = PrefixBytes(2).Add(ObdHeaderBytes()).Add(GpsRecord(1, LogDay, stored));
        EXPECT_EQ(Whole(LogKind::GpsObd, LogBytes(combined).Add(ObdRecord(9, 1))).Points[0].Gps.Longitude, read);
    }
}

TEST_F(LaptopLogTest, FormatNumbers0And1HaveTheFirstLayoutWhateverTheExtension) {
    for (const int formatNumber : {0, 1}) {
        const LogBytes bytes = PrefixBytes(formatNumber)
                                   .Add(GpsHeaderBytes())
                                   .Add(Ver1GpsRecord(0, LogDay + 0.25, 0, 0))
                                   .Add(Ver1GpsRecord(2, LogDay + 0.5, 4230, 8330))
                                   .Add(Ver1GpsRecord(5, LogDay + 0.375, 4215.6, -1));
        const auto summary = Summary(LogKind::GpsLaptop, bytes);
        EXPECT_TRUE(summary.IsFirstFormat);
        EXPECT_EQ(summary.StartTime, Date{LogDay + 0.25});
        EXPECT_EQ(summary.EndTime, Date{LogDay + 0.5});
        EXPECT_EQ(summary.Runs, 5);
        const auto log = Whole(LogKind::GpsLaptop, bytes, "/f/Trip.gd2");
        ASSERT_EQ(log.Points.size(), 2U);
        const GpsPoint expected{2, 2, 28.5F, -1, {LogDay + 0.5}, 42.5, -83.5, 6, 2.5F, 3, -1, -1};
        EXPECT_EQ(log.Points[0].Gps, expected);
        EXPECT_NEAR(log.Points[1].Gps.Latitude, 42.26, 1e-12);
        EXPECT_DOUBLE_EQ(log.Points[1].Gps.Longitude, -1.0 / 60);  // converted like any other
    }
    const LogBytes other = PrefixBytes(-7).Add(GpsHeaderBytes()).Add(GpsRecord(1, LogDay));
    EXPECT_FALSE(Summary(LogKind::GpsLaptop, other).IsFirstFormat);
    EXPECT_EQ(Whole(LogKind::GpsLaptop, other, "/f/Trip.gdf").Points.size(), 1U);
}

TEST_F(LaptopLogTest, EmptyLogDateBecomesToday) {
    for (const auto& [stored, read] : {std::pair{0.0, 39521.0},
                                       {36524.0, 39521.0} /* 12/30/1999 */,
                                       {36890.0, 36890.0} /* 12/30/2000 */,
                                       {1.0, 1.0},
                                       {-365.0, 39521.0} /* 12/30/1898 */}) {
        const LogBytes log = PrefixBytes(2, stored).Add(GpsHeaderBytes());
        EXPECT_EQ(Summary(LogKind::GpsLaptop, log).StudyDate, Date{read}) << stored;
        EXPECT_EQ(Whole(LogKind::GpsLaptop, log).StudyDate, Date{read});
    }
    EXPECT_EQ(Summary(LogKind::GpsLaptop, PrefixBytes(2, NotANumber).Add(GpsHeaderBytes())).StudyDate, std::nullopt);
}

TEST_F(LaptopLogTest, ObdAndCombinedLogsHaveOneLayout) {
    const ObdPoint obd{6,     {3.5}, 33.5F, 2100, 41.5F, 17.25F,  190,     75,
                       12.5F, 1.75F, 5,     15,   2,     "P0420", "ready", std::string("\0warm", 5)};
    const LogBytes alone = PrefixBytes(1).Add(ObdHeaderBytes()).Add(ObdRecord(0, 4.5)).Add(ObdRecord(6, 3.5));
    EXPECT_EQ(Summary(LogKind::ObdLaptop, alone).EndTime, Date{4.5});
    const auto log = Whole(LogKind::ObdLaptop, alone);
    ASSERT_EQ(log.Points.size(), 1U);
    EXPECT_EQ(log.Points[0].Obd, obd);
    EXPECT_EQ(StudyName(log), "  Elm Ave");
    EXPECT_EQ(BaseName(log), "Trip");  // its header names none

    // The run and the time of a combined point are those of its GPS half.
    const LogBytes both = PrefixBytes(2)
                              .Add(ObdHeaderBytes())
                              .Add(GpsRecord(8, LogDay + 0.5))
                              .Add(ObdRecord(6, 3.5))
                              .Add(GpsRecord(0, LogDay + 0.25))
                              .Add(ObdRecord(11, 3.5));
    const auto summary = Summary(LogKind::GpsObd, both);
    EXPECT_EQ(summary.StartTime, Date{LogDay + 0.5});
    EXPECT_EQ(summary.EndTime, Date{LogDay + 0.5});
    EXPECT_EQ(summary.Runs, 8);
    const auto combined = Whole(LogKind::GpsObd, both);
    ASSERT_EQ(combined.Points.size(), 1U);
    EXPECT_EQ(combined.Points[0].Gps.RunNumber, 8);
    EXPECT_EQ(combined.Points[0].Obd, obd);
}

TEST_F(LaptopLogTest, IncompleteLastRecordIsDroppedAndCounted) {
    const std::string whole = Gd2({GpsRecord(1, LogDay), GpsRecord(2, LogDay + 0.5)}).Bytes();
    for (const std::size_t missing : {1U, 47U, 48U}) {
        const LogBytes cut = LogBytes().Raw(whole.substr(0, whole.size() - missing));
        const auto summary = Summary(LogKind::GpsLaptop, cut);
        EXPECT_EQ(summary.DroppedBytes, 48 - missing);
        EXPECT_EQ(summary.EndTime, Date{LogDay});
        const auto log = Whole(LogKind::GpsLaptop, cut);
        EXPECT_EQ(log.DroppedBytes, 48 - missing);
        EXPECT_EQ(log.Points.size(), 1U);
    }
}

TEST_F(LaptopLogTest, ImpossibleTimesAreNone) {
    const auto summary =
        Summary(LogKind::GpsLaptop,
                Gd2({GpsRecord(1, NotANumber), GpsRecord(1, 5.5), GpsRecord(1, std::numeric_limits<double>::infinity()),
                     GpsRecord(1, 1e300), GpsRecord(1, -1e300), GpsRecord(1, 2958466), GpsRecord(1, 4.5)}));
    EXPECT_EQ(summary.StartTime, std::nullopt);
    EXPECT_EQ(summary.EndTime, Date{5.5});
    EXPECT_EQ(Whole(LogKind::GpsLaptop, Gd2({GpsRecord(1, NotANumber, NotANumber)})).Points.size(), 1U);
}

TEST_F(LaptopLogTest, ForeignAndDamagedFilesAreRefusedByName) {
    // Bytes 7 to 14 of this text make a date.
    const std::string text = "Hello, loop 3@ noon, as measured by wheel on the 14th. ";
    const std::string picture("\x89PNG\r\n\x1a\n\0\0\0\rIHDR\0\0\x02\x80\0\0\x01\xe0", 24);
    const std::string runFile = LogBytes().Int16(1).Text("S001R001-MAIN-1", 32).Double(LogDay).Bytes();
    struct Case {
        std::string Bytes;
        ErrorNumber Error;
    };
    for (const Case& damaged :
         {Case{"", ErrorNumber::InputPastEndOfFile},
          {PrefixBytes(2).Bytes().substr(0, 9), ErrorNumber::InputPastEndOfFile},
          {Gd2({}).Bytes().substr(0, 115), ErrorNumber::InputPastEndOfFile},
          {text + text + text, ErrorNumber::TypeMismatch},
          {text, ErrorNumber::TypeMismatch},
          {picture + std::string(200, '\0'), ErrorNumber::TypeMismatch},
          {runFile + std::string(200, '\0'), ErrorNumber::TypeMismatch},
          {std::string(200, '\xff'), ErrorNumber::TypeMismatch},
          {PrefixBytes(2, NotANumber, "QQ").Add(GpsHeaderBytes()).Bytes(), ErrorNumber::TypeMismatch}}) {
        Files.PutText("/f/Odd.gdf", damaged.Bytes);
        for (const bool isWhole : {false, true}) {
            try {
                if (isWhole)
                    ReadLaptopLog(Files, Time, LogKind::GpsLaptop, "/f/Odd.gdf");
                else
                    ReadLaptopSummary(Files, Time, LogKind::GpsLaptop, "/f/Odd.gdf");
                ADD_FAILURE() << damaged.Bytes;
            } catch (const RunTimeError& error) {
                EXPECT_EQ(error.Number(), damaged.Error) << damaged.Bytes;
                EXPECT_TRUE(error.Place().find("\n/f/Odd.gdf, byte") != std::string::npos) << error.Place();
            }
        }
    }
    EXPECT_ERROR(FileNotFound, ReadLaptopLog(Files, Time, LogKind::GpsLaptop, "/f/None.gdf"));
    // 120 bytes of header make an OBD log, 100 do not.
    Files.PutText("/f/Short.odf", PrefixBytes(2).Add(GpsHeaderBytes()).Bytes());
    EXPECT_ERROR(InputPastEndOfFile, ReadLaptopSummary(Files, Time, LogKind::ObdLaptop, "/f/Short.odf"));
    // Another logger may write another tag.
    for (const double logDate : {0.0, LogDay})
        EXPECT_NO_THROW(Summary(LogKind::GpsLaptop, PrefixBytes(2, logDate, "7\x01").Add(GpsHeaderBytes())));
}

TEST_F(LaptopLogTest, ReadsALogOfManyPiecesAndStopsOnDemand) {
    LogBytes log = Gd2({});
    constexpr int Records = 30000;  // 1.44 MB
    for (int i = 0; i < Records; ++i) log.Add(GpsRecord(i % 7, LogDay + (i == 20000 ? 0.9 : i / 86400.0)));
    log.Raw("half a record");
    Files.PutText("/f/Long.gd2", log.Bytes());
    int asked = 0;
    const auto count = [&] { return ++asked > 0; };
    const auto summary = ReadLaptopSummary(Files, Time, LogKind::GpsLaptop, "/f/Long.gd2", count);
    EXPECT_EQ(asked, 3);
    EXPECT_EQ(summary->EndTime, Date{LogDay + 0.9});
    EXPECT_EQ(summary->Runs, 6);
    EXPECT_EQ(summary->DroppedBytes, 13U);
    const auto whole = ReadLaptopLog(Files, Time, LogKind::GpsLaptop, "/f/Long.gd2");
    ASSERT_EQ(whole.Points.size(), 25714U);  // six of every seven
    EXPECT_EQ(whole.Points.back().Gps.DateTime, Date{LogDay + 29999 / 86400.0});
    asked = 0;
    EXPECT_EQ(ReadLaptopSummary(Files, Time, LogKind::GpsLaptop, "/f/Long.gd2", [&] { return ++asked < 2; }),
              std::nullopt);
    EXPECT_EQ(asked, 2);
}

TEST_F(LaptopLogTest, WritesTheReviewedLogInTheSecondFormat) {
    FieldLog log = Whole(LogKind::GpsLaptop,
                         PrefixBytes(1, 0, "QQ")
                             .Add(GpsHeaderBytes())
                             .Add(Ver1GpsRecord(0, 1, 2, 3))
                             .Add(Ver1GpsRecord(2, 1.5, 4230, 8330)),
                         "/f/Trip.gdf");
    log.Points[0].Gps.Direction = 3;
    WriteFieldLog(Files, log);
    // Format 2, reserved, no date, tag; the header as it was; run 2, quality 2, 28.5 mph, heading -1, 1.5 days,
    // 42.5, -83.5, 6 satellites, HDOP 2.5, node 3, delay number -1, direction 3.
    const std::string prefix("\x02\0\0\0\0\0\0\0\0\0\0\0\0\0XX", 16);
    const std::string record(
        "\x02\0\x02\0\0\0\xe4\x41\0\0\x80\xbf\0\0\0\0\0\0\xf8\x3f\0\0\0\0\0\x40\x45\x40\0\0\0\0\0\xe0\x54\xc0"
        "\x06\0\0\0\x20\x40\x03\0\xff\xff\x03\0",
        48);
    EXPECT_EQ(Stored("/f/Trip.gd2"), prefix + GpsHeaderBytes().Bytes() + record);
    EXPECT_EQ(Files.AllFiles(), (std::vector<std::string>{"/f/Trip.gd2", "/f/Trip.gdf"}));
}

TEST_F(LaptopLogTest, WritesObdAndCombinedLogsAsTheyWere) {
    const LogBytes obd = PrefixBytes(2).Add(ObdHeaderBytes()).Add(ObdRecord(6, 3.5)).Add(ObdRecord(7, 4.5));
    WriteFieldLog(Files, Whole(LogKind::ObdLaptop, obd, "/f/Engine.odf"));
    EXPECT_EQ(Stored("/f/Engine.od2"), obd.Bytes());
    const LogBytes both = PrefixBytes(2).Add(ObdHeaderBytes()).Add(GpsRecord(8, 3.5)).Add(ObdRecord(6, 2.5));
    WriteFieldLog(Files, Whole(LogKind::GpsObd, both, "/f/Both.ddf"));
    EXPECT_EQ(Stored("/f/Both.ddf"), both.Bytes());
    EXPECT_EQ(both.Bytes().size(), 16U + 120 + 144);
}

TEST_F(LaptopLogTest, EveryFileThatIsReplacedIsKept) {
    const std::string original = Gd2({GpsRecord(0, 1), GpsRecord(1, 2)}).Bytes();
    const std::string reviewed = Gd2({GpsRecord(1, 2)}).Bytes();
    Files.PutText("/f/Trip.gd2", original);
    FieldLog log = ReadLaptopLog(Files, Time, LogKind::GpsLaptop, "/f/Trip.gd2");
    for (int round = 0; round < 2; ++round) WriteFieldLog(Files, log);
    EXPECT_EQ(Stored("/f/Trip.gd2.bak"), original);
    EXPECT_EQ(Stored("/f/Trip.gd2"), reviewed);
    EXPECT_EQ(Files.AllFiles().size(), 2U) << "the second time it held those bytes already";
    log.Points.clear();
    WriteFieldLog(Files, log);
    EXPECT_EQ(Stored("/f/Trip.gd2.bak2"), reviewed);
    EXPECT_EQ(Stored("/f/Trip.gd2.bak"), original);
}

class NoDatabases : public DatabaseEngine, public DeviceDatabase {
    std::unique_ptr<RecordSet> OpenTable(const std::string& path, const std::string&) const override {
        throw RunTimeError(ErrorNumber::TypeMismatch, path);
    }
    std::unique_ptr<RecordSet> Open(const std::string& path, const std::string&) const override {
        throw RunTimeError(ErrorNumber::TypeMismatch, path);
    }
};

TEST_F(LaptopLogTest, TheExtensionTellsTheKind) {
    const NoDatabases databases;
    const LogSources sources{Files, databases, databases, Time};
    for (const auto& [name, kind] : {std::pair{"A.gdf", LogKind::GpsLaptop},
                                     {"A.GD2", LogKind::GpsLaptop},
                                     {"A.Odf", LogKind::ObdLaptop},
                                     {"A.od2", LogKind::ObdLaptop},
                                     {"A.ddf", LogKind::GpsObd},
                                     {"A.b.txt", LogKind::Battelle}})
        EXPECT_EQ(LogKindOf(sources, std::string("/f/") + name), kind) << name;
    Files.PutText("/f/A.mdb", "no database");
    for (const char* name : {"/f/A.rd2", "/f/gdf", "/f/A.mdb"}) EXPECT_ERROR(TypeMismatch, LogKindOf(sources, name));

    Files.PutText("/f/A.txt", "$s\n$G,05/14/03,12:00:00,4230.0000,8330.0000\n");
    Files.PutText("/f/A.od2", PrefixBytes(2).Add(ObdHeaderBytes()).Add(ObdRecord(4, 3.5)).Bytes());
    EXPECT_EQ(ReadLogSummary(sources, LogKind::Battelle, "/f/A.txt")->Runs, 1);
    EXPECT_EQ(ReadLogSummary(sources, LogKind::ObdLaptop, "/f/A.od2")->Runs, 4);
    EXPECT_EQ(ReadFieldLog(sources, LogKind::Battelle, "/f/A.txt").Points[0].Gps.RunNumber, 1);
    EXPECT_EQ(ReadFieldLog(sources, LogKind::ObdLaptop, "/f/A.od2").Points[0].Obd.RunNumber, 4);
}

TEST(DirectionText, NamesTheFourDirections) {
    EXPECT_EQ(DirectionText(1) + DirectionText(2) + DirectionText(3) + DirectionText(4), "SBNBWBEB");
    EXPECT_EQ(DirectionText(0) + DirectionText(-1) + DirectionText(5), "");
}

}  // namespace
}  // namespace vantor
