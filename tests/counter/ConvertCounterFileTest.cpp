#include <gmock/gmock.h>

#include <cstring>

#include "core/RunFile.h"
#include "counter/CounterFile.h"
#include "fakes/FakePorts.h"
#include "fakes/ThrowsError.h"

namespace vantor {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

const std::string EndMark = "::::::::::::::::::::\r\n";
const std::string Path = "/start/Field Data Files/Day.tdc";
const std::string Temp = "/start/Temp/";

/// A record of run `run` of study 001; `data` are the data words with their commas and line ends.
std::string Record(const std::string& run, const std::string& data, const std::string& trailer = "00000") {
    return "T,001," + run + ",SITE0001,0653,031108,01000\r\n" + data + trailer + "\r\n";
}

class ConvertCounterFileTest : public testing::Test {
protected:
    std::vector<std::string> Convert(const std::string& text) {
        Program.Files.PutText(Path, text);
        return ConvertCounterFile(Program.Files, Path, Temp, Program.State.CurrentRun);
    }

    /// The only run of a text, read back from its file.
    RunRecord OnlyRunOf(const std::string& text) {
        const auto names = Convert(text);
        EXPECT_EQ(names.size(), 1u);
        return ReadBack(names.at(0));
    }

    RunRecord ReadBack(const std::string& name) {
        RunRecord run;
        EXPECT_TRUE(ReadRunFile(Program.Files, Program.Messages, run, Temp, name, true));
        return run;
    }

    /// What a faulty text is told as; the runs that were kept are then in RunsKept.
    RunTimeError FaultOf(const std::string& text) {
        std::optional<RunTimeError> fault;
        try {
            Convert(text);
        } catch (const RunTimeError& error) {
            fault = error;
        }
        RunsKept = static_cast<int>(Program.Files.List(Temp).size());
        for (const FileInfo& info : Program.Files.List(Temp)) Program.Files.Delete(Temp + info.Name);
        return fault.value_or(RunTimeError(ErrorNumber::PathNotFound, "no fault"));
    }

