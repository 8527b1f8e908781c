#include "editing/forms/frmEditRunFile.h"

#include <gmock/gmock.h>

#include <QLabel>

#include "Profiles.h"
#include "core/RunFile.h"
#include "core/StudyFile.h"
#include "core/forms/Named.h"
#include "fakes/Clicks.h"
#include "fakes/FakePorts.h"
#include "fakes/PutFiles.h"

namespace vantor {
namespace {

class frmEditRunFileTest : public testing::Test {
protected:
    const std::string Group = "/start/Study Groups/Main St/";

    frmEditRunFileTest() {
        Files.CreateFolder(Group);
        State.Paths.LastStudyGroupPath = Group;
        RunRecord run = RunOf({40, 50, NodeFlag | 60, (16 << 8) | 50, 40, 40});
        run.Header.RunDate = DateOf(2008, 3, 11);
        run.Header.RunTime = TimeOf(7, 5, 42);
        run.Header.ButtonLabel[16] = "Red light";
        run.Header.Before = -1;
        PutRunFile(Files, run, Group, "NB-001");
        State.CurrentRun = run;
        AppendRun(State.CurrentStudy, "NB-001");
        AppendRun(State.CurrentStudy, "NB-002");
    }

    frmEditRunFile& Open() {
        Form = std::make_unique<frmEditRunFile>(Program.Context, 1);
        Form->show();
        return *Form;
    }

    std::string Text(const char* field) { return FromQt(Find<QLineEdit>(*Form, field).text()); }

    RunRecord Stored(const std::string& name) {
        RunRecord run;
        ReadRunFile(Files, Program.Messages, run, Group, name, true);
        return run;
    }

    TestProgram Program;
    ApplicationState& State = Program.State;
    MemoryFileSystem& Files = Program.Files;
    std::unique_ptr<frmEditRunFile> Form;
};

TEST_F(frmEditRunFileTest, ShowsWhatTheSamplesSayOnACopy) {
    State.CurrentRun.Header.RunLength = 1;
    State.CurrentRun.Header.NumberOfSections = 1;
    const RunRecord before = State.CurrentRun;
    EXPECT_EQ(Open().windowTitle(), "Edit Run File");
    EXPECT_EQ(Text("Length") + "|" + Text("Duration") + "|" + Text("NumberOfSections"), "280|6|3");
    EXPECT_EQ(Text("ButtonLabel(16)"), "Signal");
    EXPECT_TRUE(Find<QLineEdit>(*Form, "ButtonLabel(16)").isEnabled());
    EXPECT_FALSE(Find<QLineEdit>(*Form, "ButtonLabel(15)").isEnabled());
    EXPECT_EQ(Text("SectionName(0)") + Text("SectionName(3)"), "[Start][End]");
    EXPECT_EQ(Text("SectionDist(1)") + "|" + Text("SectionDist(2)"), "150|130");
    EXPECT_TRUE(Find<QLineEdit>(*Form, "SectionDist(1)").isReadOnly());
    EXPECT_EQ(Find<QWidget>(*Form, "RunDetailsCancel").toolTip(),
              "Cancel any changes made to this screen and return to the Summary Screen.");
    QTest::keyClick(Form.get(), Qt::Key_Escape);
    EXPECT_FALSE(Form->isVisible()) << "nothing was typed, nothing is asked";
    EXPECT_EQ(State.CurrentRun, before);
}

TEST_F(frmEditRunFileTest, SavesTheTexts) {
    Open();
    Type(*Form, "CalConstant", "1100");
    Type(*Form, "BeforeOrAfter", "before");
    Type(*Form, "SectionName(1)", "Oak St");
    Type(*Form, "Notes", "Wet road");
    Type(*Form, "Duration", "4");
    EXPECT_EQ(Find<QLabel>(*Form, "lblChanges").text(),
              "Save changes SampleCount, CalConstant, Before, After, Duration, ButtonLabel, SectionName, Notes.");
    const auto old = Files.Bytes(Group + "NB-001.rd2");
    QTest::keyClick(&Find<QWidget>(*Form, "Notes"), Qt::Key_Return);
    EXPECT_FALSE(Form->isVisible());
    const RunRecord stored = Stored("NB-001");
    EXPECT_EQ(stored, State.CurrentRun);
    EXPECT_EQ(stored.Header.CalConstant, 1100);
    EXPECT_EQ(stored.Header.After, -1);
    EXPECT_EQ(stored.Header.SectionName[0] + stored.Header.SectionName[1], "[Start]Oak St");
    EXPECT_EQ(stored.Header.Notes, "Wet road");
    EXPECT_EQ(stored.Header.RunTime, TimeOf(7, 5, 42)) << "its seconds are not shown, but kept";
    EXPECT_EQ(stored.SampleValues.LastIndex(), 4);
    EXPECT_EQ(Files.Bytes(Group + "NB-001.rd2.bak"), old);

    // The longer run's copy outlives a save that changes no sample.
    Open();
    Type(*Form, "Notes", "Dry road");
    Click(*Form, "RunDetailsSave");
    EXPECT_EQ(Stored("NB-001").Header.Notes, "Dry road");
    EXPECT_EQ(Files.Bytes(Group + "NB-001.rd2.bak"), old);
}

TEST_F(frmEditRunFileTest, AWrongTextStoresNothing) {
    const RunRecord before = State.CurrentRun;
    const auto file = Files.Bytes(Group + "NB-001.rd2");
    Open();
    Form->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(Form.get()));
    Type(*Form, "RunNumber", "9");
    Type(*Form, "Length", "a mile");
    Program.Messages.Expect(
        "Run-time error '13':\nType mismatch\n\nLength: \"a mile\"\n"
        "Enter a whole number from -2147483648 to 2147483647. Nothing was stored.");
    Click(*Form, "RunDetailsSave");
    EXPECT_TRUE(Form->isVisible());
    EXPECT_TRUE(Find<QLineEdit>(*Form, "Length").hasFocus());

