#include "workspace/StudyWorkspace.h"

#include <gtest/gtest.h>

#include "core/Paths.h"
#include "fakes/ThrowsError.h"
#include "workspace/MainStreet.h"
#include "workspace/StudyCommands.h"

namespace vantor {
namespace {

struct Workspace : MainStreet, testing::Test {
    Workspace() {
        PutStudy("AM", {{"R1", 20, 5}, {"R2", 30, 6}});
        Open("AM");
    }
    bool Open(const std::string& name) { return OpenStudy(State, Files, DesktopServices, Time, Group, name); }
    SavePrompt Asked() const { return SavePromptNeeded(State, Files); }
};

TEST_F(Workspace, OpeningRemembersTheStudyAndAMissingOneLeavesTheMemory) {
    ApplicationState nextStart;
    LoadSettings(nextStart, Files);
    EXPECT_EQ(nextStart.Paths.LastStudyGroupPath, Group);
    EXPECT_EQ(nextStart.Paths.LastStudyName, "AM");
    EXPECT_TRUE(LastStudyExists(nextStart, Files));
    EXPECT_FALSE(Open("Gone"));
    EXPECT_EQ(DesktopServices.Beeps, 1);
    EXPECT_EQ(State.CurrentStudy.Record.RunCount, 0);
    EXPECT_EQ(State.Paths.LastStudyName, "AM");
    State.Paths.LastStudyName = NoStudyName;
    PutStudy(NoStudyName, {});
    EXPECT_FALSE(LastStudyExists(State, Files)) << "the name stands for no study, whatever files there are";
}

TEST_F(Workspace, AsksOnlyForWhatDiffersFromTheSavedStudy) {
    EXPECT_EQ(Asked(), SavePrompt::None);
    EXPECT_EQ(AddRuns(State, {"R3", "r1"}), 1) << "R1 is in the study";
    EXPECT_EQ(Asked(), SavePrompt::ParametersChanged);
    DeleteRun(State, 3);
    EXPECT_FALSE(State.StudyUnchanged);
    EXPECT_EQ(Asked(), SavePrompt::None) << "the runs are the saved ones again";
    State.CurrentStudy.Entries[2].CDEndDist = 7000;
    EXPECT_EQ(Asked(), SavePrompt::ParametersChanged);
    State.CurrentStudy.Entries[2].CDEndDist = 7600;
    State.StudyFieldsEdited = true;
    EXPECT_EQ(Asked(), SavePrompt::ParametersChanged);
    for (const char* name : {"", "PM", "../AM", "a:b"}) {
        State.CurrentStudy.Record.StudyName = name;
        EXPECT_EQ(Asked(), SavePrompt::NotSavedYet) << name;
    }
    State.StudyUnchanged = true;
    EXPECT_EQ(Asked(), SavePrompt::None);
}

TEST_F(Workspace, ADamagedSavedStudyDoesNotKeepTheUserFromLeaving) {
    std::string damaged(320, ' ');
    damaged[42] = damaged[43] = '\xff';  // -1 runs
    Files.PutText(Group + "AM.ld2", damaged);
    State.StudyUnchanged = false;
    EXPECT_EQ(Asked(), SavePrompt::ParametersChanged);
}

TEST_F(Workspace, AFailedSaveKeepsTheStudyChangedUnderItsOldName) {
    AddRuns(State, {"R3"});
    Files.FailChangeAfter(0, ErrorNumber::DiskFull);
    EXPECT_ERROR(DiskFull, SaveStudyAs(State, Files, "/start/Study Groups/", "PM"));
    EXPECT_EQ(State.CurrentStudy.Record.StudyName, "AM");
    EXPECT_EQ(State.Paths.LastStudyName, "AM");
    EXPECT_FALSE(State.StudyUnchanged);
    State.CurrentStudy.Record.StudyName = "../escape";
    EXPECT_ERROR(PathFileAccessError, SaveStudy(State, Files));
    State.CurrentStudy.Record.StudyName = " PM ";
    SaveStudy(State, Files);
    EXPECT_EQ(Saved("PM").RunNames[3], "R3");
    EXPECT_EQ(Saved("PM").Record.StudyName, "PM");
    EXPECT_TRUE(State.StudyUnchanged);
}

TEST_F(Workspace, ARunTakesANewNameThatIsFree) {
    ASSERT_TRUE(ReadRunFile(Files, Messages, State.CurrentRun, Group, "R2", true));
    Files.PutText(Group + "Old.rdf", "a version 1 run");
    EXPECT_EQ(RenameCurrentRun(State, Files, 2, "r1"),
              "The run keeps its name. A run \"r1\" is already in this study.");
    for (const char* name : {"R3", "old"})
        EXPECT_EQ(RenameCurrentRun(State, Files, 2, name),
                  std::string("The run keeps its name. A run \"") + name + "\" is already in Study Group Main Street.");
    for (const char* name : {"", "..", "a/b"})
        EXPECT_EQ(RenameCurrentRun(State, Files, 2, name), UnsafeNameMessage(name));
    EXPECT_EQ(State.CurrentStudy.RunNames[2], "R2");
    EXPECT_TRUE(State.StudyUnchanged);

    EXPECT_EQ(RenameCurrentRun(State, Files, 2, "Morning 2"), "");
    EXPECT_EQ(State.CurrentStudy.RunNames[2], "Morning 2");
    EXPECT_EQ(State.CurrentStudy.Entries[2].EntryRunName, "Morning 2");
    EXPECT_EQ(State.CurrentStudy.Entries[2].ControlDelay, 30);
    EXPECT_FALSE(State.StudyUnchanged);
    EXPECT_TRUE(HasFile("R2.rd2")) << "other studies may use it";
    RunRecord written;
    ASSERT_TRUE(ReadRunFile(Files, Messages, written, Group, "Morning 2", true));
    EXPECT_EQ(written.SampleValues.size(), 200U);
}

TEST_F(Workspace, RunsAreProcessedAfterAFileWasChosenOrInTemporaryRunsMode) {
    using Names = std::vector<std::string>;
    ProcessRuns(Context);
    EXPECT_EQ(OtherScreens.Shown, Names{"frmUploadSelectTDC"}) << "no file was chosen";
    OtherScreens.Shown.clear();
    OtherScreens.OnShow["frmUploadSelectTDC"] = [] { return true; };
    ProcessRuns(Context);
    EXPECT_EQ(OtherScreens.Shown, (Names{"frmUploadSelectTDC", "frmUploadData"}));
    OtherScreens.Shown.clear();
    State.TemporaryRunsMode = true;
    OtherScreens.OnShow["frmUploadData"] = [this] {
        EXPECT_FALSE(State.CounterFileChosen) << "the file of the last time must not be converted again";
        EXPECT_TRUE(State.TemporaryRunsMode);
        return true;
    };
    ProcessRuns(Context);
    EXPECT_EQ(OtherScreens.Shown, Names{"frmUploadData"});
    EXPECT_FALSE(State.TemporaryRunsMode);
}

}  // namespace
}  // namespace vantor