    TestProgram Program;
    int RunsKept = 0;
};

template <class T>
T NumberAt(const std::vector<std::byte>& bytes, std::size_t offset) {
    T value;
    std::memcpy(&value, bytes.data() + offset, sizeof value);
    return value;
}

std::string TextAt(const std::vector<std::byte>& bytes, std::size_t offset, std::size_t width) {
    return {reinterpret_cast<const char*>(bytes.data()) + offset, width};
}

TEST_F(ConvertCounterFileTest, WritesARecordAsTheBytesOfItsRun) {
    // What the current run holds of an earlier one must not get into the file.
    Program.State.CurrentRun.RunSamples.ResizeTo(9);
    Program.State.CurrentRun.RunSamples[2].Latitude = 30.25;
    Program.State.CurrentRun.Header.Notes = "earlier";
    // Pulses: 12 with key 1, 7 to a node, 255 to a node, 3; 277 in all.
    const auto names =
        Convert("T,017,003,MAINSTNB,0653,031108,01246\r\n012 001,007 128\r\n255 200,003 000\r\n00042\r\n" + EndMark);
    ASSERT_THAT(names, ElementsAre("S017R003-MAINSTNB-1"));
    const auto bytes = *Program.Files.Bytes(Temp + names[0] + ".rd2");
    ASSERT_EQ(bytes.size(), 8448u + 4 * 48);
    EXPECT_EQ(NumberAt<std::int16_t>(bytes, 0), 1);
    EXPECT_EQ(TextAt(bytes, 2, 32), "S017R003-MAINSTNB-1             ");
    EXPECT_EQ(NumberAt<double>(bytes, 34), 39518);         // 11 March 2008
    EXPECT_EQ(NumberAt<double>(bytes, 42), 413 / 1440.0);  // 06:53
    EXPECT_EQ(NumberAt<std::int32_t>(bytes, 50), 4);
    EXPECT_EQ(TextAt(bytes, 54, 10), std::string(10, ' '));
    EXPECT_EQ(NumberAt<std::int16_t>(bytes, 64), 17);
    EXPECT_EQ(NumberAt<std::int16_t>(bytes, 66), 3);
    EXPECT_EQ(TextAt(bytes, 68, 32), "MAINSTNB" + std::string(24, ' '));
    EXPECT_EQ(NumberAt<std::int16_t>(bytes, 100), 1246);
    EXPECT_EQ(TextAt(bytes, 102, 8), std::string("\xFF\xFF\0\0\xFF\xFF\0\0", 8));  // Primary, Before
    EXPECT_EQ(NumberAt<std::int32_t>(bytes, 110), 345);                            // 277 x 1.246 = 345.142 ft
    EXPECT_EQ(NumberAt<std::int16_t>(bytes, 114), 4);
    EXPECT_EQ(NumberAt<std::int16_t>(bytes, 116), 4);
    EXPECT_EQ(NumberAt<std::int32_t>(bytes, 118), 42);
    EXPECT_EQ(NumberAt<std::int16_t>(bytes, 122), 1);
    EXPECT_EQ(NumberAt<std::int16_t>(bytes, 1152), -1);  // key 1 was used
    EXPECT_EQ(NumberAt<std::int32_t>(bytes, 1216), 12);  // event 1: where, which key
    EXPECT_EQ(NumberAt<std::int16_t>(bytes, 1344), 1);
    EXPECT_EQ(NumberAt<std::int32_t>(bytes, 7552 + 4), 19);
    EXPECT_EQ(NumberAt<std::int32_t>(bytes, 7552 + 8), 255);
    EXPECT_EQ(NumberAt<std::int32_t>(bytes, 7552 + 12), 3);
    EXPECT_EQ(TextAt(bytes, 8320, 128), std::string(128, ' '));
    const std::vector<std::string> words = {{"\x0C\x01", 2}, {"\x07\x80", 2}, {"\xFF\x80", 2}, {"\x03\x00", 2}};
    for (std::size_t i = 0; i < words.size(); ++i)
        EXPECT_EQ(TextAt(bytes, 8448 + 48 * i, 48), words[i] + std::string(46, '\0')) << i;
}

TEST_F(ConvertCounterFileTest, TakesDataFieldsAsTheirTwoNumbers) {
    const std::vector<std::pair<std::string, std::int16_t>> fields = {
        {"012 001", 268},    {"012x001", 268},     {"003 127", 3 + 127 * 256},
        {"000 128", -32768}, {"007 999", -32761},  {"12  16 ", 4108},
        {"1.5 000", 2},      {"2.5 000", 2},       {"abc def", 0},
        {"999 000", 999},    {"-12 001", 244},     {"012 001 and more", 268},
        {"  012 001", 268},  {"\"012,001\"", 268}, {"012-001", 268},
        {"012 -01", 12}};
    std::string data;
    for (const auto& [field, word] : fields) data += field + ",";
    const RunRecord run = OnlyRunOf(Record("001", data) + EndMark);
    ASSERT_EQ(run.SampleValues.size(), fields.size());
    for (std::size_t i = 0; i < fields.size(); ++i)
        EXPECT_EQ(run.SampleValues.data()[i], fields[i].second) << fields[i].first;
}

TEST_F(ConvertCounterFileTest, ARecordWithoutDataIsARunOfNoSamples) {
    const RunRecord run = OnlyRunOf("X,001,001,SITE0001,0653,031108,01000\r\n00077\r\n" + EndMark);
    EXPECT_EQ(run.Header.SampleCount, 0);
    EXPECT_EQ(run.Header.HeaderLong, 77);
    EXPECT_EQ(run.Header.NumberOfSections, 2);
    EXPECT_EQ(run.Header.HeaderWord1, 0);  // Secondary
    EXPECT_EQ(run.Header.HeaderWord2, -1);
    EXPECT_EQ(Program.Files.Bytes(Temp + "S001R001-SITE0001-1.rd2")->size(), 8448u);
}

TEST_F(ConvertCounterFileTest, CutsAndPadsHeaderFields) {
    const RunRecord run = OnlyRunOf("T,12345,7,SITE 12345,00591,0101300,9000\r\nend\r\n" + EndMark);
    EXPECT_EQ(run.Header.RunName, "S123R7  -SITE 123-1");
    EXPECT_EQ(run.Header.CountNumber, 123);
    EXPECT_EQ(run.Header.RunNumber, 7);
    EXPECT_EQ(run.Header.SiteCode, "SITE 123");
    EXPECT_EQ(run.Header.RunTime, (Date{59 / 1440.0}));
    EXPECT_EQ(run.Header.RunDate, (Date{10959}));  // 1 January 1930
    EXPECT_EQ(run.Header.HeaderLong, 0);
}

TEST_F(ConvertCounterFileTest, CalibrationsAbove10000AreNone) {
    const std::vector<std::tuple<std::string, int, int>> calibrations = {
        {"10000", 10000, 1000}, {"10001", 0, 0}, {"99999", 0, 0}, {"0", 0, 0}, {"none", 0, 0}, {"1000.4", 1000, 100}};
    for (const auto& [text, stored, length] : calibrations) {
        const RunRecord run = OnlyRunOf("T,1,1,S,0653,031108," + text + "\r\n100 000\r\n1\r\n" + EndMark);
        EXPECT_EQ(run.Header.CalConstant, stored) << text;
        EXPECT_EQ(run.Header.RunLength, length) << text;
    }
}

TEST_F(ConvertCounterFileTest, LineEndsAndQuotesMakeNoDifference) {
    const RunRecord plain = OnlyRunOf(Record("001", "012 001,007 128,003 000\r\n") + EndMark);
    const std::vector<std::string> texts = {
        "T\n001\n001\nSITE0001\n0653\n031108\n01000\n012 001\n007 128\n003 000\n00000\n::::::::::::::::::::",
        "T,001,001,SITE0001,0653,031108,01000,012 001,007 128,003 000,00000,::::::::::::::::::::,",
        "T,001,001,SITE0001\r0653,031108,01000\r\n012 001\r007 128\n003 000\r00000\r::::::::::::::::::::\r",
        "\"T\",\"001\", \"001\",\"SITE0001\",0653,031108,\" 01000\"\r\n\"012 001\",007 128,\"003 000\"\r\n"
        "\"00000\"\r\n\"::::::::::::::::::::\""};
    for (const std::string& text : texts) {
        Program.Files.Delete(Temp + "S001R001-SITE0001-1.rd2");
        EXPECT_EQ(OnlyRunOf(text), plain) << text;
    }
    EXPECT_EQ(OnlyRunOf("T,1,1,\"A,B\",0653,031108,1000,1," + EndMark).Header.SiteCode, "A,B");
}

TEST_F(ConvertCounterFileTest, WordsAcrossBordersOfReadingStayWhole) {
    // Lines of nine words are 73 characters: each of them comes to lie on a border once.
    for (int shift = 0; shift < 73; ++shift) {
        std::string data(static_cast<std::size_t>(shift), ' ');
        for (int i = 1; i <= 32767; ++i)
            data += std::to_string(100 + i % 150) + (i % 7 == 0 ? " 012" : " 000") + (i % 9 == 0 ? "\r\n" : ",");
        const RunRecord run = OnlyRunOf(Record("001", data, "32767") + EndMark);
        ASSERT_EQ(run.Header.SampleCount, 32767);
        EXPECT_EQ(run.Header.HeaderLong, 32767);
        for (int i = 1; i <= 32767; ++i)
            ASSERT_EQ(run.SampleValues[i], 100 + i % 150 + (i % 7 == 0 ? 12 * 256 : 0)) << i << " shifted by " << shift;
        Program.Files.Delete(Temp + "S001R001-SITE0001-1.rd2");
    }
}

TEST_F(ConvertCounterFileTest, NamesThatExistGetTheNextNumber) {
    const std::string text = Record("001", "") + Record("002", "") + EndMark;
    EXPECT_THAT(Convert(text), ElementsAre("S001R001-SITE0001-1", "S001R002-SITE0001-1"));
    EXPECT_THAT(Convert(text), ElementsAre("S001R001-SITE0001-2", "S001R002-SITE0001-2"));
    EXPECT_EQ(ReadBack("S001R001-SITE0001-2").Header.RunName, "S001R001-SITE0001-2");

    // The same run 13 times in one file, two names of which are there in another letter case.
    Program.Files.PutText(Temp + "s001r003-site0001-1.rd2", "");
    Program.Files.PutText(Temp + "s001r003-site0001-10.RD2", "");
    std::string sameRun;
    for (int i = 0; i < 11; ++i) sameRun += Record("003", "");
    EXPECT_THAT(Convert(sameRun + EndMark),
                ElementsAre("S001R003-SITE0001-2", "S001R003-SITE0001-3", "S001R003-SITE0001-4", "S001R003-SITE0001-5",
                            "S001R003-SITE0001-6", "S001R003-SITE0001-7", "S001R003-SITE0001-8", "S001R003-SITE0001-9",
                            "S001R003-SITE0001-11", "S001R003-SITE0001-12", "S001R003-SITE0001-13"));
}

TEST_F(ConvertCounterFileTest, NamesStayInTheirFolder) {
    const auto record = [](const std::string& site) { return "T,1,1,\"" + site + "\",0653,031108,1000,0,"; };
    EXPECT_THAT(
        Convert(record("../../A") + record("a:*?<>|\\") + record("\x07....x") + record("K\xF6ln") + EndMark),
        ElementsAre("S1  R1  -______A -1", "S1  R1  -a_______-1", "S1  R1  -_____x  -1", "S1  R1  -K\u00F6ln    -1"));
    EXPECT_EQ(ReadBack("S1  R1  -______A -1").Header.SiteCode, "../../A");
    EXPECT_EQ(Program.Files.List(Temp).size(), 4u);
}

TEST_F(ConvertCounterFileTest, AFileCutShortKeepsTheRunsBefore) {
    const std::string first = Record("001", "012 001,007 128\r\n");
    const std::vector<std::tuple<std::string, int, int>> cuts = {
        {"", 1, 2},   // between records
        {"T", 1, 2},  // in each part of a header
        {"T,001,00", 1, 2},
        {"T,001,002,SITE0001,0653,0311", 1, 2},
        {"T,001,002,SITE0001,0653,031108,01", 1, 2},
        {"T,001,002,SITE0001,0653,031108,01000\r\n", 1, 2},
        {"T,001,002,SITE0001,0653,031108,01000\r\n012 001", 1, 2},  // after a whole word
        {"T,001,002,SITE0001,0653,031108,01000\r\n012 001,", 1, 2},
        {"T,001,002,SITE0001,0653,031108,01000\r\n012 001,007 1", 2, 3},  // the cut word is short, as a trailer is
        {"T,001,002,SITE0001,0653,031108,01000\r\n012 001\r\n000", 2, 3},
        {Record("002", "012 001\r\n") + ":::::::::::::::::::", 2, 3}};
    for (const auto& [rest, kept, record] : cuts) {
        const RunTimeError fault = FaultOf(first + rest);
        EXPECT_EQ(fault.Number(), ErrorNumber::InputPastEndOfFile) << rest;
        EXPECT_THAT(fault.Place(), HasSubstr(Path + ", record " + std::to_string(record) + "\n")) << rest;
        EXPECT_THAT(fault.Place(), HasSubstr("The runs before this record were kept.")) << rest;
        EXPECT_EQ(RunsKept, kept) << rest;
    }
    EXPECT_THAT(FaultOf("").Place(), HasSubstr("record 1\n"));
    EXPECT_EQ(RunsKept, 0);
}

TEST_F(ConvertCounterFileTest, AFaultyRecordIsNamedAndKeepsTheRunsBefore) {
    const auto withHeader = [](const std::string& header) { return "T,001,002,SITE0001," + header + "\r\n00000\r\n"; };
    std::string tooManyWords = "T,001,002,SITE0001,0653,031108,01000\r\n";
    for (int i = 0; i < 32768; ++i) tooManyWords += "001 000,";
    std::string tooManyQuoted = "T,001,002,SITE0001,0653,031108,01000\r\n";
    for (int i = 0; i < 32768; ++i) tooManyQuoted += "\"001 000\",";
    const std::vector<std::tuple<std::string, ErrorNumber, std::string>> faults = {
        {withHeader("0653,133108,01000"), ErrorNumber::TypeMismatch, "The date \"133108\" does not exist."},
        {withHeader("0653,022907,01000"), ErrorNumber::TypeMismatch, "The date \"022907\" does not exist."},
        {withHeader("0653,,01000"), ErrorNumber::TypeMismatch, "The date \"      \" does not exist."},
        {withHeader("2460,031108,01000"), ErrorNumber::TypeMismatch, "The time \"2460\" does not exist."},
        {withHeader("653,031108,01000"), ErrorNumber::TypeMismatch, "The time \"653 \" does not exist."},
        {withHeader("0653,031108,99999999999"), ErrorNumber::Overflow, "number of this record is too large"},
        {withHeader("0653,031108,-32769"), ErrorNumber::Overflow, "number of this record is too large"},
        {withHeader("0653,031108,01000\r\n999 127"), ErrorNumber::Overflow, "number of this record is too large"},
        {tooManyWords, ErrorNumber::Overflow, "more than 32767 data words"},
        {tooManyQuoted, ErrorNumber::Overflow, "more than 32767 data words"}};
    for (const auto& [faulty, number, told] : faults) {
        const RunTimeError fault = FaultOf(Record("001", "012 001\r\n") + faulty + Record("003", "") + EndMark);
        EXPECT_EQ(fault.Number(), number) << told;
        EXPECT_THAT(fault.Place(), HasSubstr(Path + ", record 2\n"));
        EXPECT_THAT(fault.Place(), HasSubstr(told));
        EXPECT_EQ(RunsKept, 1) << told;
    }
}

TEST_F(ConvertCounterFileTest, AFullDiskLeavesNoRunAtAll) {
    const std::string text = Record("001", "012 001\r\n") + Record("002", "") + Record("003", "") + EndMark;
    for (int changes = 0; changes < 3; ++changes) {
        Program.Files.FailChangeAfter(changes, ErrorNumber::DiskFull);
        EXPECT_ERROR(DiskFull, Convert(text));
        EXPECT_THAT(Program.Files.List(Temp), IsEmpty());
        EXPECT_EQ(Program.Files.Bytes(Path), BytesOf(text));
    }
    EXPECT_EQ(Convert(text).size(), 3u);
    EXPECT_ERROR(FileNotFound, ConvertCounterFile(Program.Files, "/start/none.tdc", Temp, Program.State.CurrentRun));
    EXPECT_ERROR(PathNotFound, ConvertCounterFile(Program.Files, Path, "/start/none", Program.State.CurrentRun));
}

TEST_F(ConvertCounterFileTest, AStopAtAnyPointLeavesNothing) {
    Program.Files.PutText(Path, Record("001", "") + Record("002", "") + EndMark);
    std::vector<double> told;
    std::vector<std::string> names;
    for (std::size_t asks = 1; names.empty(); ++asks) {
        EXPECT_THAT(Program.Files.List(Temp), IsEmpty()) << "stopped when asked " << told.size() << " times";
        told.clear();
        names =
            ConvertCounterFile(Program.Files, Path, "/start/Temp", Program.State.CurrentRun, Progress([&](double done) {
                                   told.push_back(done);
                                   return told.size() < asks;
                               }));
    }
    EXPECT_EQ(names.size(), 2u);
    EXPECT_GE(told.size(), 4u) << "asked while reading and while writing";
    EXPECT_TRUE(std::is_sorted(told.begin(), told.end()));
    EXPECT_EQ(Program.State.CurrentRun.Header.RunName, "S001R002-SITE0001-1");
}

TEST_F(ConvertCounterFileTest, ConvertsTheSampleCorridor) {
    Program.Files.PutCopyOf(VANTOR_SAMPLES "Corridor.tdc", Path);
    const auto names = ConvertCounterFile(Program.Files, Path, Temp, Program.State.CurrentRun);
    ASSERT_EQ(names.size(), 16u);
    EXPECT_EQ(names.front(), "S001R001-MAINSTNB-1");
    EXPECT_EQ(names.back(), "S002R008-MAINSTSB-1");
    for (const std::string& name : names) {
        const RunRecord run = ReadBack(name);
        EXPECT_EQ(run.Header.HeaderLong, run.Header.SampleCount) << name;  // its trailers are the word counts
        EXPECT_EQ(run.Header.NumberOfSections, 7) << name;                 // five cross streets
        // 1.5 miles within the tyres' 0.3 %, and at most a second's way and the sensor spikes more.
        EXPECT_GT(run.Header.RunLength, 7920 - 24) << name;
        EXPECT_LT(run.Header.RunLength, 7920 + 24 + 66 + 102) << name;
    }
}

}  // namespace
}  // namespace vantor
