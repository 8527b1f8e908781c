#include "platform/SpreadsheetWriter.h"

#include <gmock/gmock.h>
#include <gsf/gsf-infile-msole.h>
#include <gsf/gsf-input-memory.h>
#include <sys/resource.h>
#include <sys/wait.h>

#include <algorithm>
#include <cmath>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <limits>
#include <nlohmann/json.hpp>

#include "core/Paths.h"
#include "core/RunTimeError.h"
#include "core/Windows1252.h"
#include "fakes/ThrowsError.h"
#include "platform/DiskFileSystem.h"
#include "platform/GObjectPointer.h"

namespace vantor {
namespace {

using nlohmann::json;
using testing::ElementsAre;

const std::string Greek = "Οδός Πανεπιστημίου";
const std::string Emoji = "🚗";

std::string Repeated(const std::string& text, std::size_t count) {
    std::string all;
    for (std::size_t i = 0; i < count; ++i) all += text;
    return all;
}

/// A sheet of one column without a head.
Sheet ColumnOf(std::vector<std::string> texts) {
    Sheet sheet{"Texts", {{}}, {}};
    for (std::string& text : texts) sheet.Rows.push_back({std::move(text)});
    return sheet;
}

class SpreadsheetWriterTest : public testing::TestWithParam<WorkbookFormat> {
protected:
    SpreadsheetWriterTest() {
        char pattern[] = "/tmp/vantor-test-XXXXXX";
        folder_ = AsFolder(mkdtemp(pattern));
        setenv("TMPDIR", folder_.c_str(), 1);
    }
    ~SpreadsheetWriterTest() override {
        unsetenv("TMPDIR");
        std::filesystem::remove_all(folder_);
    }

    /// What an independent reader finds in the workbook; tests/platform/read_workbook.py tells its shape.
    json Read(const std::vector<Sheet>& sheets, WorkbookFormat format) {
        const std::string file = folder_ + (format == WorkbookFormat::Xls ? "a.xls" : "a.xlsx");
        WriteFile(files_, file, writer_.Encode(sheets, format), AsItStands(files_, file));
        // The system's own Python has the system's packages; another one may stand before it in the path.
        const std::string command =
            "for python in /usr/bin/python3 python3; do"
            " \"$python\" -B '" VANTOR_TEST_DATA "../platform/read_workbook.py' '" +
            file + "'; status=$?; case $status in 99|127) ;; *) exit $status ;; esac; done; exit 99";
        std::FILE* output = popen(command.c_str(), "r");
        std::string text;
        char buffer[65536];
        while (const std::size_t count = std::fread(buffer, 1, sizeof buffer, output)) text.append(buffer, count);
        const int status = pclose(output);
        if (WEXITSTATUS(status) == 99)
            throw std::runtime_error("No Python with xlrd and openpyxl: run scripts/install-dependencies.sh");
        if (status != 0) throw std::runtime_error("The reader failed on " + file);
        return json::parse(text);
    }
    json Read(const std::vector<Sheet>& sheets) { return Read(sheets, GetParam()); }

    std::vector<std::string> NamesInFolder() const {
        std::vector<std::string> names;
        for (const FileInfo& info : files_.List(folder_)) names.push_back(info.Name);
        return names;
    }

    std::string folder_;
    DiskFileSystem files_{"/"};
    SpreadsheetWriter writer_;
};

struct FormatName {
    std::string operator()(const testing::TestParamInfo<WorkbookFormat>& info) const {
        return info.param == WorkbookFormat::Xls ? "Xls" : "Xlsx";
    }
};
INSTANTIATE_TEST_SUITE_P(Formats, SpreadsheetWriterTest, testing::Values(WorkbookFormat::Xls, WorkbookFormat::Xlsx),
                         FormatName());

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
    const Sheet numbers{"Numbers", {{"N", "0.000"}}, {{1.0}, {4294967296.0}, {123456789.125}}};
    const json sheets = Read({runs, numbers, {"Heads only", {{"A"}, {"B"}}, {}}});

