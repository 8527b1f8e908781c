#include "editing/forms/frmEditRunFile.h"

#include <gmock/gmock.h>

#include "RunScene.h"
#include "fakes/FormScene.h"

namespace vantor {
namespace {

/// Run "A" with a node, one key used and a start time with seconds; its study has a run "B", too.
class frmEditRunFileTest : public RunScene<FormScene<frmEditRunFile>> {
protected:
    frmEditRunFileTest() : RunScene(RunOf({40, 50, Node | 60, (16 << 8) | 50, 40, 40})) {
        RunRecord run = State.CurrentRun;
        run.Header.RunTime = TimeOf(7, 5, 42);
        run.Header.ButtonLabel[16] = "Red light";
        run.Header.Before = -1;
        Use(run);
        AppendRun(State.CurrentStudy, "B");
    }
};

TEST_F(frmEditRunFileTest, ShowsWhatTheSamplesSayOnACopy) {
    State.CurrentRun.Header.RunLength = 1;
    State.CurrentRun.Header.NumberOfSections = 1;
    Before = State.CurrentRun;
    Open(1);
    EXPECT_EQ(Text("Length") + "|" + Text("Duration") + "|" + Text("NumberOfSections"), "280|6|3");
    EXPECT_EQ(Text("ButtonLabel(16)"), "Signal");
    EXPECT_EQ(Text("SectionDist(1)") + "|" + Text("SectionDist(2)"), "150|130");
    PressKey(Qt::Key_Escape);
    EXPECT_FALSE(Window->isVisible()) << "nothing was typed, nothing is asked";
    EXPECT_EQ(State.CurrentRun, Before);
}

TEST_F(frmEditRunFileTest, SavesTheTexts) {
    Open(1);
    for (const auto& [field, text] : {std::pair{"CalConstant", "1100"},
                                      {"BeforeOrAfter", "before"},
                                      {"SectionName(1)", "Oak St"},
                                      {"Duration", "4"},
                                      {"Notes", "Wet road"}})
        TypeInto(field, QLatin1String(text));
    EXPECT_EQ(Text("lblChanges"),
              "Save changes RunTime (without its seconds), SampleCount, CalConstant (1000 to 1100), Before, After, "
              "Duration (6 to 4), ButtonLabel, SectionName (\"[Start]\", \"[End]\"), Notes.");
    PressKey(Qt::Key_Return);
    EXPECT_TRUE(IsAccepted());
    const RunRecord stored = OnDisk("A");
    EXPECT_EQ(stored, State.CurrentRun);
    EXPECT_EQ(std::tuple(stored.Header.CalConstant, stored.Header.After, stored.SampleValues.LastIndex()),
              std::tuple(1100, -1, 4));
    EXPECT_EQ(NamesOf(stored.Header, 2) + stored.Header.Notes, "[Start]|Oak StWet road");
    EXPECT_EQ(stored.Header.RunTime, TimeOf(7, 5)) << "as it is shown";
    EXPECT_EQ(Backup(), FileBefore);

    // The longer run's copy outlives a save that changes no sample.
    Open(1);
    TypeInto("Notes", "Dry road");
    Press("RunDetailsSave");
    EXPECT_EQ(OnDisk("A").Header.Notes, "Dry road");
    EXPECT_EQ(Backup(), FileBefore);
}

TEST_F(frmEditRunFileTest, AWrongTextStoresNothing) {
    Open(1);
    TypeInto("RunNumber", "9");
    TypeInto("Length", "a mile");
    PressTold("RunDetailsSave",
              "Run-time error '13':\nType mismatch\n\nLength: \"a mile\"\n"
              "Enter a whole number from -2147483648 to 2147483647. Nothing was stored.");
    EXPECT_TRUE(Get<QLineEdit>("Length").hasFocus());
    TypeInto("Length", "280");
    TypeInto("RunName", "b");
    PressTold("RunDetailsSave", "The run keeps its name. A run \"b\" is already in this study.");
    TypeInto("RunName", "A");
    Files.FailChangeAfter(0, ErrorNumber::DiskFull);
    PressTold("RunDetailsSave", "Run-time error '61':\nDisk full\n\n" + Group + "A.rd2.bak");
    EXPECT_TRUE(Window->isVisible());
    ExpectNothingStored();
    TypeInto("RunName", "C ");
    Press("RunDetailsSave");
    EXPECT_EQ(OnDisk("C").Header.RunNumber, 9);
    EXPECT_EQ(RunFileName(Entry()) + State.CurrentStudy.RunNames[1], "CC");
    EXPECT_EQ(Files.Bytes(Group + "A.rd2"), FileBefore);
    EXPECT_FALSE(Files.Bytes(Group + "C.rd2.bak"));
}

TEST_F(frmEditRunFileTest, AsksBeforeTypedTextsAreLost) {
    const std::string question = "The values of run: A\nhave changed. Do you want to save them?";
    const auto openAndType = [this] {
        Open(1);
        TypeInto("SiteCode", "MAINSTNB");
    };
    openAndType();
    Messages.Expect(question, MessageAnswer::Cancel);
    PressKey(Qt::Key_Escape);
    EXPECT_TRUE(Window->isVisible());
    EXPECT_TRUE(Leaves(question, MessageAnswer::No));
    openAndType();
    Press("RunDetailsCancel");
    EXPECT_FALSE(Window->isVisible());
    EXPECT_EQ(State.CurrentRun.Header.SiteCode, "");
    openAndType();
    EXPECT_TRUE(Leaves(question, MessageAnswer::Yes));
    EXPECT_TRUE(IsAccepted());
    EXPECT_EQ(State.CurrentRun.Header.SiteCode, "MAINSTNB");
}

TEST_F(frmEditRunFileTest, OpensAnyRun) {
    RunRecord many = RunOf(std::vector<int>(191, Node | 1));
    for (std::string& name : many.Header.SectionName) name = std::string(32, 'W');
    for (const RunRecord& run : {RunRecord(), RunOf({5}, 0), many}) {
        Use(run);
        Open(1);
        EXPECT_EQ(Text("Duration"), std::to_string(run.Header.SampleCount));
        EXPECT_EQ(Text("SectionName(15)"), run.Header.SectionName[15]);
        Press("RunDetailsSave");
        EXPECT_EQ(OnDisk("A").SampleValues, run.SampleValues);
    }
}

/// The field that is come to by keyboard is scrolled into view.
TEST_F(frmEditRunFileTest, FollowsTheKeyboard) {
    Open(1).resize(500, 260);
    EXPECT_TRUE(Get<QLineEdit>("RunName").hasFocus());
    PressKey(Qt::Key_M, Qt::AltModifier);
    EXPECT_TRUE(Get<QLineEdit>("NumberOfSections").hasFocus());
    EXPECT_FALSE(Get<QLineEdit>("NumberOfSections").visibleRegion().isEmpty());
    PressKey(Qt::Key_Tab);
    EXPECT_TRUE(Get<QLineEdit>("ButtonLabel(16)").hasFocus()) << "keys that are not used are passed over";
    PressKey(Qt::Key_Tab);
    EXPECT_TRUE(Get<QLineEdit>("SectionName(0)").hasFocus());
}

}  // namespace
}  // namespace vantor
