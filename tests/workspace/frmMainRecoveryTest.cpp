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

    CrashedWindow() {
        PutStudy("PM", {});
        StartWith({{"R1", 12}, {"R2", 13}});
    }
    void PassTwoSeconds() {
        auto& timer = Get<QTimer>("tmrRecovery");
        EXPECT_EQ(timer.interval(), 2000);
        EXPECT_TRUE(timer.isActive());
        QMetaObject::invokeMethod(&timer, "timeout");
    }
    void StartAgain(MessageAnswer answer = Yes) {
        Messages.Expect(AsksToRestore(AtEleven), answer);
        Window.reset();
        NewStudy(State, Time);
        Files.Modified[Kept] = ElevenFive;
        Start();
    }
    void ExpectNothingKept() {
        for (const std::string& path : Files.AllFiles()) EXPECT_FALSE(path.ends_with(".ldr")) << path;
    }
    void ExpectRestored() {
        EXPECT_THAT(RunsShown(), ElementsAre("R2 "));
        EXPECT_EQ(Text("lblSaved"), "Not saved");
    }
};

TEST_F(CrashedWindow, OffersTheChangesAtTheNextStartInPlaceOfTheStartUpScreen) {
    Press("BtnDeleteRun");
    TypeInto("StudyNotes", "rain");
    PassTwoSeconds();
    State.Settings.UseStartUpScreen = -1;
    StartAgain();
    EXPECT_THAT(OtherScreens.Shown, IsEmpty());
    ExpectRestored();
    EXPECT_EQ(Text("StudyNotes"), "rain");
    EXPECT_TRUE(HasFile(Group + "AM.2.ldr")) << "a second crash loses nothing either";
    Messages.Expect(AsksAboutChanges, No);
    EXPECT_TRUE(Window->close());
    ExpectNothingKept();
    EXPECT_EQ(Saved("AM").Record.RunCount, 2);
}

TEST_F(CrashedWindow, WhatEndsTheProgramAtOnceKeepsTheChangesAndIsNamed) {
    Press("BtnDeleteRun");
    Window->KeepBeforeEnd({"/f/Day.tdc", 3, "a record"});
    StartAgain();
    ExpectRestored();
    EXPECT_THAT(OtherScreens.Shown, ElementsAre("damaged counter file"));
    EXPECT_EQ(NotedDamagedFile(State.Choices)->Record, 3);
}

TEST_F(CrashedWindow, TheProgramStartsAgainOnlyWhenTheStudyMayBeLeft) {
    TypeInto("txtStudyName", "..");
    OtherScreens.OnShow["frmPrefs"] = [this] { return State.RestartWanted = true; };
    for (const auto answer : {Yes, No}) {
        Messages.Expect("This study has not been saved yet.\n  Do you want to save the study?", answer);
        if (answer == Yes) Messages.Expect(UnsafeNameMessage(".."));
        Do("mnuFilePrefs");
        EXPECT_EQ(Window->isVisible(), answer == Yes);
        EXPECT_EQ(State.RestartWanted, answer == No);
    }
}

TEST_F(CrashedWindow, OffersTheChangesWhenThatStudyIsOpened) {
    Press("BtnDeleteRun");
    PassTwoSeconds();
    StartAgain(Cancel);
    EXPECT_EQ(Text("lblSaved"), "Saved") << "another time";
    std::string chosen = "PM";
    OtherScreens.OnShow["frmStudyOpen"] = [&] { return OpenStudy(State, Files, DesktopServices, Time, Group, chosen); };
    Do("mnuFileOpen");
    chosen = "AM";
    Messages.Expect(AsksToRestore(AtEleven), Yes);
    Do("mnuFileOpen");
    ExpectRestored();
    Messages.Expect(AsksToSave("AM"), Yes);
    Do("mnuFileSave");
    ExpectNothingKept();
    EXPECT_EQ(RunsOf(Saved("AM")), Names{"R2"});
}

TEST_F(CrashedWindow, NothingIsLeftOfAStudyThatWasLeft) {
    TypeInto("StudyNotes", "rain");
    PassTwoSeconds();
    EXPECT_TRUE(HasFile(Kept));
    Messages.Expect(AsksAboutChanges, No);
    Do("mnuFileNew");
    EXPECT_EQ(Text("lblSaved"), "New study");
    PassTwoSeconds();
    ExpectNothingKept();
}

TEST_F(CrashedWindow, TheEndOfTheSessionKeepsTheChangesWithoutAQuestion) {
    TypeInto("StudyNotes", "rain");
    Window->KeepForEndOfSession();
    EXPECT_TRUE(Window->close());
    StartAgain();
    EXPECT_EQ(Current().Record.StudyNotes, "rain");

    Window->KeepForEndOfSession();
    TypeInto("StudyNotes", "fog");
    Messages.Expect(AsksAboutChanges, Cancel);
    EXPECT_FALSE(Window->close()) << "the session went on";
}

}  // namespace
}  // namespace vantor
