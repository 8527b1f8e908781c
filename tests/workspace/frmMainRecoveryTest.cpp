#include <QTimer>

#include "core/DamagedFile.h"
#include "core/Paths.h"
#include "workspace/MainWindow.h"
#include "workspace/StudyWorkspace.h"

namespace vantor {
namespace {

/// A main window whose program can end at once.
struct CrashedWindow : MainWindow {
    const std::string Kept = Group + "AM.1.ldr";
    const std::string Question =
        "Study \"AM\" in Study Group: Main Street\nwas not closed properly. Its changes were kept on 03/14/08 at 11:05."
        "\n\nDo you want to restore the changes?\nNo deletes them, Cancel leaves them for another time.";

    void PassTwoSeconds() {
        auto& timer = Find<QTimer>(*Window, "tmrRecovery");
        EXPECT_EQ(timer.interval(), 2000);
        EXPECT_TRUE(timer.isActive());
        QMetaObject::invokeMethod(&timer, "timeout");
    }
    void StartAgain() {
        Window.reset();
        NewStudy(State, Time);
        Files.Modified[Kept] = {DateOf(2008, 3, 14).Days + TimeOf(11, 5).Days};
        Start();
    }
};

TEST_F(CrashedWindow, OffersTheChangesAtTheNextStartInPlaceOfTheStartUpScreen) {
    StartWith({{"R1", 12}, {"R2", 13}});
    Press("BtnDeleteRun");
    Type(*Window, "StudyNotes", "rain");
    PassTwoSeconds();
    EXPECT_TRUE(Files.Bytes(Kept));
    State.Settings.UseStartUpScreen = -1;
    Messages.Expect(Question, Yes);
    StartAgain();
    EXPECT_EQ(OtherScreens.Shown, Names{});
    EXPECT_EQ(List().model()->rowCount(), 1);
    EXPECT_EQ(Find<QLineEdit>(*Window, "StudyNotes").text(), "rain");
    EXPECT_EQ(Label("lblSaved"), "Not saved");
    Messages.Expect(AsksAboutChanges, No);
    EXPECT_TRUE(Window->close());
    EXPECT_FALSE(Files.Bytes(Kept)) << "the user left without the changes";
    EXPECT_EQ(Saved("AM").Record.RunCount, 2);
}

TEST_F(CrashedWindow, WhatEndsTheProgramAtOnceKeepsTheChangesAndIsNamed) {
    StartWith({{"R1", 12}, {"R2", 13}});
    Press("BtnDeleteRun");
    Window->KeepBeforeEnd({"/f/Day.tdc", 3, "a record"});
    EXPECT_TRUE(Files.Bytes(Kept));
    Messages.Expect(Question, Yes);
    StartAgain();
    EXPECT_EQ(OtherScreens.Shown, Names{"damaged counter file"});
    EXPECT_EQ(NotedDamagedFile(State.Choices)->Record, 3);
    EXPECT_EQ(List().model()->rowCount(), 1);
}

TEST_F(CrashedWindow, TheProgramStartsAgainOnlyWhenTheStudyMayBeLeft) {
    StartWith({{"R1", 12}});
    Type(*Window, "txtStudyName", "..");
    OtherScreens.OnShow["frmPrefs"] = [this] { return State.RestartWanted = true; };
    Messages.Expect("This study has not been saved yet.\n  Do you want to save the study?", Yes);
    Messages.Expect(UnsafeNameMessage(".."));
    Choose("mnuFilePrefs");
    EXPECT_TRUE(Window->isVisible());
    EXPECT_FALSE(State.RestartWanted);
    Messages.Expect("This study has not been saved yet.\n  Do you want to save the study?", No);
    Choose("mnuFilePrefs");
    EXPECT_FALSE(Window->isVisible());
    EXPECT_TRUE(State.RestartWanted);
}

TEST_F(CrashedWindow, OffersTheChangesWhenThatStudyIsOpened) {
    StartWith({{"R1", 12}, {"R2", 13}});
    PutStudy("PM", {});
    Press("BtnDeleteRun");
    PassTwoSeconds();
    Messages.Expect(Question, MessageAnswer::Cancel);
    StartAgain();
    EXPECT_EQ(Label("lblSaved"), "Saved") << "another time";
    std::string chosen = "PM";
    OtherScreens.OnShow["frmStudyOpen"] = [&] { return OpenStudy(State, Files, DesktopServices, Time, Group, chosen); };
    Choose("mnuFileOpen");
    chosen = "AM";
    Messages.Expect(Question, Yes);
    Choose("mnuFileOpen");
    EXPECT_EQ(List().model()->rowCount(), 1);
    EXPECT_EQ(Label("lblSaved"), "Not saved");
}

TEST_F(CrashedWindow, NothingIsLeftOfAStudyThatWasSavedOrLeft) {
    StartWith({{"R1", 12}});
    const auto change = [this] {
        Type(*Window, "StudyNotes", "rain");
        PassTwoSeconds();
        EXPECT_TRUE(Files.Bytes(Kept));
    };
    change();
    Messages.Expect("Do you want to save study: AM\n in Study Group: Main Street ?", Yes);
    Choose("mnuFileSave");
    EXPECT_FALSE(Files.Bytes(Kept)) << "saved";
    change();
    Messages.Expect(AsksAboutChanges, No);
    Choose("mnuFileNew");
    EXPECT_FALSE(Files.Bytes(Kept)) << "another study took its place";
    EXPECT_EQ(Label("lblSaved"), "New study");
    PassTwoSeconds();
    Choose("mnuFileExit");
    for (const std::string& path : Files.AllFiles()) EXPECT_FALSE(path.ends_with(".ldr")) << path;
}

TEST_F(CrashedWindow, TheEndOfTheSessionKeepsTheChangesWithoutAQuestion) {
    StartWith({{"R1", 12}});
    Type(*Window, "StudyNotes", "rain");
    Window->KeepForEndOfSession();
    EXPECT_TRUE(Window->close());
    Messages.Expect(Question, Yes);
    StartAgain();
    EXPECT_EQ(Current().Record.StudyNotes, "rain");

    Window->KeepForEndOfSession();
    Type(*Window, "StudyNotes", "fog");
    Messages.Expect(AsksAboutChanges, MessageAnswer::Cancel);
    EXPECT_FALSE(Window->close()) << "the session went on";
}

TEST_F(CrashedWindow, AStudyInAFolderThatCannotBeWrittenIsWorkedOnUndisturbed) {
    StartWith({{"R1", 12}});
    Type(*Window, "StudyNotes", "rain");
    Files.FailChangeAfter(0, ErrorNumber::PermissionDenied);
    PassTwoSeconds();
    EXPECT_EQ(Label("lblSaved"), "Not saved");
    Messages.Expect(AsksAboutChanges, Yes);
    EXPECT_TRUE(Window->close());
}

}  // namespace
}  // namespace vantor
