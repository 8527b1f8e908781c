#include "counter/DamagedCounterFile.h"

#include <gmock/gmock.h>

#include "core/DamagedFile.h"
#include "counter/CounterFile.h"
#include "fakes/FakePorts.h"

namespace vantor {
namespace {

const std::string Path = "/start/Field Data Files/Day.tdc";
const std::string Whole =
    "T,001,001,SITE0001,0653,031108,01246\r\n012 001\r\n00002\r\n"
    "T,001,002,SITE0001,0714,031108,01246\r\n012 001\r\n00002\r\n";

class DamagedCounterFile : public testing::Test {
protected:
    /// The program that starts after this text ended the one before, at the record.
    void StartAfter(const std::string& text, int record = 3) {
        Program.Files.PutText(Path, text);
        NoteDamagedFile(Program.Files, {Path, record, "a record"});
        LoadSettings(Program.State, Program.Files);
    }
    std::string Question(const std::string& record, const std::string& runs, const std::string& converting) {
        return "A counter file ended the program: record " + record + " of\n" + Path +
               "\nis damaged. It begins with \"X\" and not with \"T\" or \":\".\n" + runs +
               "\n\nSet aside, the file gets the name of a backup (.bak), which no list reads. " + converting +
               "Left as it is, it ends the program again when a list meets it.";
    }
    const std::string Converting =
        "Converting its whole runs does that, too, and puts a file of those runs in its place. ";
    bool IsNoted() { return NotedDamagedFile(LoadUserChoices(Program.Files)).has_value(); }

    TestProgram Program;
};

TEST_F(DamagedCounterFile, GoesOnWithTheWholeRunsBeforeTheFault) {
    StartAfter(Whole + "X,001");
    Program.Messages.Expect(Question("3", "2 whole runs stand before it.", Converting), MessageAnswer::Yes);
    OfferDamagedCounterFile(Program.Context);
    EXPECT_EQ(Program.OtherScreens.Shown, std::vector<std::string>{"frmUploadData"});
    EXPECT_TRUE(Program.State.CounterFileChosen);
    EXPECT_EQ(Program.State.ChosenCounterFileName, "Day");
    EXPECT_EQ(Program.Files.Bytes(Path + ".bak"), BytesOf(Whole + "X,001"));
    EXPECT_EQ(CounterStudies(Program.Files, Path, Program.End).at(0).Runs, 2);
    EXPECT_FALSE(IsNoted());

    StartAfter(Whole + "X,001");
    Program.Messages.Expect(Question("3", "2 whole runs stand before it.", Converting), MessageAnswer::Yes);
    Program.Files.FailChangeAfter(1, ErrorNumber::DiskFull);
    EXPECT_THROW(OfferDamagedCounterFile(Program.Context), RunTimeError);
    EXPECT_EQ(Program.Files.Bytes(Path), BytesOf(Whole + "X,001")) << "back where it was";

    Program.Messages.Expect(Question("3", "2 whole runs stand before it.", Converting), MessageAnswer::Yes);
    Program.Work.AsksBeforeStop = 2;
    OfferDamagedCounterFile(Program.Context);
    EXPECT_EQ(Program.Files.Bytes(Path), BytesOf(Whole + "X,001")) << "stopped after the check";
    EXPECT_TRUE(IsNoted());
}

TEST_F(DamagedCounterFile, IsSetAsideOrLeftAsTheUserWants) {
    StartAfter("X", 1);
    const std::string question = Question("1", "No whole run stands before it.", "");
    Program.Messages.Expect(question, MessageAnswer::No);
    OfferDamagedCounterFile(Program.Context);
    EXPECT_TRUE(Program.Files.Bytes(Path));
    EXPECT_TRUE(IsNoted()) << "named again at the next start";
    Program.Messages.Expect(question, MessageAnswer::Yes);
    Program.Messages.Expect("The damaged counter file is now:\n" + Path + ".bak");
    OfferDamagedCounterFile(Program.Context);
    EXPECT_FALSE(Program.Files.Bytes(Path));
    EXPECT_FALSE(IsNoted());
}

TEST_F(DamagedCounterFile, OneThatIsSoundOrGoneIsPassedOver) {
    StartAfter(Whole + "::::::::::::::::::::\r\n");
    OfferDamagedCounterFile(Program.Context);
    EXPECT_FALSE(IsNoted());
    StartAfter("", 0);
    Program.Messages.Expect("Characters were lost on the serial line, which ended the program. This dump is gone:\n" +
                            Path + "\nDump the counter again.");
    OfferDamagedCounterFile(Program.Context);
    EXPECT_FALSE(IsNoted());
}

}  // namespace
}  // namespace vantor
