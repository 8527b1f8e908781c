#include "workspace/forms/frmStudySaveAs.h"

#include <gmock/gmock.h>

#include "workspace/StudyGroupTest.h"

namespace vantor {
namespace {

using testing::ElementsAre;

class frmStudySaveAsTest : public StudyGroupTest {
protected:
    const std::string CopyBoth =
        "A study uses the runs of its own Study Group.\n"
        "Do you want to copy these runs to Study Group: Oak & Elm Ave ?\nNB-001, NB-002";

    frmStudySaveAsTest() {
        State.CurrentStudy = StudyOf("AM Peak", {"NB-001", "NB-002"});
        PutStudy(MainSt, State.CurrentStudy);
        PutRun(MainSt, "NB-001");
        PutRun(MainSt, "NB-002");
        State.Paths.LastStudyName = "AM Peak";
        State.StudyUnchanged = false;
    }

    void ExpectSaved(const Shown<frmStudySaveAs>& form, const std::string& group, const std::string& name) {
        EXPECT_TRUE(form.IsAccepted());
        EXPECT_EQ(State.CurrentStudy.Record.StudyName, name);
        EXPECT_EQ(State.Paths.LastStudyGroupPath, group);
        EXPECT_EQ(State.Paths.LastStudyName, name);
        const auto study = LoadStudy(Files, group, name);
        ASSERT_TRUE(study);
        EXPECT_EQ(study->Record.StudyName, name);
        EXPECT_THAT(RunsOf(*study), ElementsAre("NB-001", "NB-002"));
    }

