#include "platform/SpreadsheetWriter.h"

#include <gmock/gmock.h>
#include <gsf/gsf-infile-msole.h>
#include <gsf/gsf-input-memory.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <nlohmann/json.hpp>

#include "core/Windows1252.h"
#include "platform/DiskFolder.h"
#include "platform/GObjectPointer.h"

namespace vantor {
namespace {

using nlohmann::json;
using testing::ElementsAre, testing::ElementsAreArray;

const std::string Greek = "Οδός Πανεπιστημίου";
const std::string Emoji = "🚗";

std::string Repeated(const std::string& text, std::size_t count) {
    std::string all;
    for (std::size_t i = 0; i < count; ++i) all += text;
    return all;
}

class SpreadsheetWriterTest : public testing::TestWithParam<WorkbookFormat>, protected DiskFolder {
protected:
    SpreadsheetWriterTest() { setenv("TMPDIR", Folder.c_str(), 1); }
    ~SpreadsheetWriterTest() override { unsetenv("TMPDIR"); }

    /// What an independent reader finds in the workbook; tests/platform/read_workbook.py tells its shape.
    json Read(const std::vector<Sheet>& sheets, WorkbookFormat format) {
        const std::string file = At(format == WorkbookFormat::Xls ? "a.xls" : "a.xlsx");
        WriteFile(Disk, file, Writer.Encode(sheets, format), AsItStands(Disk, file));
        const std::string script = VANTOR_PYTHON " -B '" VANTOR_TEST_DATA "../platform/read_workbook.py' '";
        EXPECT_EQ(std::system((script + file + "' > " + At("read.json")).c_str()), 0);
        return json::parse(std::ifstream(At("read.json")));
    }
    json Read(const std::vector<Sheet>& sheets) { return Read(sheets, GetParam()); }

