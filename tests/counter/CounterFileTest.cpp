#include "counter/CounterFile.h"

#include <gmock/gmock.h>

#include "CounterTexts.h"
#include "core/RunFile.h"
#include "counter/DelimitedReader.h"
#include "fakes/FakePorts.h"
#include "fakes/ThrowsError.h"

namespace vantor {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::Field;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::Property;
using testing::Throws;

const std::string Path = FieldData + "Day.tdc";

DelimitedReader ReaderOf(const std::string& text) {
    MemoryFileSystem files;
    files.PutText("/start/fields", text);
    return DelimitedReader(files.Open("/start/fields"));
}

TEST(DelimitedReader, TakesTheFieldsOfAText) {
    const std::vector<std::pair<std::string, std::vector<std::string>>> texts = {
        // Fields end at commas and any line end.
        {"a,b\r\nc\rd\ne", {"a", "b", "c", "d", "e"}},
        {"a,,b\r\n\r\nc\n\n", {"a", "", "b", "", "c", ""}},
        {"a\n\rb", {"a", "", "b"}},
        {"a,\r\nb,", {"a", "", "b"}},
        {"", {}},
        {"a\r\n   ", {"a"}},
        // Leading blanks and quotes are dropped, nothing else.
        {"  a b  ,   \r\n b", {"a b  ", "", "b"}},
        {"\"a,b\", \" c \" \r\n\"\",d\"e\"", {"a,b", " c ", "", "d\"e\""}},
        {"\"a\"b,c", {"a", "c"}},
        {"\"never closed,b\r\nc", {"never closed,b", "c"}},
        {"a,\"b", {"a", "b"}}};
    for (const auto& [text, expected] : texts) {
        DelimitedReader reader = ReaderOf(text);
        std::vector<std::string> fields;
        const auto readOn = [&] {
            for (;;) fields.emplace_back(reader.Next().Text);
        };
        EXPECT_ERROR(InputPastEndOfFile, readOn());
        EXPECT_EQ(fields, expected) << text;
    }
}

TEST(DelimitedReader, KeepsTheStartOfALongFieldAndCountsItWhole) {
    const std::string longField(3000000, 'x');
    DelimitedReader reader = ReaderOf(longField + ",\"" + longField + "\"\r\nshort");
    for (int i = 0; i < 2; ++i) {
        const DelimitedField field = reader.Next();
        EXPECT_EQ(field.Text, std::string(DelimitedReader::LongestKept, 'x'));
        EXPECT_EQ(field.Length, 3000000u);
    }
    EXPECT_EQ(reader.Next().Text, "short");
    EXPECT_EQ(reader.Position(), reader.Size());
}

/// An action that fails with that error, and whose place is such.
auto FailsWith(ErrorNumber number, const testing::Matcher<std::string>& place) {
    return Throws<RunTimeError>(AllOf(Property(&RunTimeError::Number, number), Property(&RunTimeError::Place, place)));
}

class ConvertCounterFileTest : public testing::Test, protected TestProgram {
protected:
    std::vector<std::string> Convert(const std::string& text) {
        Files.PutText(Path, text);
        return ConvertCounterFile(Files, Path, Temp, State.CurrentRun);
    }

    /// The only run of a text, read back from its file, which goes.
    RunRecord OnlyRunOf(const std::string& text) {
        const auto names = Convert(text);
        EXPECT_EQ(names.size(), 1u);
        RunRecord run = ReadBack(names.at(0));
        DeleteRuns();
        return run;
    }

    RunRecord ReadBack(const std::string& name) { return ReadRunFile(Files, Messages, Temp, name).value(); }

