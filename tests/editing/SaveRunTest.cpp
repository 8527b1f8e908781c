#include "editing/SaveRun.h"

#include <gtest/gtest.h>

#include "Profiles.h"
#include "core/RunFile.h"
#include "core/StudyFile.h"
#include "fakes/FakePorts.h"
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
        WriteRunFile(Files, State.CurrentRun, Group, "A");
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
    EXPECT_FALSE(Files.Bytes(Group + "A.bak"));
}

TEST_F(SaveRunTest, ChangedSamplesMoveBoundariesAndComputeAnew) {
    struct Case {
        RunRecord Edited;
        std::int32_t Cut, Start, End;
    };
    for (const Case& c : {Case{RunOf({10, 10, 10, 10, 10}), 10, 10, 40},
                          {RunOf({10, 10, 10}), 30, 1, 20},
                          {RunOf({10, 10, 10, 10}), 0, 20, 40},
                          {RunOf({0, 0, 0, 0}), 0, 0, 0}}) {
        Entry().CDStartDist = 20;
        Entry().CDEndDist = 50;
        State.CurrentRun = RunOf({10, 10, 10, 10, 10, 10});
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
    EXPECT_EQ(*Files.Bytes(Group + "A.bak"), Before);
    EXPECT_EQ(Stored().SampleValues[3], 40);
    // 10 + 10, + 10 + 40: sample 2 to 3 is 1 s; 30 ft at (10 + 40) / 2 ft/s are 1.2 s.
    EXPECT_EQ(Entry().ControlDelay, 0);
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
    EXPECT_FALSE(Files.Bytes(Group + "B.bak"));
}

TEST_F(SaveRunTest, AnyErrorLeavesAllAsItWas) {
    const RunRecord run = State.CurrentRun;
    const StudyRunEntry entry = Entry();
    const auto expectNothingHappened = [&] {
        EXPECT_EQ(State.CurrentRun, run);
        EXPECT_EQ(Entry(), entry);
        EXPECT_EQ(*Files.Bytes(Group + "A.rd2"), Before);
        EXPECT_FALSE(Files.Bytes(Group + "A.bak"));
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