    const SpreadsheetWriter Writer;
};
INSTANTIATE_TEST_SUITE_P(Formats, SpreadsheetWriterTest, testing::Values(WorkbookFormat::Xls, WorkbookFormat::Xlsx));

TEST_P(SpreadsheetWriterTest, ReadersFindWhatWasWritten) {
    std::vector<std::byte> printable;
    for (int byte = 0x20; byte <= 0xFF; ++byte) printable.push_back(static_cast<std::byte>(byte));
    const std::string all1252 = Utf8FromWindows1252(printable);
    const Date evening{DateOf(2026, 11, 21).Days + TimeOf(19, 5, 7).Days};
    const Sheet runs{
        "Runs",
        {{"Name", "General", 20}, {"Day", "mm/dd/yy"}, {"At", "mm/dd/yyyy hh:mm:ss", 17}, {"Speed", "0.0"}},
        {{"R1", DateOf(2008, 3, 14), evening, -12.25},
         {Greek + Emoji, DateOf(1900, 3, 1), DateOf(9999, 12, 31), 0.1},
         {all1252, std::monostate{}, TimeOf(7, 30), 1e300},
         {"=1+1", "", Date{61.5}, -1e-300},
         {},
         {" @x \t\n_x0041_ ", DateOf(2000, 2, 29), std::monostate{}, 0.0},
         {"'x", 12.0}}};
    const Sheet numbers{
        "Numbers", {{"N", "0.000"}, {"D"}}, {{1.0, DateOf(2008, 3, 14)}, {4294967296.0}, {123456789.125}}};
    const json sheets = Read({runs, numbers, {"Heads only", {{"A"}, {"B"}}, {}}});

    ASSERT_EQ(sheets.size(), 3U);
    const auto date = [](const char* text) { return json{{"date", text}}; };
    const json rows[] = {{"Name", "Day", "At", "Speed"},
                         {"R1", date("2008-03-14T00:00:00"), date("2026-11-21T19:05:07"), -12.25},
                         {Greek + Emoji, date("1900-03-01T00:00:00"), date("9999-12-31T00:00:00"), 0.1},
                         {all1252, nullptr, json{{"time", "07:30:00"}}, 1e300},
                         {"=1+1", nullptr, date("1900-03-01T12:00:00"), -1e-300},
                         json::array(),
                         {" @x \t\n_x0041_ ", date("2000-02-29T00:00:00"), nullptr, 0.0},
                         // a number in a column of dates
                         {"'x", date("1900-01-12T00:00:00")}};
    EXPECT_EQ(sheets[0]["rows"], json(rows));
    EXPECT_EQ(sheets[0]["formats"], json({"General", "mm/dd/yy", "mm/dd/yyyy hh:mm:ss", "0.0"}));
    EXPECT_EQ(sheets[0]["widths"], json({20, 10, 17, 10}));
    EXPECT_EQ(sheets[1]["rows"], json::array({json::array({"N", "D"}), json::array({1.0, date("2008-03-14T00:00:00")}),
                                              json::array({4294967296.0}), json::array({123456789.125})}));
    EXPECT_EQ(sheets[1]["formats"], json({"0.000", "mm/dd/yy"}));
    EXPECT_EQ(sheets[2]["rows"], json::array({json::array({"A", "B"})}));
    for (const json& sheet : sheets) {
        EXPECT_TRUE(sheet["boldHeads"]);
        EXPECT_EQ(sheet["frozenRows"], 1);
        EXPECT_EQ(sheet["headsOnPages"], true);
    }
}

TEST_P(SpreadsheetWriterTest, HoldsTheMostRowsAndManyTexts) {
    Sheet sheet{"Log", {{"Text"}, {"Number"}}, {}};
    json expected = json::array({json::array({"Text", "Number"})});
    for (int i = 0; i < 65535; ++i) {
        const int text = i % 40000;
        const std::string tail = text % 7 == 0 ? Greek : text % 11 == 0 ? Repeated(Emoji, text % 50) : "Straße";
        sheet.Rows.push_back({"Point " + std::to_string(text) + tail, i / 8.0});
        expected.push_back(json::array({"Point " + std::to_string(text) + tail, i / 8.0}));
    }
    EXPECT_TRUE(Read({sheet})[0]["rows"] == expected);
}

TEST_P(SpreadsheetWriterTest, LeavesOutWhatACellCannotHold) {
    const double infinite = std::numeric_limits<double>::infinity();
    const Sheet sheet{"Odd",
                      {{"A", "mm/dd/yy"}, {"B"}},
                      {{std::nan(""), infinite},
                       {Date{-700000.0}, Date{infinite}},
                       {DateOf(1850, 1, 2), DateOf(1900, 2, 28)},
                       {Repeated("x", 40000), Repeated("x", 32766) + Emoji},
                       {std::string("a\0b\r\x01"
                                    "c",
                                    6),
                        "a\xFF\xED\xA0\x80\xEF\xBF\xBF"
                        "b"}}};
    const json rows[] = {{"A", "B"},
                         json::array(),
                         json::array(),
                         {"1850-01-02T00:00:00", "1900-02-28T00:00:00"},
                         {Repeated("x", 32767), Repeated("x", 32766)},
                         {"a b  c", "a\uFFFD\uFFFD\uFFFDb"}};
    EXPECT_EQ(Read({sheet})[0]["rows"], json(rows));
}

TEST_P(SpreadsheetWriterTest, NamesSheetsAsSpreadsheetsAllow) {
    std::vector<Sheet> sheets;
    for (const char* name :
         {"", "A[b]:*?/\\c", "runs", "Runs", "RUNS", "'x'", "history", "  ", "A name of more than 31 characters",
          "A name of more than 31 characters too", "Οδός Οδός Οδός Οδός Οδός Οδός 🚗"})
        sheets.push_back({name, {}, {}});
    std::vector<std::string> names;
    for (const json& sheet : Read(sheets)) names.push_back(sheet["name"]);
    EXPECT_THAT(names, ElementsAre("Sheet1", "A_b______c", "runs", "Runs (2)", "RUNS (3)", "_x_", "history_", "Sheet8",
                                   "A name of more than 31 characte", "A name of more than 31 char (2)",
                                   "Οδός Οδός Οδός Οδός Οδός Οδός "));
    names.clear();
    for (const json& sheet : Read({})) names.push_back(sheet["name"]);
    EXPECT_THAT(names, ElementsAre("Sheet1"));
}

TEST_P(SpreadsheetWriterTest, RefusesMoreThanTheFormatHolds) {
    const bool isXls = GetParam() == WorkbookFormat::Xls;
    Sheet sheet{"Log", {{"A"}}, {}};
    sheet.Rows.resize(isXls ? 65536 : 1048576);
    try {
        Writer.Encode({{"First", {}, {}}, sheet}, GetParam());
        ADD_FAILURE();
    } catch (const RunTimeError& error) {
        EXPECT_EQ(error.Number(), ErrorNumber::Overflow);
        EXPECT_EQ(error.Place(), isXls ? "The sheet \"Log\" has 65536 rows below its heads, but an .xls file holds "
                                         "65535. Choose .xlsx or .csv instead."
                                       : "The sheet \"Log\" has 1048576 rows below its heads, but an .xlsx file holds "
                                         "1048575. Choose .csv instead.");
    }
    const std::size_t columns = isXls ? 256 : 16384;
    Sheet wide{"Wide", {columns, SheetColumn{"H"}}, {{}}};
    wide.Rows[0].assign(columns, 2.0);
    EXPECT_EQ(Read({wide})[0]["rows"][1], json(std::vector<double>(columns, 2.0)));
    wide.Columns.emplace_back();
    EXPECT_ERROR(Overflow, Writer.Encode({wide}, GetParam()));
    EXPECT_ERROR(SubscriptOutOfRange, Writer.Encode({{"Short", {{"A"}}, {{1.0, 2.0}}}}, GetParam()));
}

TEST_F(SpreadsheetWriterTest, LeavesNothingInTheTemporaryFolder) {
    Sheet sheet{"Log", {{"A"}}, {}};
    for (int i = 0; i < 5000; ++i) sheet.Rows.push_back({"Point " + std::to_string(i * 7919 % 10007)});
    Writer.Encode({sheet}, WorkbookFormat::Xlsx);
    EXPECT_EQ(Found(), Texts());
    // The disk takes no more at once, or in the midst of the rows.
    for (const rlim_t most : {10, 100000}) {
        const auto error = ErrorWithFilesUpTo(most, [&] { Writer.Encode({sheet}, WorkbookFormat::Xlsx); });
        EXPECT_EQ(error, ErrorNumber::DiskFull) << most;
        EXPECT_EQ(Found(), Texts());
    }
    setenv("TMPDIR", "/tmp/none/at/all", 1);
    EXPECT_ERROR(PathNotFound, Writer.Encode({sheet}, WorkbookFormat::Xlsx));
    EXPECT_EQ(ErrorOf([&] { Writer.Encode({sheet}, WorkbookFormat::Xls); }), std::nullopt);
}

// The records of an .xls file, as its description has them.

struct BiffRecord {
    std::size_t Offset;
    int Id;
    std::vector<unsigned char> Data;