    void DeleteRuns() {
        for (const FileInfo& info : Files.List(Temp)) Files.Delete(Temp + info.Name);
    }
};

TEST_F(ConvertCounterFileTest, MakesARunOfARecord) {
    // What the current run and the record before hold must not get into the file.
    State.CurrentRun.RunSamples.ResizeTo(9);
    State.CurrentRun.RunSamples[2].Latitude = 30.25;
    State.CurrentRun.Header.Notes = "earlier";
    // Pulses: 12 with key 1, 7 to a node, 255 to a node, 3; 277 x 1.246 = 345.142 ft.
    EXPECT_THAT(
        Convert(Record("T,001,001", "100 128\r\n") +
                "T,017,003,MAINSTNB,0653,031108,01246\r\n012 001,007 128\r\n255 200,003 000\r\n00042\r\n" + DumpEnd),
        ElementsAre("S001R001-SITE0001-1", "S017R003-MAINSTNB-1"));
    EXPECT_EQ(Files.Bytes(Temp + "S017R003-MAINSTNB-1.rd2")->size(), 8448u + 4 * 48);
    const RunRecord run = ReadBack("S017R003-MAINSTNB-1");
    const RunHeader& header = run.Header;
    EXPECT_EQ(std::tuple(header.FileVersion, header.CountNumber, header.RunNumber, header.SiteCode, header.CalConstant),
              std::tuple(1, 17, 3, "MAINSTNB", 1246));
    EXPECT_EQ(std::tuple(header.RunDate, header.RunTime, header.HeaderLong, header.Notes),
              std::tuple(DateOf(2008, 3, 11), TimeOf(6, 53), 42, ""));
    EXPECT_EQ(std::tuple(header.HeaderWord1, header.Before, header.RunLength, header.Duration, header.NumberOfSections),
              std::tuple(-1, -1, 345, 4, 4));
    EXPECT_EQ(std::tuple(header.HeaderWord3, header.ButtonWord[1], header.ButtonLong[1], header.ButtonWord2[1]),
              std::tuple(1, -1, 12, 1))
        << "key 1 in event 1";
    EXPECT_EQ(std::tuple(header.SectionDist[1], header.SectionDist[2], header.SectionDist[3]), std::tuple(19, 255, 3));
    EXPECT_EQ(run.SampleValues, OneBased<std::int16_t>({0x010C, 0x8007 - 0x10000, 0x80FF - 0x10000, 3}));
    EXPECT_EQ(run.RunSamples, OneBased<RunSample>(std::vector<RunSample>(4)));
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
    const RunRecord run = OnlyRunOf(Record("T,001,001", data) + DumpEnd);
    ASSERT_EQ(run.SampleValues.size(), fields.size());
    for (std::size_t i = 0; i < fields.size(); ++i)
        EXPECT_EQ(run.SampleValues.data()[i], fields[i].second) << fields[i].first;
}

TEST_F(ConvertCounterFileTest, CutsAndPadsHeaderFieldsAndNeedsNoData) {
    const RunHeader header = OnlyRunOf("X,12345,7,SITE 12345,00591,0101300,9000\r\nend\r\n" + DumpEnd).Header;
    EXPECT_EQ(std::tuple(header.RunName, header.CountNumber, header.RunNumber, header.SiteCode),
              std::tuple("S123R7  -SITE 123-1", 123, 7, "SITE 123"));
    EXPECT_EQ(std::tuple(header.RunTime, header.RunDate, header.HeaderLong, header.SampleCount),
              std::tuple(TimeOf(0, 59), DateOf(1930, 1, 1), 0, 0));
}

TEST_F(ConvertCounterFileTest, CalibrationsAbove10000AreNone) {
    const std::vector<std::tuple<std::string, int, int>> calibrations = {
        {"10000", 10000, 1000}, {"10001", 0, 0}, {"99999", 0, 0}, {"0", 0, 0}, {"none", 0, 0}, {"1000.4", 1000, 100}};
    for (const auto& [text, stored, length] : calibrations) {
        const RunRecord run = OnlyRunOf("T,1,1,S,0653,031108," + text + "\r\n100 000\r\n1\r\n" + DumpEnd);
        EXPECT_EQ(run.Header.CalConstant, stored) << text;
        EXPECT_EQ(run.Header.RunLength, length) << text;
    }
}

TEST_F(ConvertCounterFileTest, LineEndsAndQuotesMakeNoDifference) {
    const RunRecord plain = OnlyRunOf(Record("T,001,001", "012 001,007 128,003 000\r\n") + DumpEnd);
    for (const char* text :
         {"T\n001\n001\nSITE0001\n0653\n031108\n01000\n012 001\n007 128\n003 000\n00000\n::::::::::::::::::::",
          "T,001,001,SITE0001,0653,031108,01000,012 001,007 128,003 000,00000,::::::::::::::::::::,",
          "T,001,001,SITE0001\r0653,031108,01000\r\n012 001\r007 128\n003 000\r00000\r::::::::::::::::::::\r",
          "\"T\",\"001\", \"001\",\"SITE0001\",0653,031108,\" 01000\"\r\n\"012 001\",007 128,\"003 000\"\r\n"
          "\"00000\"\r\n\"::::::::::::::::::::\""})
        EXPECT_EQ(OnlyRunOf(text), plain) << text;
}

TEST_F(ConvertCounterFileTest, WordsAcrossBordersOfReadingStayWhole) {
    // Lines of nine words are 73 characters: each of them comes to lie on a border once.
    for (std::size_t shift = 0; shift < 73; ++shift) {
        std::string data(shift, ' ');
        for (int i = 1; i <= 32767; ++i)
            data += std::to_string(100 + i % 150) + (i % 7 == 0 ? " 012" : " 000") + (i % 9 == 0 ? "\r\n" : ",");
        const RunRecord run = OnlyRunOf(Record("T,001,001", data, "32767") + DumpEnd);
        ASSERT_EQ(run.Header.SampleCount, 32767);
        EXPECT_EQ(run.Header.HeaderLong, 32767);
        for (int i = 1; i <= 32767; ++i)
            ASSERT_EQ(run.SampleValues[i], 100 + i % 150 + (i % 7 == 0 ? 12 * 256 : 0)) << i << " shifted by " << shift;
    }
}

TEST_F(ConvertCounterFileTest, NamesThatExistGetTheNextNumber) {
    const std::string text = Record("T,001,001") + Record("T,001,002") + DumpEnd;
    EXPECT_THAT(Convert(text), ElementsAre("S001R001-SITE0001-1", "S001R002-SITE0001-1"));
    EXPECT_THAT(Convert(text), ElementsAre("S001R001-SITE0001-2", "S001R002-SITE0001-2"));
    EXPECT_EQ(ReadBack("S001R001-SITE0001-2").Header.RunName, "S001R001-SITE0001-2");

    // The same run 13 times in one file, two names of which are there in another letter case.
    Files.PutText(Temp + "s001r003-site0001-1.rd2", "");
    Files.PutText(Temp + "s001r003-site0001-10.RD2", "");
    std::string sameRun, numbers;
    for (int i = 0; i < 11; ++i) sameRun += Record("T,001,003");
    for (const std::string& name : Convert(sameRun + DumpEnd)) numbers += name.substr(17);
    EXPECT_EQ(numbers, "-2-3-4-5-6-7-8-9-11-12-13");
}

TEST_F(ConvertCounterFileTest, NamesStayInTheirFolder) {
    const auto record = [](const std::string& site) { return "T,1,1,\"" + site + "\",0653,031108,1000,0,"; };
    EXPECT_THAT(
        Convert(record("../../A") + record("a:*?<>|\\") + record("\x07....x") + record("K\xF6ln") + DumpEnd),
        ElementsAre("S1  R1  -______A -1", "S1  R1  -a_______-1", "S1  R1  -_____x  -1", "S1  R1  -K\u00F6ln    -1"));
    EXPECT_EQ(ReadBack("S1  R1  -______A -1").Header.SiteCode, "../../A");
    EXPECT_EQ(Files.List(Temp).size(), 4u);
}

TEST_F(ConvertCounterFileTest, AFaultyRecordIsNamedAndKeepsTheRunsBefore) {
    const auto header = [](const std::string& rest) { return "T,001,002,SITE0001," + rest + "\r\n"; };
    const std::string begun = header("0653,031108,01000");
    const std::string after = "00000\r\n" + Record("T,001,003") + DumpEnd;
    const auto manyWords = [&](const char* word) {
        std::string text = begun;
        for (int i = 0; i < 32768; ++i) text += word;
        return text + after;
    };
    const auto expectFault = [&](ErrorNumber number, int record, const std::string& told,
                                 const std::vector<std::string>& texts) {
        for (const std::string& text : texts) {
            EXPECT_THAT([&] { Convert(Record("T,001,001", "012 001,007 128\r\n") + text); },
                        FailsWith(number, AllOf(HasSubstr(Path + ", record " + std::to_string(record) + "\n" + told),
                                                HasSubstr("The runs before this record were kept."))))
                << text.substr(0, 60);
            EXPECT_EQ(Files.List(Temp).size(), static_cast<std::size_t>(record - 1)) << text.substr(0, 60);
            DeleteRuns();
        }
    };
    using enum ErrorNumber;
    // Cut between records, in each part of a header, and after a whole word; a word that was cut is short, as a trailer
    // is.
    expectFault(InputPastEndOfFile, 2, "The file ends without its end mark",
                {"", "T", "T,001,00", "T,001,002,SITE0001,0653,0311", "T,001,002,SITE0001,0653,031108,01", begun,
                 begun + "012 001", begun + "012 001,"});
    expectFault(
        InputPastEndOfFile, 3, "The file ends without its end mark",
        {begun + "012 001,007 1", begun + "012 001\r\n000", Record("T,001,002", "012 001\r\n") + DumpEnd.substr(1)});
    expectFault(TypeMismatch, 2, "The date \"133108\" does not exist.", {header("0653,133108,01000") + after});
    expectFault(TypeMismatch, 2, "The date \"022907\" does not exist.", {header("0653,022907,01000") + after});
    expectFault(TypeMismatch, 2, "The date \"      \" does not exist.", {header("0653,,01000") + after});
    expectFault(TypeMismatch, 2, "The time \"2460\" does not exist.", {header("2460,031108,01000") + after});
    expectFault(TypeMismatch, 2, "The time \"653 \" does not exist.", {header("653,031108,01000") + after});
    expectFault(Overflow, 2, "A number of this record is too large",
                {header("0653,031108,99999999999") + after, header("0653,031108,-32769") + after,
                 begun + "999 127\r\n" + after});
    expectFault(Overflow, 2, "The record has more than 32767 data words.",
                {manyWords("001 000,"), manyWords("\"001 000\",")});
    EXPECT_THAT([&] { Convert(""); },
                FailsWith(InputPastEndOfFile, AllOf(HasSubstr("record 1\n"), Not(HasSubstr("kept")))));
    EXPECT_THAT(Files.List(Temp), IsEmpty());
}

TEST_F(ConvertCounterFileTest, AStopAtAnyPointLeavesNothing) {
    Files.PutText(Path, Record("T,001,001") + Record("T,001,002") + DumpEnd);
    std::vector<double> told;
    std::vector<std::string> names;
    for (std::size_t asks = 1; names.empty(); ++asks) {
        EXPECT_THAT(Files.List(Temp), IsEmpty()) << "stopped when asked " << told.size() << " times";
        told.clear();
        const Progress progress([&](double done) {
            told.push_back(done);
            return told.size() < asks;
        });
        names = ConvertCounterFile(Files, Path, "/start/Temp", State.CurrentRun, progress);
    }
    EXPECT_EQ(names.size(), 2u);
    EXPECT_GE(told.size(), 4u) << "asked while reading and while writing";
    EXPECT_TRUE(std::is_sorted(told.begin(), told.end()));
    EXPECT_EQ(State.CurrentRun.Header.RunName, "S001R002-SITE0001-1");
    EXPECT_ERROR(FileNotFound, ConvertCounterFile(Files, "/start/none.tdc", Temp, State.CurrentRun));
    EXPECT_ERROR(PathNotFound, ConvertCounterFile(Files, Path, "/start/none", State.CurrentRun));
}

const std::string Two = "012 001,007 128\r\n";

std::vector<CounterStudy> StudiesOf(const std::string& text) {
    TestProgram program;
    program.Files.PutText(Path, text);
    return CounterStudies(program.Files, Path, program.End);
}

TEST(CounterStudies, TellsWhatTheFirstRecordOfAStudyTells) {
    EXPECT_THAT(StudiesOf("T,1,001,MAIN ST,0653,031108,01246\r\n012 001\r\n00001\r\n"
                          "T,2,001,A SITE CODE,9,12,01246\r\n00000\r\n" +
                          DumpEnd),
                ElementsAre(CounterStudy{"1", "MAIN ST", "03/11/08", "06:53", 1},
                            CounterStudy{"2", "A SITE C", "12/  /  ", "9 :  ", 1}));
}

TEST(CounterStudies, BeginAtATRecordWithAnotherNumber) {
    // The starts of records, and the study numbers with their runs.
    const std::vector<std::pair<std::vector<std::string>, std::string>> files = {
        {{"T,001", "T,001", "T,002", "T,001"}, "001:2 002:1 001:1 "},
        // The number before the first record is 0: a study of that number never begins there.
        {{"T,000", "T,003", "Total,000"}, "003:1 000:1 "},
        // Other records belong to the study under way, and to none before the first.
        {{":,001", "T,002", ":,002", ":::,004"}, "002:3 "},
        // They carry a number like any other record.
        {{":,001", "T,001"}, ""},
        {{}, ""}};
    for (const auto& [starts, expected] : files) {
        std::string text, counted;
        for (const std::string& start : starts) text += Record(start + ",001", Two);
        for (const CounterStudy& study : StudiesOf(text + DumpEnd + "\r\nnot looked at"))
            counted += study.Study + ":" + std::to_string(study.Runs) + " ";
        EXPECT_EQ(counted, expected);
    }
}

TEST(CounterStudies, OtherStartFieldsEndTheApplication) {
    const std::string first = Record("T,001,001", Two);
    for (const auto& given : {std::pair<std::string, int>{"X,1", 1},
                              {"\r\n" + DumpEnd, 1},
                              {first + "t,002", 2},
                              {first + Record(":,001,001", Two) + "012 001,", 3}})
        EXPECT_THAT([&] { StudiesOf(given.first); },
                    Throws<ApplicationEnded>(Field(
                        &ApplicationEnded::Fault,
                        AllOf(Field(&FatalFormatFault::File, Path), Field(&FatalFormatFault::Record, given.second),
                              Field(&FatalFormatFault::Expected, "a record that begins with \"T\" or \":\"")))))
            << given.first;
}

TEST(CounterStudies, AFileThatEndsTooEarlyIsError62AndNamesTheRecord) {
    for (const char* text : {"", "T,001", "T,001,001,SITE0001,0653,031108,01246\r\n012 001\r\n"})
        EXPECT_THAT([&] { StudiesOf(Record("T,001,001") + text); },
                    FailsWith(ErrorNumber::InputPastEndOfFile, HasSubstr(Path + ", record 2\n")))
            << text;
}

}  // namespace
}  // namespace vantor