    void ExpectNotSaved(const QDialog& form) {
        EXPECT_TRUE(form.isVisible());
        EXPECT_EQ(State.CurrentStudy.Record.StudyName, "AM Peak");
        EXPECT_EQ(State.Paths.LastStudyGroupPath, MainSt);
        EXPECT_EQ(State.Paths.LastStudyName, "AM Peak");
        EXPECT_FALSE(State.StudyUnchanged);
    }
};

TEST_F(frmStudySaveAsTest, SavesUnderANewName) {
    const auto old = Files.Bytes(MainSt + "AM Peak.ld2");
    Shown<frmStudySaveAs> form(Program.Context);
    EXPECT_EQ(Find<QLineEdit>(form, "txtStudyName").text(), "AM Peak");
    EXPECT_EQ(Find<QLineEdit>(form, "txtStudyGroup").text(), "Main St");
    Type(form, "txtStudyName", "Morning and evening, 32 characters");
    // The study is saved though the settings cannot be.
    Files.FailChangeAfter(2, ErrorNumber::PermissionDenied);
    Program.Messages.Expect("Run-time error '70':\nPermission denied\n\n/program/VANTOR.bin");
    QTest::keyClick(&Find<QWidget>(form, "txtStudyName"), Qt::Key_Return);
    ExpectSaved(form, MainSt, "Morning and evening, 32 characte");
    EXPECT_EQ(Files.Bytes(MainSt + "AM Peak.ld2"), old);
}

TEST_F(frmStudySaveAsTest, AsksBeforeItReplacesAStudy) {
    PutStudy(MainSt, StudyOf("PM Peak", {}));
    Shown<frmStudySaveAs> form(Program.Context);
    ClickRow(form, "vaStudies", 1);
    const std::string question =
        "Study: PM Peak\n exists already in Study Group: Main St\nDo you want to replace it?\n\n"
        "It will be kept as PM Peak.ld2.bak.";
    Program.Messages.Expect(question, MessageAnswer::No);
    Click(form, "BtnSave");
    ExpectNotSaved(form);
    EXPECT_EQ(LoadStudy(Files, MainSt, "PM Peak")->Record.RunCount, 0);

    Program.Messages.Expect(question, MessageAnswer::Yes);
    Click(form, "BtnSave");
    ExpectSaved(form, MainSt, "PM Peak");
}

TEST_F(frmStudySaveAsTest, RefusesNamesThatCannotBeFiles) {
    const auto files = Files.AllFiles();
    struct Case {
        const char *Name, *Group;
        std::string Message;
    };
    const std::string rest = "\nLeave out \"..\" and the characters / \\ : * ? \" < > | and try again.";
    const Case cases[] = {
        {"  ", "Main St", "The name is empty.\nEnter a name and try again."},
        {"a/b", "Main St", "\"a/b\" cannot be used as a name." + rest},
        {"Ωmega", "Main St",
         "\"Ωmega\" cannot be used as a name.\nA name has at most 32 letters, digits and signs of the Western alphabet "
         "and no blank at its ends."},
        {"Fine", " ", "The name is empty.\nEnter a name and try again."},
        {"Fine", "../Temp", "\"../Temp\" cannot be used as a name." + rest},
    };
    for (const Case& given : cases) {
        Shown<frmStudySaveAs> form(Program.Context);
        Find<QLineEdit>(form, "txtStudyName").setText(QString::fromUtf8(given.Name));
        Type(form, "txtStudyGroup", given.Group);
        Program.Messages.Expect(given.Message);
        Click(form, "BtnSave");
        ExpectNotSaved(form);
    }
    EXPECT_EQ(Files.AllFiles(), files);
}

TEST_F(frmStudySaveAsTest, AnotherGroupGetsTheRunsItLacks) {
    PutRun(OakElm, "NB-002", "another survey");
    const auto others = Files.Bytes(OakElm + "NB-002.rd2");
    const std::string question =
        "A study uses the runs of its own Study Group.\n"
        "There are other runs of the same names in Study Group: Oak & Elm Ave\n"
        "They stay as they are, and the study will use them: NB-002\n";
    Shown<frmStudySaveAs> form(Program.Context);
    ClickOakElm(form);
    EXPECT_EQ(Find<QLineEdit>(form, "txtStudyGroup").text(), "Oak & Elm Ave");

    const std::string copies = "Do you want to copy these runs to Study Group: Oak & Elm Ave ?\nNB-001";
    Program.Messages.Expect(question + copies, MessageAnswer::No);
    Program.Messages.Expect("The study was not saved, because its runs are not in Study Group: Oak & Elm Ave");
    Click(form, "BtnSave");
    ExpectNotSaved(form);
    EXPECT_FALSE(Files.Bytes(OakElm + "NB-001.rd2"));

    Program.Messages.Expect(question + copies, MessageAnswer::Yes);
    Click(form, "BtnSave");
    ExpectSaved(form, OakElm, "AM Peak");
    EXPECT_EQ(Files.Bytes(OakElm + "NB-001.rd2"), Files.Bytes(MainSt + "NB-001.rd2"));
    EXPECT_EQ(Files.Bytes(OakElm + "NB-002.rd2"), others);

    // Back again: there is nothing to copy, but one run is another.
    Shown<frmStudySaveAs> back(Program.Context);
    Type(back, "txtStudyGroup", "main st");
    Type(back, "txtStudyName", "PM Peak");
    std::string there = question + "Do you want to save the study there?";
    there.replace(there.find("Oak & Elm Ave"), 13, "Main St");
    Program.Messages.Expect(there, MessageAnswer::Yes);
    Click(back, "BtnSave");
    ExpectSaved(back, MainSt, "PM Peak");
}

TEST_F(frmStudySaveAsTest, ATypedGroupIsMadeOnSave) {
    for (const char* run : {"NB-001", "NB-002"}) Files.Delete(MainSt + run + ".rd2");
    Shown<frmStudySaveAs> form(Program.Context);
    Type(form, "txtStudyGroup", "Elm St");
    EXPECT_EQ(EmptyText(form, "vaStudies"), "A new Study Group: its folder is made when the study is saved.");
    form.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&form));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    EXPECT_TRUE(Find<FolderTree>(form, "treStudyGroups").hasFocus());
    EXPECT_EQ(Find<QLineEdit>(form, "txtStudyGroup").text(), "Elm St");
    EXPECT_FALSE(Files.Find(Root + "Elm St"));
    Click(form, "BtnSave");
    ExpectSaved(form, Root + "Elm St/", "AM Peak");
}

TEST_F(frmStudySaveAsTest, AFailureLeavesTheStudyAsItWas) {
    const auto old = Files.Bytes(MainSt + "AM Peak.ld2");
    Shown<frmStudySaveAs> form(Program.Context);
    ClickOakElm(form);
    Files.FailChangeAfter(1, ErrorNumber::DiskFull);
    Program.Messages.Expect(CopyBoth, MessageAnswer::Yes);
    Program.Messages.Expect("Run-time error '61':\nDisk full\n\n" + OakElm + "NB-002.rd2");
    Click(form, "BtnSave");
    ExpectNotSaved(form);
    EXPECT_FALSE(Files.Bytes(OakElm + "NB-001.rd2"));

    Files.FailChangeAfter(4, ErrorNumber::DiskFull);
    Program.Messages.Expect(CopyBoth, MessageAnswer::Yes);
    Program.Messages.Expect("Run-time error '61':\nDisk full\n\n" + OakElm + "AM Peak.ld2");
    Click(form, "BtnSave");
    ExpectNotSaved(form);
    EXPECT_EQ(Files.Bytes(MainSt + "AM Peak.ld2"), old);
}

}  // namespace
}  // namespace vantor
