#include "gpsobd/DeviceLog.h"

#include <gtest/gtest.h>

#include "fakes/FakePorts.h"
#include "fakes/ThrowsError.h"
#include "gpsobd/PalmDatabase.h"

namespace vantor {
namespace {

using Rows = std::vector<std::vector<std::string>>;

class FakeRecords : public RecordSet {
public:
    explicit FakeRecords(Rows rows) : rows_(std::move(rows)) {}
    int FieldCount() const override { return rows_.empty() ? 9 : static_cast<int>(rows_.front().size()); }
    bool Next() override { return ++at_ <= rows_.size(); }
    std::string Text(int position) const override { return rows_[at_ - 1][static_cast<std::size_t>(position)]; }

private:
    Rows rows_;
    std::size_t at_ = 0;
};

class FakeDatabase : public DatabaseEngine {
public:
    std::map<std::string, Rows> Tables;
    std::unique_ptr<RecordSet> OpenTable(const std::string&, const std::string& table) const override {
        const auto found = Tables.find(table);
        if (found == Tables.end()) throw NoSuchTable("no table");
        return std::make_unique<FakeRecords>(found->second);
    }
};

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

std::string Record(char attributes, const std::vector<std::string>& fields) {
    std::string record(1, attributes);
    for (const std::string& field : fields) record += field + '\0';
    return record;
}

const std::vector<std::string> First{"05/14/2003 22:00:00", "42.1", "83.4", "5.1", "124.7", "2.4", "6", "0", "0"};
const std::vector<std::string> Second{"05/14/2003 22:00:17", "42.2", "-83.25", "26.1", "", "", "", "", "1"};

class DeviceLogTest : public testing::Test {
protected:
    MemoryFileSystem Files;
    FakeDatabase Database;
    PalmDatabase Device{Files};
    FixedClock Time;
    LogSources Sources{Files, Database, Device, Time};

