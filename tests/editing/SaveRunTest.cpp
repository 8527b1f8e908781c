#include "editing/SaveRun.h"

#include <gtest/gtest.h>

#include "Profiles.h"
#include "core/RunFile.h"
#include "core/StudyFile.h"
#include "editing/TrimRun.h"
#include "fakes/FakePorts.h"
#include "fakes/PutFiles.h"
#include "fakes/ThrowsError.h"

namespace vantor {
namespace {

const std::string Group = "/start/Study Groups/Main/";

/// Run "A" of 60 ft in the study, its boundaries at 20 and 50 ft.
class SaveRunTest : public testing::Test, protected TestProgram {
protected:
    SaveRunTest() {
        Files.CreateFolder(Group);
        State.Paths.LastStudyGroupPath = Group;
        State.CurrentRun = RunOf({10, 10, 10, 10, 10, 10});
        PutRunFile(Files, State.CurrentRun, Group, "A");
        Before = *Files.Bytes(Group + "A.rd2");
        AppendRun(State.CurrentStudy, "A");
        Entry().CDStartDist = 20;
        Entry().CDEndDist = 50;
        Entry().ControlDelay = 77;
    }

    StudyRunEntry& Entry() { return State.CurrentStudy.Entries[1]; }
    RunRecord Stored() {
        RunRecord stored;
        EXPECT_TRUE(ReadRunFile(Files, Messages, stored, Group, "A", true));
        return stored;
    }

