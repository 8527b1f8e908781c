#include "platform/MdbDatabase.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "platform/DiskFolder.h"

namespace vantor {
namespace {

const std::string GpsPath = std::string(VANTOR_TEST_DATA) + "gps.mdb";
const std::string ObdPath = std::string(VANTOR_TEST_DATA) + "obd.mdb";

class MdbDatabaseTest : public testing::Test, protected DiskFolder {
protected:
    MdbDatabase Database{Disk};

    /// The records of a table, the fields of each parted by "|".
    std::vector<std::string> Read(const std::string& path, const std::string& table) const {
        const auto records = Database.OpenTable(path, table);
        std::vector<std::string> all;
        while (records->Next()) {
            std::string& record = all.emplace_back(records->Text(0));
            for (int i = 1; i < records->FieldCount(); ++i) record += "|" + records->Text(i);
        }
        EXPECT_FALSE(records->Next());
        return all;
    }
    /// The path of a file of those bytes.
    std::string Stored(const std::string& bytes) const {
        std::ofstream(At("stored.mdb"), std::ios::binary) << bytes;
        return At("stored.mdb");
    }
};

// The values are those that mdb-export writes, singles and doubles in full digits.
TEST_F(MdbDatabaseTest, ReadsBothFormats) {
    const auto gps = Read(GpsPath, "gpsdata");
    ASSERT_EQ(gps.size(), 64u);
    EXPECT_EQ(gps[0],
              "05/14/2003 22:00:00|42.100000000000001|-83.400000000000006|5.0999999|124.699997|2.4000001|6|0|0");
    EXPECT_EQ(gps[10], "05/14/2003 22:00:26|42.100999999999999|83.399000000000001|-1|96.4000015|2.0999999|8|0|1");
    EXPECT_EQ(gps[34], "05/15/2003 00:00:01|42.103400000000001|-83.396600000000007|56.5|331.399994|1.70000005|7|1|2");
    EXPECT_EQ(gps[63],
              "05/15/2003 01:00:17|42.106299999999997|-83.393699999999995|38.7999992|240.600006|1.20000005|4|0|3");
    const auto obd = Read(ObdPath, "OBDData");
    ASSERT_EQ(obd.size(), 64u);
    EXPECT_EQ(obd[0], "05/14/2003 22:00:00|5.0999999999999996|936|86.6999969|36|188|0.11|0|0");
    EXPECT_EQ(obd[21], "05/14/2003 23:59:49|33.399999999999999|1423|22.5|75|187|1.02|1|2");
    EXPECT_EQ(obd[63], "05/15/2003 01:00:17|38.799999999999997|2151|85.4000015|72|166|1.59|0|3");
}

TEST_F(MdbDatabaseTest, ReadsDecimals) {
    // The latitudes are made decimals of 18 digits, 4 of them behind the point; the first of them is -42.1.
    std::string bytes = ContentsOf(GpsPath);
    const auto at = std::ranges::find_if(bytes, [](const char& column) {  // the second one, a double of 8 bytes
        return column == 7 && (&column)[5] == 1 && (&column)[23] == 8 && (&column)[24] == 0;
    });
    ASSERT_NE(at, bytes.end());
    at[0] = '\x10';
    at[11] = 18;
    at[12] = 4;
    at[23] = 17;
    const double latitude = 42.1;
    const std::string stored(reinterpret_cast<const char*>(&latitude), sizeof latitude);
    bytes.replace(bytes.find(stored), 17, std::string("\x80\0\0\0\0\0\0\0\0\0\0\0\0\x88\x6C\x06\0", 17));
    const auto records = Database.OpenTable(Stored(bytes), "GPSData");
    ASSERT_TRUE(records->Next());
    EXPECT_EQ(std::stod(records->Text(1)), -42.1);
}

TEST_F(MdbDatabaseTest, RefusesWhatItCannotRead) {
    const auto open = [&](const std::string& path, const char* table = "GPSData") { Database.OpenTable(path, table); };
    const std::string whole = ContentsOf(GpsPath);
    EXPECT_ERROR(FileNotFound, open(At("none.mdb")));
    EXPECT_ERROR(TypeMismatch, open(GpsPath, "OBDData"));
    EXPECT_ERROR(TypeMismatch, open(GpsPath, "Tables")) << "an entry that is no table";
    for (const std::string& wrong : {std::string(whole).replace(4, 15, "Standard ACE DB"), std::string("some text"),
                                     std::string(whole).replace(20, 1, "\2") /* of a later engine */, whole + "x"})
        EXPECT_ERROR(TypeMismatch, open(Stored(wrong)));
    // Row 2 of page 3 is the map of the table's pages; it ends where row 1 begins, at 0xF31. This one is cut short.
    EXPECT_ERROR(TypeMismatch,
                 Read(Stored(std::string(whole).replace(3 * 4096 + 14 + 2 * 2, 2, "\x2F\x0F")), "GPSData"));

    const auto records = Database.OpenTable(GpsPath, "GPSData");
    EXPECT_ERROR(SubscriptOutOfRange, records->Text(0)) << "before the first record";
    ASSERT_TRUE(records->Next());
    EXPECT_ERROR(SubscriptOutOfRange, records->Text(9));
}

/// What a reader may make of damaged bytes: records, or an error 13; nothing is printed.
TEST_F(MdbDatabaseTest, SurvivesDamageWithoutAWord) {
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    int refused = 0;
    const auto read = [&](const std::string& path, const std::string& table) -> std::size_t {
        try {
            return Read(path, table).size();
        } catch (const RunTimeError& error) {
            EXPECT_EQ(error.Number(), ErrorNumber::TypeMismatch);
            ++refused;
            return 0;
        }
    };
    for (const auto& [original, table] : {std::pair{GpsPath, "GPSData"}, std::pair{ObdPath, "OBDData"}}) {
        const std::string whole = ContentsOf(original);
        for (std::size_t length = 0; length < whole.size(); length += length < 4096 ? 256 : 1024)
            EXPECT_EQ(read(Stored(whole.substr(0, length)), table) % 64, 0u) << length << " bytes of " << original;

        const std::string path = Stored(whole);
        std::fstream file(path, std::ios::binary | std::ios::in | std::ios::out);
        const auto patch = [&](std::size_t at, const std::string& bytes) {
            file.seekp(static_cast<std::streamoff>(at));
            file << bytes << std::flush;
        };
        for (std::size_t at = 20; at + 2 < whole.size(); at += at % 2048 < 256 ? 3 : 127) {
            for (const char value : {'\0', '\xFF'}) {
                patch(at, std::string(2, value));
                read(path, table);
            }
            patch(at, whole.substr(at, 2));
        }
        EXPECT_EQ(read(path, table), 64u);
    }
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_GT(refused, 100);
}

}  // namespace
}  // namespace vantor
