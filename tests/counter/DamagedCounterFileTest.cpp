#include "counter/DamagedCounterFile.h"

#include <gmock/gmock.h>

#include "CounterTexts.h"
#include "core/DamagedFile.h"
#include "counter/CounterFile.h"
#include "fakes/FakePorts.h"

namespace vantor {
namespace {

const std::string Path = FieldData + "Day.tdc";
const std::string Whole = Record("T,001,001", "012 001\r\n") + Record("T,001,002");

class DamagedCounterFile : public testing::Test, protected TestProgram {
protected:
    /// The program that starts after this text ended the one before, at the record.
    void StartAfter(const std::string& text, int record = 3) {
        Files.PutText(Path, text);
        NoteDamagedFile(Files, {Path, record, "a record"});
        LoadSettings(State, Files);
    }
    void ExpectQuestion(bool isAfterRuns, MessageAnswer answer) {
        Messages.Expect(
            std::string("A counter file ended the program: record ") + (isAfterRuns ? "3" : "1") + " of\n" + Path +
                "\nis damaged. It begins with \"X\" and not with \"T\" or \":\".\n" +
                (isAfterRuns ? "2 whole runs stand" : "No whole run stands") +
                " before it.\n\nSet aside, the file gets the name of a backup (.bak), which no list reads. " +
                (isAfterRuns ? "Converting its whole runs does that, too, and puts a file of those runs in its place. "
                             : "") +
                "Left as it is, it ends the program again when a list meets it.",
            answer);
    }
    bool IsNoted() { return NotedDamagedFile(LoadUserChoices(Files)).has_value(); }
};

TEST_F(DamagedCounterFile, GoesOnWithTheWholeRunsBeforeTheFault) {
    StartAfter(Whole + "X,001");
    for (int i = 0; i < 3; ++i) ExpectQuestion(true, MessageAnswer::Yes);
    Files.FailChangeAfter(1, ErrorNumber::DiskFull);
    EXPECT_THROW(OfferDamagedCounterFile(Context), RunTimeError);
    EXPECT_EQ(Files.Bytes(Path), BytesOf(Whole + "X,001")) << "back where it was";
    Work.AsksBeforeStop = 2;
    OfferDamagedCounterFile(Context);
    EXPECT_EQ(Files.Bytes(Path), BytesOf(Whole + "X,001")) << "stopped after the check";
    EXPECT_TRUE(IsNoted());

    Work.AsksBeforeStop = 100;
    OfferDamagedCounterFile(Context);
    EXPECT_EQ(OtherScreens.Shown, std::vector<std::string>{"frmUploadData"});
    EXPECT_EQ(OtherScreens.Uploads.back().ToConvert.value().Name, "Day");
    EXPECT_EQ(Files.Bytes(Path + ".bak"), BytesOf(Whole + "X,001"));
    EXPECT_EQ(Files.Bytes(Path), BytesOf(Whole + DumpEnd + "\r\n"));
    EXPECT_FALSE(IsNoted());
}

TEST_F(DamagedCounterFile, IsSetAsideOrLeftAsTheUserWants) {
    StartAfter("X", 1);
    ExpectQuestion(false, MessageAnswer::No);
    OfferDamagedCounterFile(Context);
    EXPECT_TRUE(Files.Bytes(Path));
    EXPECT_TRUE(IsNoted()) << "named again at the next start";
    ExpectQuestion(false, MessageAnswer::Yes);
    Messages.Expect("The damaged counter file is now:\n" + Path + ".bak");
    OfferDamagedCounterFile(Context);
    EXPECT_FALSE(Files.Bytes(Path));
    EXPECT_FALSE(IsNoted());
}

TEST_F(DamagedCounterFile, OneThatIsSoundOrGoneIsPassedOver) {
    StartAfter(Whole + DumpEnd);
    OfferDamagedCounterFile(Context);
    EXPECT_FALSE(IsNoted());
    StartAfter("", 0);
    Messages.Expect("Characters were lost on the serial line, which ended the program. This dump is gone:\n" + Path +
                    "\nDump the counter again.");
    OfferDamagedCounterFile(Context);
    EXPECT_FALSE(IsNoted());
}

}  // namespace
}  // namespace vantor
