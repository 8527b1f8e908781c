#include <gmock/gmock.h>

#include "counter/CounterFile.h"
#include "fakes/FakePorts.h"
#include "fakes/ThrowsError.h"

namespace vantor {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

const std::string EndMark = "::::::::::::::::::::\r\n";
const std::string Path = "/start/Field Data Files/Day.tdc";

/// A record of two data words that begins with these two fields.
std::string Record(const std::string& start, const std::string& study) {
    return start + "," + study + ",001,SITE0001,0653,031108,01246\r\n012 001,007 128\r\n00002\r\n";
}

std::vector<CounterStudy> StudiesOf(const std::string& text) {
    TestProgram program;
    program.Files.PutText(Path, text);
    return CounterStudies(program.Files, Path, program.End);
}

/// The study numbers and their runs: "1:2 2:1".
std::string Counted(const std::string& text) {
    std::string result;
    for (const CounterStudy& study : StudiesOf(text))
        result += (result.empty() ? "" : " ") + study.Study + ":" + std::to_string(study.Runs);
    return result;
}

TEST(CounterStudies, TellsWhatTheFirstRecordOfAStudyTells) {
    const std::string text =
        "T,1,001,MAIN ST,0653,031108,01246\r\n012 001\r\n00001\r\n"
        "T,2,001,A SITE CODE,9,12,01246\r\n00000\r\n" +
        EndMark;
    EXPECT_THAT(StudiesOf(text), ElementsAre(CounterStudy{"1", "MAIN ST", "03/11/08", "06:53", 1},
                                             CounterStudy{"2", "A SITE C", "12/  /  ", "9 :  ", 1}));
}

TEST(CounterStudies, BeginAtATRecordWithAnotherNumber) {
    const auto records = [](const std::vector<std::pair<std::string, std::string>>& starts) {
        std::string text;
        for (const auto& [start, study] : starts) text += Record(start, study);
        return text + EndMark;
    };
    EXPECT_EQ(Counted(records({{"T", "001"}, {"T", "001"}, {"T", "002"}, {"T", "001"}})), "001:2 002:1 001:1");
    // The number before the first record is 0: a study of that number never begins there.
    EXPECT_EQ(Counted(records({{"T", "000"}, {"T", "003"}, {"Total", "000"}})), "003:1 000:1");
    // Other records belong to the study under way, and to none before the first.
    EXPECT_EQ(Counted(records({{":", "001"}, {"T", "002"}, {":", "002"}, {":::", "004"}})), "002:3");
    // They carry a number like any other record.
    EXPECT_EQ(Counted(records({{":", "001"}, {"T", "001"}})), "");
    EXPECT_EQ(Counted(EndMark + "not looked at"), "");
}

TEST(CounterStudies, OtherStartFieldsEndTheApplication) {
    const std::vector<std::pair<std::string, int>> texts = {{"X,1", 1},
                                                            {"\r\n" + EndMark, 1},
                                                            {Record("T", "001") + "t,002", 2},
                                                            {Record("T", "001") + Record(":", "001") + "012 001,", 3}};
    for (const auto& [text, record] : texts) {
        try {
            StudiesOf(text);
            ADD_FAILURE() << "went on with " << text;
        } catch (const ApplicationEnded& ended) {
            EXPECT_EQ(ended.Fault.File, Path);
            EXPECT_EQ(ended.Fault.Record, record);
            EXPECT_EQ(ended.Fault.Expected, "a record that begins with \"T\" or \":\"");
        }
    }
}

TEST(CounterStudies, AFileThatEndsTooEarlyIsError62AndNamesTheRecord) {
    for (const char* text : {"", "T,001", "T,001,001,SITE0001,0653,031108,01246\r\n012 001\r\n"}) {
        try {
            StudiesOf(Record("T", "001") + text);
            ADD_FAILURE() << "was counted: " << text;
        } catch (const RunTimeError& error) {
            EXPECT_EQ(error.Number(), ErrorNumber::InputPastEndOfFile);
            EXPECT_THAT(error.Place(), HasSubstr(Path + ", record 2\n"));
        }
    }
}

TEST(CounterStudies, OfTheSampleCorridor) {
    TestProgram program;
    program.Files.PutCopyOf(VANTOR_SAMPLES "Corridor.tdc", Path);
    EXPECT_THAT(CounterStudies(program.Files, Path, program.End),
                ElementsAre(CounterStudy{"001", "MAINSTNB", "03/11/08", "06:53", 8},
                            CounterStudy{"002", "MAINSTSB", "03/11/08", "07:01", 8}));
}

}  // namespace
}  // namespace vantor