    /// The four-byte number there.
    std::uint32_t Long(std::size_t at) const {
        return Data[at] | Data[at + 1] << 8 | Data[at + 2] << 16 | static_cast<std::uint32_t>(Data[at + 3]) << 24;
    }
};

std::vector<BiffRecord> RecordsOf(const std::vector<std::byte>& file) {
    const GObjectPointer<GsfInput> bytes(
        gsf_input_memory_new(reinterpret_cast<const guint8*>(file.data()), static_cast<gsf_off_t>(file.size()), FALSE));
    const GObjectPointer<GsfInfile> container(gsf_infile_msole_new(bytes.get(), nullptr));
    const GObjectPointer<GsfInput> stream(gsf_infile_child_by_name(container.get(), "Workbook"));
    std::vector<BiffRecord> records;
    while (gsf_input_remaining(stream.get()) > 0) {
        const auto offset = static_cast<std::size_t>(gsf_input_tell(stream.get()));
        const guint8* head = gsf_input_read(stream.get(), 4, nullptr);
        const int id = head[0] | head[1] << 8;
        const std::size_t length = head[2] | head[3] << 8;
        const guint8* data = length == 0 ? head : gsf_input_read(stream.get(), length, nullptr);
        records.push_back({offset, id, {data, data + length}});
    }
    return records;
}

constexpr int Bof = 0x809, Sst = 0xFC, Continue = 0x3C, BoundSheet = 0x85, Number = 0x203, LabelSst = 0xFD;

/// The identifiers, the same one after the other once, all cells as numbers.
std::vector<int> Order(const std::vector<BiffRecord>& records) {
    std::vector<int> order;
    for (const BiffRecord& record : records) {
        const int id = record.Id == LabelSst ? Number : record.Id;
        if (order.empty() || order.back() != id) order.push_back(id);
    }
    return order;
}

TEST_F(SpreadsheetWriterTest, XlsRecordsStandInOrder) {
    Sheet first{"First", {{"A", "0.0"}, {"B"}}, {}};
    for (int i = 0; i < 40; ++i) first.Rows.push_back({"same", 1.0});
    const auto file = Writer.Encode({first, {"Second", {{"A"}}, {}}}, WorkbookFormat::Xls);
    EXPECT_EQ(std::vector(file.begin(), file.begin() + 8), BytesOf("\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1"));

    const auto records = RecordsOf(file);
    EXPECT_THAT(Order(records),
                ElementsAre(Bof, 0x42, 0x3D, 0x22, 0x31, 0x41E, 0xE0, 0x293, BoundSheet, 0x1AE, 0x17, 0x18, Sst,
                            0x0A,  // the workbook
                            Bof, 0x81, 0xA1, 0x7D, 0x200, 0x208, Number, 0x208, Number, 0x23E, 0x41, 0x1D, 0x0A, Bof,
                            0x81, 0xA1, 0x7D, 0x200, 0x208, Number, 0x23E, 0x41, 0x1D, 0x0A));
    std::vector<std::size_t> starts;
    std::vector<std::size_t> told;
    for (const BiffRecord& record : records) {
        if (record.Id == Bof) starts.push_back(record.Offset);
        if (record.Id == BoundSheet) told.push_back(record.Long(0));
        if (record.Id == Sst) {
            EXPECT_EQ(record.Long(0), 43U) << "uses";
            EXPECT_EQ(record.Long(4), 3U) << "texts";
        }
    }
    EXPECT_THAT(told, ElementsAre(starts.at(1), starts.at(2)));
}

TEST_F(SpreadsheetWriterTest, LongTextsGoOnInFurtherRecords) {
    // Texts, the bytes in the first record, and what the next one begins with. The first record has 8224 bytes: 8 of
    // its own, 3 for the head of each text.
    const std::tuple<const char*, std::vector<std::string>, std::size_t, std::vector<unsigned char>> cases[] = {
        {"ends with the record", {Repeated("a", 8213), "bc"}, 8224, {2, 0, 0, 'b', 'c'}},
        {"ends one byte before", {Repeated("a", 8212), "bc"}, 8223, {2, 0, 0, 'b', 'c'}},
        {"leaves room for a head only", {Repeated("a", 8210), "bc"}, 8221, {2, 0, 0, 'b', 'c'}},
        {"leaves room for head and text", {Repeated("a", 8208), "bc", "d"}, 8224, {1, 0, 0, 'd'}},
        {"is one byte too long", {Repeated("a", 8214), "bc"}, 8224, {0, 'a', 2, 0, 0, 'b', 'c'}},
        {"splits one byte a character", {Repeated("a", 8000), Repeated("b", 1000)}, 8224, {0, 'b'}},
        {"splits two bytes a character", {Repeated("a", 8000), Repeated("Ω", 1000)}, 8224, {1, 0xA9, 0x03}},
        {"splits with a byte left", {Repeated("a", 8001), Repeated("Ω", 1000)}, 8223, {1, 0xA9, 0x03}},
        {"splits before a pair of units", {Repeated("a", 8000), Repeated(Emoji, 500)}, 8222, {1, 0x3D, 0xD8}},
        {"takes five records", {Repeated("Ω", 20000), "x"}, 8223, {1, 0xA9, 0x03}},
    };
    for (const auto& [name, texts, first, begin] : cases) {
        SCOPED_TRACE(name);
        Sheet sheet{"Texts", {{}}, {}};
        json rows = {json::array()};
        for (const std::string& text : texts) {
            sheet.Rows.push_back({text});
            rows.push_back({text});
        }
        const auto records = RecordsOf(Writer.Encode({sheet}, WorkbookFormat::Xls));
        const auto sst = std::ranges::find(records, Sst, &BiffRecord::Id);
        EXPECT_EQ(sst->Data.size(), first);
        const BiffRecord& second = *(sst + 1);
        ASSERT_EQ(second.Id, Continue);
        ASSERT_GE(second.Data.size(), begin.size());
        EXPECT_THAT(std::span(second.Data).first(begin.size()), ElementsAreArray(begin));
        for (const BiffRecord& record : records) EXPECT_LE(record.Data.size(), 8224U);

        EXPECT_TRUE(Read({sheet}, WorkbookFormat::Xls)[0]["rows"] == rows);
    }
}

}  // namespace
}  // namespace vantor