    std::vector<std::byte> Before;
};

TEST_F(SaveRunTest, HeaderAloneLeavesTheFigures) {
    RunRecord edited = State.CurrentRun;
    edited.Header.Notes = "wet road";
    SaveRun(State, Files, edited, {.Entry = 1});
    EXPECT_EQ(State.CurrentRun.Header.Notes, "wet road");
    EXPECT_EQ(Stored(), State.CurrentRun);
    EXPECT_EQ(Entry().ControlDelay, 77);
    EXPECT_TRUE(State.StudyUnchanged);
    EXPECT_FALSE(Files.Bytes(Group + "A.rd2.bak"));
}

TEST_F(SaveRunTest, ChangedSamplesMoveBoundariesAndComputeAnew) {
    struct Case {
        RunRecord Edited;
        std::int32_t Cut, Start, End;
    };
    for (const Case& c : {Case{RunOf({10, 10, 10, 10, 10}), 10, 10, 40},
                          {RunOf({10, 10, 10}), 20, 0, 30},  // 20 ft are cut, and the 10 ft of second 1 count twice
                          {RunOf({10, 10, 10}), 30, 0, 20},
                          {RunOf({10, 10, 10, 10}), 0, 20, 0},
                          {RunOf({0, 0, 0, 0}), 0, 0, 0}}) {
        Entry().CDStartDist = 20;
        Entry().CDEndDist = 50;
        State.CurrentRun = RunOf({10, 10, 10, 10, 10, 10});
        State.CurrentRun.Header.RunName = "A";
        RunRecord edited = c.Edited;
        edited.Header.RunName = "A";
        edited.Header.RunLength = 60;  // as it may be typed
        SaveRun(State, Files, edited, {.Entry = 1, .KeepsBackup = true, .FeetCutFromStart = c.Cut});
        EXPECT_EQ(Entry().CDStartDist, c.Start);
        EXPECT_EQ(Entry().CDEndDist, c.End);
        EXPECT_FALSE(State.StudyUnchanged);
    }
    EXPECT_NE(Entry().ControlDelay, 77);
}

TEST_F(SaveRunTest, KeepsTheFileThatWasThere) {
    RunRecord edited = State.CurrentRun;
    edited.SampleValues[3] = 40;
    SaveRun(State, Files, edited, {.Entry = 1, .KeepsBackup = true});
    EXPECT_EQ(*Files.Bytes(Group + "A.rd2.bak"), Before);
    EXPECT_EQ(Stored().SampleValues[3], 40);
    // 10 + 10, + 10 + 40: sample 2 to 3 is 1 s; 30 ft at (10 + 40) / 2 ft/s are 1.2 s.
    EXPECT_EQ(Entry().ControlDelay, 0);
}

TEST_F(SaveRunTest, ARestoredRunHasItsBoundariesAtTheirPlaces) {
    Files.PutText(Group + "A.bak", "an older run, or anything");
    State.CurrentRun.Header.RunTime = TimeOf(23, 59, 59);
    State.CurrentRun.SampleValues[2] = 12;
    const RunRecord whole = State.CurrentRun;
    PutRunFile(Files, State.CurrentRun, Group, "A");
    Entry().CDStartDist = 30;
    ASSERT_EQ(
        SaveRun(State, Files, CutRun(whole, 3, 6), {.Entry = 1, .KeepsBackup = true, .FeetCutFromStart = 22}).Warning,
        "");
    EXPECT_EQ(Entry().CDStartDist, 8);
    EXPECT_EQ(Entry().CDEndDist, 28);

    const auto backups = RunBackupsOf(Files, Group, "A");
    ASSERT_EQ(backups.size(), 1u);
    EXPECT_EQ(backups[0].Header.SampleCount, 6);
    EXPECT_EQ(RestoreRun(State, Files, backups[0], 1).Backup, "A.rd2.bak2");
    EXPECT_EQ(State.CurrentRun, whole);
    EXPECT_EQ(Stored(), whole);
    EXPECT_EQ(Entry().CDStartDist, 30);
    EXPECT_EQ(Entry().CDEndDist, 50);

    // Of two runs that have nothing in common no boundary can be carried over.
    State.CurrentRun = RunOf({7, 7, 7, 7});
    State.CurrentRun.Header.RunName = "A";
    EXPECT_EQ(
        RestoreRun(State, Files, backups[0], 1).Warning,
        "Both boundaries of run A have no place in the samples that are left, so the run does not count any more.\n"
        "Set them again on the speed profile of the run.");
    EXPECT_EQ(Entry().CDStartDist + Entry().CDEndDist, 0);
}

TEST_F(SaveRunTest, NewNameFollowsIntoTheStudy) {
    EXPECT_NE(RunNameProblem(State, Files, "a"), "");
    EXPECT_EQ(RunNameProblem(State, Files, "B"), "");
    RunRecord edited = State.CurrentRun;
    edited.Header.RunName = "B  ";
    SaveRun(State, Files, edited, {.Entry = 1, .KeepsBackup = true});
    EXPECT_EQ(Entry().EntryRunName, "B");
    EXPECT_EQ(State.CurrentStudy.RunNames[1], "B");
    EXPECT_EQ(*Files.Bytes(Group + "A.rd2"), Before);
    EXPECT_TRUE(Files.Bytes(Group + "B.rd2"));
    EXPECT_FALSE(Files.Bytes(Group + "B.rd2.bak"));
}

TEST_F(SaveRunTest, AnyErrorLeavesAllAsItWas) {
    const RunRecord run = State.CurrentRun;
    const StudyRunEntry entry = Entry();
    const auto expectNothingHappened = [&] {
        EXPECT_EQ(State.CurrentRun, run);
        EXPECT_EQ(Entry(), entry);
        EXPECT_EQ(*Files.Bytes(Group + "A.rd2"), Before);
        EXPECT_FALSE(Files.Bytes(Group + "A.rd2.bak"));
        EXPECT_TRUE(State.StudyUnchanged);
    };
    RunRecord edited = run;
    edited.SampleValues[3] = 40;
    Files.FailChangeAfter(0, ErrorNumber::DiskFull);
    EXPECT_ERROR(DiskFull, SaveRun(State, Files, edited, {.Entry = 1, .KeepsBackup = true}));
    expectNothingHappened();

    // Without a speed there is no ideal travel time.
    State.Settings.SpeedFactor = 0;
    EXPECT_ERROR(DivisionByZero, SaveRun(State, Files, edited, {.Entry = 1, .KeepsBackup = true}));
    expectNothingHappened();
}

}  // namespace
}  // namespace vantor