    ASSERT_EQ(sheets.size(), 3U);
    const auto date = [](const char* text) { return json{{"date", text}}; };
    EXPECT_EQ(sheets[0]["rows"][0], json({"Name", "Day", "At", "Speed"}));
    EXPECT_EQ(sheets[0]["rows"][1], json({"R1", date("2008-03-14T00:00:00"), date("2026-11-21T19:05:07"), -12.25}));
    EXPECT_EQ(sheets[0]["rows"][2],
              json({Greek + Emoji, date("1900-03-01T00:00:00"), date("9999-12-31T00:00:00"), 0.1}));
    EXPECT_EQ(sheets[0]["rows"][3], json({all1252, nullptr, json{{"time", "07:30:00"}}, 1e300}));
    EXPECT_EQ(sheets[0]["rows"][4], json({"=1+1", nullptr, date("1900-03-01T12:00:00"), -1e-300}));
    EXPECT_EQ(sheets[0]["rows"][5], json::array());
    EXPECT_EQ(sheets[0]["rows"][6], json({" @x \t\n_x0041_ ", date("2000-02-29T00:00:00"), nullptr, 0.0}));
    EXPECT_EQ(sheets[0]["rows"][7], json({"'x", date("1900-01-12T00:00:00")})) << "a number in a column of dates";
    EXPECT_EQ(sheets[0]["formats"], json({"General", "mm/dd/yy", "mm/dd/yyyy hh:mm:ss", "0.0"}));
    EXPECT_EQ(sheets[0]["widths"], json({20, 10, 17, 10}));
    EXPECT_EQ(sheets[1]["rows"], json({{"N"}, {1.0}, {4294967296.0}, {123456789.125}}));
    EXPECT_EQ(sheets[1]["formats"], json({"0.000"}));
    EXPECT_EQ(sheets[2]["rows"], json::array({json::array({"A", "B"})}));
    for (const json& sheet : sheets) {
        EXPECT_TRUE(sheet["boldHeads"]);
        EXPECT_EQ(sheet["frozenRows"], 1);
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
    const json rows = Read({sheet})[0]["rows"];
    ASSERT_EQ(rows.size(), 6U);
    EXPECT_EQ(rows[1], json::array());
    EXPECT_EQ(rows[2], json::array());
    EXPECT_EQ(rows[3], json({"1850-01-02T00:00:00", "1900-02-28T00:00:00"}));
    EXPECT_EQ(rows[4], json({Repeated("x", 32767), Repeated("x", 32766)}));
    EXPECT_EQ(rows[5], json({"a b  c", "a\uFFFD\uFFFD\uFFFDb"}));
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
    const json none = Read({});
    ASSERT_EQ(none.size(), 1U);
    EXPECT_EQ(none[0]["name"], "Sheet1");
}

TEST_P(SpreadsheetWriterTest, RefusesMoreThanTheFormatHolds) {
    const bool isXls = GetParam() == WorkbookFormat::Xls;
    Sheet sheet{"Log", {{"A"}}, {}};
    sheet.Rows.resize(isXls ? 65536 : 1048576);
    try {
        writer_.Encode({{"First", {}, {}}, sheet}, GetParam());
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
    EXPECT_ERROR(Overflow, writer_.Encode({wide}, GetParam()));
    EXPECT_ERROR(SubscriptOutOfRange, writer_.Encode({{"Short", {{"A"}}, {{1.0, 2.0}}}}, GetParam()));
}

TEST_F(SpreadsheetWriterTest, LeavesNothingInTheTemporaryFolder) {
    Sheet sheet{"Log", {{"A"}}, {}};
    for (int i = 0; i < 5000; ++i) sheet.Rows.push_back({"Point " + std::to_string(i * 7919 % 10007)});
    writer_.Encode({sheet}, WorkbookFormat::Xlsx);
    EXPECT_EQ(NamesInFolder(), std::vector<std::string>{});

    rlimit old{};
    getrlimit(RLIMIT_FSIZE, &old);
    const auto oldHandler = std::signal(SIGXFSZ, SIG_IGN);
    // The disk takes no more at once, or in the midst of the rows.
    for (const rlim_t most : {10, 100000}) {
        const rlimit small{most, old.rlim_max};
        setrlimit(RLIMIT_FSIZE, &small);
        const auto error = ErrorOf([&] { writer_.Encode({sheet}, WorkbookFormat::Xlsx); });
        setrlimit(RLIMIT_FSIZE, &old);
        EXPECT_EQ(error, ErrorNumber::DiskFull) << most;
        EXPECT_EQ(NamesInFolder(), std::vector<std::string>{});
    }
    std::signal(SIGXFSZ, oldHandler);

    setenv("TMPDIR", "/tmp/none/at/all", 1);
    EXPECT_ERROR(PathNotFound, writer_.Encode({sheet}, WorkbookFormat::Xlsx));
    EXPECT_EQ(ErrorOf([&] { writer_.Encode({sheet}, WorkbookFormat::Xls); }), std::nullopt);
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

constexpr int Bof = 0x809;
constexpr int Sst = 0xFC;
constexpr int Continue = 0x3C;
constexpr int BoundSheet = 0x85;
constexpr int Number = 0x203;
constexpr int LabelSst = 0xFD;

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
    const auto file = writer_.Encode({first, {"Second", {{"A"}}, {}}}, WorkbookFormat::Xls);
    constexpr unsigned char Magic[] = {0xD0, 0xCF, 0x11, 0xE0, 0xA1, 0xB1, 0x1A, 0xE1};
    EXPECT_TRUE(std::equal(std::begin(Magic), std::end(Magic), reinterpret_cast<const unsigned char*>(file.data())));

    const auto records = RecordsOf(file);
    EXPECT_THAT(Order(records),
                ElementsAre(Bof, 0x42, 0x3D, 0x22, 0x31, 0x41E, 0xE0, 0x293, BoundSheet, Sst, 0x0A,  // the workbook
                            Bof, 0x7D, 0x200, 0x208, Number, 0x208, Number, 0x23E, 0x41, 0x1D, 0x0A, Bof, 0x7D, 0x200,
                            0x208, Number, 0x23E, 0x41, 0x1D, 0x0A));
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
    struct Case {
        const char* Name;
        std::vector<std::string> Texts;
        std::size_t First;                         ///< bytes in the first record
        std::vector<unsigned char> BeginOfSecond;  ///< and what the next one begins with
    };
    // The first record has 8224 bytes: 8 of its own, 3 for the head of each text.
    const Case cases[] = {
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
    for (const Case& each : cases) {
        SCOPED_TRACE(each.Name);
        const auto records = RecordsOf(writer_.Encode({ColumnOf(each.Texts)}, WorkbookFormat::Xls));
        const auto isSst = [](const BiffRecord& record) { return record.Id == Sst; };
        const auto sst = std::find_if(records.begin(), records.end(), isSst);
        EXPECT_EQ(sst->Data.size(), each.First);
        const BiffRecord& second = *(sst + 1);
        ASSERT_EQ(second.Id, Continue);
        ASSERT_GE(second.Data.size(), each.BeginOfSecond.size());
        EXPECT_TRUE(std::equal(each.BeginOfSecond.begin(), each.BeginOfSecond.end(), second.Data.begin()));
        for (const BiffRecord& record : records) EXPECT_LE(record.Data.size(), 8224U);

        json rows = {json::array()};
        for (const std::string& text : each.Texts) rows.push_back({text});
        EXPECT_TRUE(Read({ColumnOf(each.Texts)}, WorkbookFormat::Xls)[0]["rows"] == rows);
    }
}

}  // namespace
}  // namespace vantor
