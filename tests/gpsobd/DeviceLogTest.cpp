#include "gpsobd/DeviceLog.h"

#include "Logs.h"

namespace vantor {
namespace {

using enum LogKind;

std::string BigEndian(std::size_t value, int width) {
    std::string bytes;
    for (int i = width - 1; i >= 0; --i) bytes += static_cast<char>((value >> (8 * i)) & 0xFF);
    return bytes;
}

/// A container of those records, each with its attributes in front.
std::string Palm(std::string name, const std::vector<std::string>& records) {
    name.resize(32);
    std::string file = name + std::string(44, '\0') + BigEndian(records.size(), 2);
    std::size_t place = file.size() + 8 * records.size();
    std::string data;
    for (const std::string& record : records) {
        file += BigEndian(place + data.size(), 4) + record.substr(0, 1) + std::string("\0\0\1", 3);
        data += record.substr(1);
    }
    return file + data;
}

std::string Record(const std::vector<std::string>& fields, char attributes = '\0') {
    std::string record(1, attributes);
    for (const std::string& field : fields) record += field + '\0';
    return record;
}

const std::vector<std::string> First{"05/14/2003 22:00:00", "42.1", "83.4", "5.1", "124.7", "2.4", "6", "0", "0"};
const std::vector<std::string> Second{"05/14/2003 22:00:17", "42.2", "-83.25", "26.1", "", "", "", "", "1"};

class DeviceLogTest : public LogFileScene {
protected:
    void PutTable(const std::string& name, std::vector<std::vector<std::string>> records) {
        Database.Path = "/f/" + name + ".mdb";
        Database.Table = name;
        Database.Records = std::move(records);
    }
    std::optional<LogKind> KindIn(const std::string& path) {
        try {
            return FormatOfFile(Sources, path).Screen->Kind;
        } catch (const NoSuchTable&) {
            return std::nullopt;
        }
    }
    FieldLog GpsLog(const std::string& palm) { return Whole(GpsHandheld, palm, "/f/Any.PDB"); }
};

TEST_F(DeviceLogTest, GpsFieldsByPosition) {
    PutTable("GPSData", {First,
                         {"5/14/2003 10:00:17 PM", "42.1001", "83.4", "26.1", "26.6", "0.9", "4", "3", "2"},
                         {"", "", "", "", "", "", "", "", "-4"},
                         {"12:00:00 AM", "42", "1.0", "-1", "0", "1e1", "+5", "2.5", "1"},
                         {"37755.5", "42", "1.5", "0", "0", "0", "3.5", "0", "1"},
                         {"12:30:00 PM", "", "", "", "", "", "", "", "1"}});
    const FieldLog log = ReadFieldLog(Sources, FormatOf(GpsHandheld), Database.Path);
    EXPECT_EQ(log.Format, &FormatOf(GpsHandheld));
    EXPECT_EQ(log.Folder + "|" + log.Name + "|" + log.Extension, "/f/|GPSData|.mdb");
    EXPECT_EQ(log.GpsHeader.StudyName + log.GpsHeader.BaseName, "GPSDataGPSData");
    EXPECT_FALSE(log.StudyDate);
    EXPECT_EQ(log.Prefix, (LogPrefix{2, 0, 0, Date{37755}, "XX"}));

    ASSERT_EQ(log.PointCount(), 5u) << "run 0 is left out";
    const Date time = log.Gps[0].DateTime;
    EXPECT_EQ(IsoDateTime(time), "2003-05-14T22:00:17");
    EXPECT_EQ(log.Gps[0], (GpsPoint{2, 0, 26.1f, 26.6f, time, 42.1001, -83.4, 4, 0.9f, 3, -1, -1}));
    EXPECT_EQ(log.Gps[1], (GpsPoint{-4, 0, -1, -1, Date{}, -1, -1, 0, 0, 0, -1, -1})) << "empty fields";
    EXPECT_EQ(log.Gps[2], (GpsPoint{1, 0, -1, 0, Date{}, 42, 1.0, 5, 10, 2, -1, -1})) << "1.0 stays east";
    EXPECT_EQ(log.Gps[3], (GpsPoint{1, 0, 0, 0, Date{37755.5}, 42, -1.5, 4, 0, 0, -1, -1}));
    EXPECT_EQ(log.Gps[4].DateTime, TimeOf(12, 30));
}

TEST_F(DeviceLogTest, ObdFieldsByPosition) {
    PutTable("OBDData", {{"05/14/2003 22:00:00", "5.1", "936", "86.7", "36", "188", "0.11", "4", "1"},
                         {"", "", "", "", "", "", "", "", "2"}});
    const FieldLog log = ReadFieldLog(Sources, FormatOf(ObdHandheld), Database.Path);
    EXPECT_EQ(log.ObdHeader.StudyName + log.ObdHeader.BaseName + log.Extension, "OBDDataOBDData.mdb");
    ASSERT_EQ(log.PointCount(), 2u);
    const Date time{DateOf(2003, 5, 14).Days + TimeOf(22, 0).Days};
    EXPECT_EQ(log.Obd[0], (ObdPoint{1, time, 5.1f, 936, 86.7f, 36, 188, 0, 0, 0.11f, 4, 0, 0, "", "", ""}));
    EXPECT_EQ(log.Obd[1], (ObdPoint{2, Date{}, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, "", "", ""}));
}

TEST_F(DeviceLogTest, AFieldThatDoesNotConvertNamesFileAndRecord) {
    const auto read = [&] { ReadFieldLog(Sources, FormatOf(GpsHandheld), Database.Path); };
    // The number of a field and what stands in it.
    for (const std::string field : {"1 14.05.2003", "1 13/01/2003 10:00:00", "1 02/29/2003", "1 05/14/67539 10:00:00",
                                    "1 05/14/2003 24:00:00", "1 05/14/2003 13:00 PM", "1 05/14/2003 10:00:00 or so",
                                    "1 99999999", "2 42N", "3 nan", "4 1e39", "6 --1", "7 32768", "9 one"}) {
        PutTable("GPSData", {First, First});
        Database.Records[1][static_cast<std::size_t>(field[0] - '1')] = field.substr(2);
        EXPECT_EQ(PlaceOf(ErrorNumber::TypeMismatch, read), "\"" + field.substr(2) +
                                                                "\" cannot be converted.\n/f/GPSData.mdb, record 2, "
                                                                "field " +
                                                                field[0]);
    }
    PutTable("GPSData", {{"05/14/2003", "42.1"}});
    EXPECT_THAT(PlaceOf(ErrorNumber::TypeMismatch, read), testing::HasSubstr("only 2 fields"));
}

TEST_F(DeviceLogTest, SummaryCountsEveryRecord) {
    PutTable("GPSData", {First, Second, {"05/14/2003 22:00:16", "", "", "", "", "", "", "", "3"}, Second});
    EXPECT_EQ(Told(*ReadLogSummary(Sources, FormatOf(GpsHandheld), Database.Path)),
              "|2003-05-14T22:00:00|2003-05-14T22:00:17|3");
    Database.Records.assign(1000, Second);
    int questions = 0;
    EXPECT_FALSE(ReadLogSummary(Sources, FormatOf(GpsHandheld), Database.Path, [&] { return ++questions < 3; }));
}

TEST_F(DeviceLogTest, DeviceDatabasesInTheirContainer) {
    // The header in full: name, attributes, version, three times, two numbers, two blocks, type, creator, two more.
    std::string literal("GPSData\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0", 32);
    literal += std::string("\0\x08\0\1\xB1\x22\x33\x44\xB1\x22\x33\x44\0\0\0\0\0\0\0\x07\0\0\0\0\0\0\0\0", 28);
    literal += std::string("DATARoam\0\0\0\x09\0\0\0\0\0\1", 18);
    literal += std::string("\0\0\0\x58\x40\0\0\1\0\0", 10);  // the entry of record 1 at 88, and two bytes of padding
    literal += Record({"05/14/2003 22:00:17", "42.5", "83.5", "12", "90", "1.5", "7", "1", "2"}).substr(1);
    const FieldLog log = GpsLog(literal);
    ASSERT_EQ(log.PointCount(), 1u);
    EXPECT_EQ(log.Gps[0], (GpsPoint{2, 0, 12, 90, log.Gps[0].DateTime, 42.5, -83.5, 7, 1.5, 1, -1, -1}));
    EXPECT_EQ(log.Name + log.Extension, "Any.pdb");
    Sources.HasSignedCoordinates = true;
    EXPECT_EQ(GpsLog(literal).Gps[0].Longitude, 83.5);

    EXPECT_EQ(GpsLog(Palm("GPSData", {})).PointCount(), 0U);
    EXPECT_EQ(Told(Summary(GpsHandheld, Palm("GPSData", {}), "/f/Empty.pdb")), "|||0");
    const std::string deleted(1, '\x80');
    EXPECT_EQ(GpsLog(Palm("GPSData", {Record(Second), deleted, Record(Second, '\x10')})).PointCount(), 2u);
}

TEST_F(DeviceLogTest, DamagedContainersAreRefused) {
    const std::string whole = Palm("GPSData", {Record(First), Record(Second)});
    const auto errorOf = [&](const std::string& bytes) { return ErrorOf([&] { GpsLog(bytes); }); };
    EXPECT_FALSE(errorOf(whole));
    const std::size_t second = whole.size() - (Record(Second).size() - 1);  // where the second record begins
    for (std::size_t length = 0; length < second; ++length)
        EXPECT_EQ(errorOf(whole.substr(0, length)), ErrorNumber::TypeMismatch) << length << " bytes";
    for (std::size_t length = second; length < whole.size(); ++length) {
        const auto log = Summary(GpsHandheld, whole.substr(0, length), "/f/G.pdb");
        EXPECT_EQ(Told(log), "|2003-05-14T22:00:00|2003-05-14T22:00:00|0")
            << length << " bytes: the first record is whole";
        EXPECT_EQ(log.DroppedBytes, length - second);
        EXPECT_EQ(log.MissingRecords, 1U);
    }
    const auto with = [&](std::size_t at, const std::string& bytes) {
        return std::string(whole).replace(at, bytes.size(), bytes);
    };
    for (const std::string& damaged :
         {with(0, "gpsdata"), with(7, "s"), with(33, "\1"), with(75, "\1"), with(76, "\xFF\xFF"), with(77, "\3"),
          with(78, BigEndian(93, 4)), with(86, BigEndian(whole.size() + 1, 4)), with(86, BigEndian(90, 4)),
          with(52, BigEndian(5000, 4)), with(56, BigEndian(80, 4)), whole + "x",
          Palm("GPSData", {std::string(70000, '\0')})})
        EXPECT_EQ(errorOf(damaged), ErrorNumber::TypeMismatch);
    EXPECT_ERROR(FileNotFound, ReadFieldLog(Sources, FormatOf(GpsHandheld), "/f/None.pdb"));
}

TEST_F(DeviceLogTest, KindByTheTableItHas) {
    const auto kindOf = [&](const std::string& bytes) {
        Files.PutText("/f/O.pdb", bytes);
        return KindIn("/f/O.pdb");
    };
    EXPECT_EQ(kindOf(Palm("OBDData", {})), ObdHandheld);
    EXPECT_EQ(kindOf(Palm("Contacts", {})), std::nullopt);
    EXPECT_ERROR(TypeMismatch, kindOf(Palm("OBDData", {std::string(1, '\0')}))) << "damaged";
    EXPECT_ERROR(FileNotFound, KindIn("/f/None.pdb"));
    PutTable("GPSData", {First});
    EXPECT_EQ(KindIn("/f/L.mdb"), std::nullopt);
    EXPECT_EQ(KindIn(Database.Path), GpsHandheld);
}

}  // namespace
}  // namespace vantor