    Type(*Form, "Length", "280");
    Files.FailChangeAfter(0, ErrorNumber::DiskFull);
    Program.Messages.Expect("Run-time error '61':\nDisk full\n\n" + Group + "NB-001.rd2.bak");
    Click(*Form, "RunDetailsSave");
    EXPECT_EQ(State.CurrentRun, before);
    EXPECT_EQ(Files.Bytes(Group + "NB-001.rd2"), file);
    Click(*Form, "RunDetailsSave");
    EXPECT_EQ(Stored("NB-001").Header.RunNumber, 9);
}

TEST_F(frmEditRunFileTest, ANewNameMustBeFree) {
    Open();
    Type(*Form, "RunName", "nb-002");
    Program.Messages.Expect("The run keeps its name. A run \"nb-002\" is already in this study.");
    Click(*Form, "RunDetailsSave");
    EXPECT_TRUE(Form->isVisible());
    Type(*Form, "RunName", "12345678901234567890123456789012345");
    Click(*Form, "RunDetailsSave");
    const std::string name = "12345678901234567890123456789012";
    EXPECT_EQ(Stored(name).SampleValues, State.CurrentRun.SampleValues);
    EXPECT_EQ(State.CurrentStudy.RunNames[1], name);
    EXPECT_TRUE(Files.Bytes(Group + "NB-001.rd2"));
}

TEST_F(frmEditRunFileTest, AsksBeforeTypedTextsAreLost) {
    Open();
    Type(*Form, "SiteCode", "MAINSTNB");
    const std::string question = "The values of run: NB-001\nhave changed. Do you want to save them?";
    Program.Messages.Expect(question, MessageAnswer::Cancel);
    QTest::keyClick(Form.get(), Qt::Key_Escape);
    EXPECT_TRUE(Form->isVisible());
    Program.Messages.Expect(question, MessageAnswer::No);
    Form->close();
    EXPECT_FALSE(Form->isVisible());
    Open();
    Type(*Form, "SiteCode", "MAINSTNB");
    Click(*Form, "RunDetailsCancel");
    EXPECT_FALSE(Form->isVisible());
    EXPECT_EQ(State.CurrentRun.Header.SiteCode, "");
    Open();
    Type(*Form, "SiteCode", "MAINSTNB");
    Program.Messages.Expect(question, MessageAnswer::Yes);
    Form->close();
    EXPECT_FALSE(Form->isVisible());
    EXPECT_EQ(State.CurrentRun.Header.SiteCode, "MAINSTNB");
}

TEST_F(frmEditRunFileTest, OpensAnyRun) {
    RunRecord many = RunOf(std::vector<int>(191, NodeFlag | 1));
    for (std::string& name : many.Header.SectionName) name = std::string(32, 'W');
    for (const RunRecord& run : {RunRecord(), RunOf({5}, 0), many}) {
        State.CurrentRun = run;
        State.CurrentRun.Header.RunName = "NB-001";
        Open();
        EXPECT_EQ(Text("Duration"), std::to_string(run.Header.SampleCount));
        EXPECT_EQ(Text("SectionName(15)"), run.Header.SectionName[15]);
        Click(*Form, "RunDetailsSave");
        EXPECT_EQ(Stored("NB-001").SampleValues, run.SampleValues);
    }
}

/// The field that is come to by keyboard is scrolled into view.
TEST_F(frmEditRunFileTest, FollowsTheKeyboard) {
    Open().resize(500, 260);
    Form->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(Form.get()));
    EXPECT_TRUE(Find<QLineEdit>(*Form, "RunName").hasFocus());
    QTest::keyClick(Form.get(), Qt::Key_M, Qt::AltModifier);
    auto& sections = Find<QLineEdit>(*Form, "NumberOfSections");
    EXPECT_TRUE(sections.hasFocus());
    EXPECT_FALSE(sections.visibleRegion().isEmpty());
    QTest::keyClick(&sections, Qt::Key_Tab);
    EXPECT_TRUE(Find<QLineEdit>(*Form, "ButtonLabel(16)").hasFocus()) << "keys that are not used are passed over";
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    EXPECT_TRUE(Find<QLineEdit>(*Form, "SectionName(0)").hasFocus());
}

}  // namespace
}  // namespace vantor