    FieldLog GpsLog(Rows rows) {
        Database.Tables["GPSData"] = std::move(rows);
        return ReadDeviceLog(Sources, LogKind::GpsHandheld, "/f/GPSData.mdb");
    }
    /// The place that the error of reading these rows names.
    std::string ErrorPlace(Rows rows) {
        try {
            GpsLog(std::move(rows));
        } catch (const RunTimeError& error) {
            EXPECT_EQ(error.Number(), ErrorNumber::TypeMismatch);
            return error.Place();
        }
        return {};
    }
};

TEST_F(DeviceLogTest, GpsFieldsByPosition) {
    const FieldLog log = GpsLog({First,
                                 {"5/14/2003 10:00:17 PM", "42.1001", "83.4", "26.1", "26.6", "0.9", "4", "3", "2"},
                                 {"", "", "", "", "", "", "", "", "-4"},
                                 {"12:00:00 AM", "42", "1.0", "-1", "0", "1e1", "+5", "2.5", "1"},
                                 {"37755.5", "42", "1.5", "0", "0", "0", "3.5", "0", "1"},
                                 {"12:30:00 PM", "", "", "", "", "", "", "", "1"}});
    EXPECT_EQ(log.Kind, LogKind::GpsHandheld);
    EXPECT_EQ(log.Folder + "|" + log.Name + "|" + log.Extension, "/f/|GPSData|.mdb");
    EXPECT_EQ(log.GpsHeader.StudyName + log.GpsHeader.BaseName, "GPSDataGPSData");
    EXPECT_FALSE(log.StudyDate);
    EXPECT_EQ(log.Prefix, (LogPrefix{2, 0, 0, Date{37755}, "XX"}));

    ASSERT_EQ(log.Points.size(), 5u) << "run 0 is left out";
    EXPECT_EQ(IsoDateTime(log.Points[0].Gps.DateTime), "2003-05-14T22:00:17");
    GpsPoint first{2, 0, 26.1f, 26.6f, log.Points[0].Gps.DateTime, 42.1001, -83.4, 4, 0.9f, 3, -1, -1};
    EXPECT_EQ(log.Points[0].Gps, first);
    EXPECT_EQ(log.Points[1].Gps, (GpsPoint{-4, 0, -1, -1, Date{}, -1, -1, 0, 0, 0, -1, -1})) << "empty fields";
    EXPECT_EQ(log.Points[2].Gps, (GpsPoint{1, 0, -1, 0, Date{}, 42, 1.0, 5, 10, 2, -1, -1})) << "1.0 stays east";
    EXPECT_EQ(log.Points[3].Gps, (GpsPoint{1, 0, 0, 0, Date{37755.5}, 42, -1.5, 4, 0, 0, -1, -1}));
    EXPECT_EQ(log.Points[4].Gps.DateTime, TimeOf(12, 30));
}

TEST_F(DeviceLogTest, ObdFieldsByPosition) {
    Database.Tables["OBDData"] = {{"05/14/2003 22:00:00", "5.1", "936", "86.7", "36", "188", "0.11", "4", "1"},
                                  {"", "", "", "", "", "", "", "", "2"}};
    const FieldLog log = ReadDeviceLog(Sources, LogKind::ObdHandheld, "/f/OBDData.MDB");
    EXPECT_EQ(log.ObdHeader.StudyName + log.ObdHeader.BaseName + log.Extension, "OBDDataOBDData.mdb");
    ASSERT_EQ(log.Points.size(), 2u);
    const Date time{DateOf(2003, 5, 14).Days + TimeOf(22, 0).Days};
    const ObdPoint first{1, time, 5.1f, 936, 86.7f, 36, 188, 0, 0, 0.11f, 4, 0, 0, "", "", ""};
    EXPECT_EQ(log.Points[0].Obd, first);
    EXPECT_EQ(log.Points[1].Obd, (ObdPoint{2, Date{}, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, "", "", ""}));
}

TEST_F(DeviceLogTest, AFieldThatDoesNotConvertNamesFileAndRecord) {
    const auto with = [](std::size_t position, const std::string& text) {
        Rows rows{First, First};
        rows[1][position] = text;
        return rows;
    };
    for (const auto& [position, text] :
         std::vector<std::pair<std::size_t, std::string>>{{0, "14.05.2003"},
                                                          {0, "13/01/2003 10:00:00"},
                                                          {0, "02/29/2003"},
                                                          {0, "05/14/67539 10:00:00"},
                                                          {0, "05/14/2003 24:00:00"},
                                                          {0, "05/14/2003 13:00 PM"},
                                                          {0, "05/14/2003 10:00:00 or so"},
                                                          {0, "99999999"},
                                                          {1, "42N"},
                                                          {2, "nan"},
                                                          {3, "1e39"},
                                                          {5, "--1"},
                                                          {6, "32768"},
                                                          {8, "one"}}) {
        const std::string place = ErrorPlace(with(position, text));
        EXPECT_EQ(place, "\"" + text + "\" cannot be converted.\n/f/GPSData.mdb, record 2, field " +
                             std::to_string(position + 1));
    }
    EXPECT_NE(ErrorPlace({{"05/14/2003", "42.1"}}).find("only 2 fields"), std::string::npos);
}

TEST_F(DeviceLogTest, SummaryCountsEveryRecord) {
    Database.Tables["GPSData"] = {First, Second, {"05/14/2003 22:00:16", "", "", "", "", "", "", "", "3"}, Second};
    const auto summary = ReadDeviceSummary(Sources, LogKind::GpsHandheld, "/f/GPSData.mdb", {});
    ASSERT_TRUE(summary);
    EXPECT_FALSE(summary->StudyDate);
    EXPECT_EQ(IsoDateTime(*summary->StartTime), "2003-05-14T22:00:00");
    EXPECT_EQ(IsoDateTime(*summary->EndTime), "2003-05-14T22:00:17");
    EXPECT_EQ(summary->Runs, 3);

    EXPECT_FALSE(ReadDeviceSummary(Sources, LogKind::GpsHandheld, "/f/GPSData.mdb", [] { return false; }));
    Database.Tables["GPSData"] = Rows(1000, Second);
    int questions = 0;
    EXPECT_FALSE(ReadDeviceSummary(Sources, LogKind::GpsHandheld, "/f/GPSData.mdb", [&] { return ++questions < 3; }));
    Database.Tables["GPSData"] = {};
    const auto empty = ReadDeviceSummary(Sources, LogKind::GpsHandheld, "/f/GPSData.mdb", {});
    EXPECT_TRUE(empty && !empty->StartTime && !empty->EndTime && empty->Runs == 0);
}

TEST_F(DeviceLogTest, DeviceDatabasesInTheirContainer) {
    // The header in full: name, attributes, version, three times, two numbers, two blocks, type, creator, two more.
    std::string literal("GPSData\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0", 32);
    literal += std::string("\0\x08\0\1\xB1\x22\x33\x44\xB1\x22\x33\x44\0\0\0\0\0\0\0\x07\0\0\0\0\0\0\0\0", 28);
    literal += std::string("DATARoam\0\0\0\x09\0\0\0\0\0\1", 18);
    literal += std::string("\0\0\0\x58\x40\0\0\1\0\0", 10);  // the entry of record 1 at 88, and two bytes of padding
    literal += Record('\0', {"05/14/2003 22:00:17", "42.5", "83.5", "12", "90", "1.5", "7", "1", "2"}).substr(1);
    Files.PutText("/f/Any.PDB", literal);
    const FieldLog log = ReadDeviceLog(Sources, LogKind::GpsHandheld, "/f/Any.PDB");
    ASSERT_EQ(log.Points.size(), 1u);
    EXPECT_EQ(log.Points[0].Gps, (GpsPoint{2, 0, 12, 90, log.Points[0].Gps.DateTime, 42.5, -83.5, 7, 1.5, 1, -1, -1}));
    EXPECT_EQ(log.Name + log.Extension, "Any.pdb");
    Sources.HasSignedCoordinates = true;
    EXPECT_EQ(ReadDeviceLog(Sources, LogKind::GpsHandheld, "/f/Any.PDB").Points[0].Gps.Longitude, 83.5);

    Files.PutText("/f/Empty.pdb", Palm("GPSData", {}));
    EXPECT_TRUE(ReadDeviceLog(Sources, LogKind::GpsHandheld, "/f/Empty.pdb").Points.empty());

    Files.PutText("/f/Deleted.pdb",
                  Palm("GPSData", {Record('\0', Second), std::string(1, '\x80'), Record('\x10', Second)}));
    EXPECT_EQ(ReadDeviceLog(Sources, LogKind::GpsHandheld, "/f/Deleted.pdb").Points.size(), 2u);
}

TEST_F(DeviceLogTest, DamagedContainersAreRefused) {
    const std::string whole = Palm("GPSData", {Record('\0', First), Record('\0', Second)});
    const auto refused = [&](const std::string& bytes) {
        Files.PutText("/f/G.pdb", bytes);
        return ErrorOf([&] { ReadDeviceLog(Sources, LogKind::GpsHandheld, "/f/G.pdb"); });
    };
    EXPECT_FALSE(refused(whole));
    const std::size_t second = whole.size() - (Record('\0', Second).size() - 1);  // where the second record begins
    for (std::size_t length = 0; length < second; ++length)
        EXPECT_EQ(refused(whole.substr(0, length)), ErrorNumber::TypeMismatch) << length << " bytes";
    for (std::size_t length = second; length < whole.size(); ++length) {
        Files.PutText("/f/G.pdb", whole.substr(0, length));
        const auto log = ReadDeviceSummary(Sources, LogKind::GpsHandheld, "/f/G.pdb", {});
        EXPECT_EQ(IsoDateTime(*log->EndTime), "2003-05-14T22:00:00") << length << " bytes: the first record is whole";
        EXPECT_EQ(log->DroppedBytes, length - second);
        EXPECT_EQ(log->MissingRecords, 1U);
    }
    const auto with = [&](std::size_t at, const std::string& bytes) {
        return std::string(whole).replace(at, bytes.size(), bytes);
    };
    for (const std::string& damaged :
         {with(0, "gpsdata"), with(7, "s"), with(33, "\1"), with(75, "\1"), with(76, "\xFF\xFF"), with(77, "\3"),
          with(78, BigEndian(93, 4)), with(86, BigEndian(whole.size() + 1, 4)), with(86, BigEndian(90, 4)),
          with(52, BigEndian(5000, 4)), with(56, BigEndian(80, 4)), whole + "x",
          Palm("GPSData", {std::string(70000, '\0')})})
        EXPECT_EQ(refused(damaged), ErrorNumber::TypeMismatch);
    EXPECT_ERROR(FileNotFound, ReadDeviceLog(Sources, LogKind::GpsHandheld, "/f/None.pdb"));
}

TEST_F(DeviceLogTest, KindByTheTableItHas) {
    Files.PutText("/f/O.pdb", Palm("OBDData", {}));
    Files.PutText("/f/X.pdb", Palm("Contacts", {}));
    EXPECT_EQ(DeviceLogKind(Sources, "/f/O.pdb"), LogKind::ObdHandheld);
    EXPECT_EQ(DeviceLogKind(Sources, "/f/X.pdb"), std::nullopt);
    Files.PutText("/f/O.pdb", Palm("OBDData", {std::string(1, '\0')}));
    EXPECT_ERROR(TypeMismatch, DeviceLogKind(Sources, "/f/O.pdb")) << "damaged";
    EXPECT_ERROR(FileNotFound, DeviceLogKind(Sources, "/f/None.pdb"));
    EXPECT_EQ(DeviceLogKind(Sources, "/f/L.mdb"), std::nullopt);
    Database.Tables["GPSData"] = {};
    EXPECT_EQ(DeviceLogKind(Sources, "/f/L.mdb"), LogKind::GpsHandheld);
}

}  // namespace
}  // namespace vantor
