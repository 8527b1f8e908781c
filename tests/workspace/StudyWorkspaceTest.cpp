#include "workspace/StudyWorkspace.h"

#include "fakes/ThrowsError.h"
#include "workspace/MainStreet.h"
#include "workspace/Preferences.h"

namespace vantor {
namespace {

struct Workspace : MainStreet<TestProgram>, testing::Test {
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
    EXPECT_EQ(LastStudyOf(nextStart), Group + "AM");
    EXPECT_TRUE(LastStudyExists(nextStart, Files));
    EXPECT_FALSE(Open("Gone"));
    EXPECT_EQ(DesktopServices.Beeps, 1);
    EXPECT_EQ(State.CurrentStudy.Record.RunCount, 0);
    EXPECT_EQ(State.Paths.LastStudyName, "AM");
    PutStudy(NoStudyName, {});
    State.Paths.LastStudyName = NoStudyName;
    EXPECT_FALSE(LastStudyExists(State, Files)) << "the name stands for no study, whatever files there are";
}

TEST_F(Workspace, AsksOnlyForWhatDiffersFromTheSavedStudy) {
    EXPECT_EQ(Asked(), SavePrompt::None);
    EXPECT_EQ(AddRuns(State, {"R3", "r1"}), 1) << "R1 is in the study";
    EXPECT_EQ(Asked(), SavePrompt::ParametersChanged);
    DeleteRuns(State, {3});
    EXPECT_FALSE(State.StudyUnchanged);
    EXPECT_EQ(Asked(), SavePrompt::None) << "the runs are the saved ones again";
    State.CurrentStudy.Entries[2].CDEndDist = 7000;
    EXPECT_EQ(Asked(), SavePrompt::ParametersChanged);
    State.CurrentStudy.Entries[2].CDEndDist = 7600;
    State.StudyFieldsEdited = true;
    EXPECT_EQ(Asked(), SavePrompt::ParametersChanged);
    State.StudyFieldsEdited = false;
    Files.PutText(Group + "AM.ld2", std::string(42, ' ') + "\xff\xff" + std::string(276, ' '));  // -1 runs
    EXPECT_EQ(Asked(), SavePrompt::ParametersChanged) << "a damaged file does not keep the user from leaving";
    for (const char* name : {"", "PM", "../AM", "a:b"}) {
        State.CurrentStudy.Record.StudyName = name;
        EXPECT_EQ(Asked(), SavePrompt::NotSavedYet) << name;
    }
    State.StudyUnchanged = true;
    EXPECT_EQ(Asked(), SavePrompt::None);
}

TEST_F(Workspace, AStudyIsSavedUnderASafeNameOrStaysUnderItsOldOne) {
    AddRuns(State, {"R3"});
    Files.FailChangeAfter(0, ErrorNumber::DiskFull);
    EXPECT_ERROR(DiskFull, SaveStudyAs(State, Files, Root, "PM"));
    EXPECT_EQ(State.CurrentStudy.Record.StudyName, "AM");
    State.CurrentStudy.Record.StudyName = "../escape";
    EXPECT_ERROR(PathFileAccessError, SaveStudy(State, Files));
    EXPECT_EQ(LastStudyOf(State), Group + "AM");
    EXPECT_FALSE(State.StudyUnchanged);
    State.CurrentStudy.Record.StudyName = " PM ";
    SaveStudy(State, Files);
    EXPECT_EQ(RunsOf(Saved("PM")), (Names{"R1", "R2", "R3"}));
    EXPECT_EQ(Saved("PM").Record.StudyName, "PM");
    EXPECT_TRUE(State.StudyUnchanged);
}

TEST_F(Workspace, ARunTakesANewNameThatIsFree) {
    State.CurrentRun = ReadRun(Files, Group + "R2.rd2").Run;
    EXPECT_EQ(RenameRun(State, Files, State.CurrentRun, 2, "r1"),
              "The run keeps its name. A run \"r1\" is already in this study.");
    EXPECT_EQ(State.CurrentStudy.RunNames[2], "R2");
    EXPECT_TRUE(State.StudyUnchanged);

    EXPECT_EQ(RenameRun(State, Files, State.CurrentRun, 2, "Morning 2"), "");
    EXPECT_EQ(State.CurrentStudy.RunNames[2], "Morning 2");
    EXPECT_EQ(State.CurrentStudy.Entries[2].EntryRunName, "Morning 2");
    EXPECT_EQ(State.CurrentStudy.Entries[2].ControlDelay, 30);
    EXPECT_FALSE(State.StudyUnchanged);
    EXPECT_TRUE(HasFile(Group + "R2.rd2")) << "other studies may use it";
    EXPECT_EQ(ReadRun(Files, Group + "Morning 2.rd2").Run.SampleValues.size(), 200U);
}

TEST(Preferences, ANumberIsItsWholePartWithin16Bits) {
    EXPECT_EQ(WholePartOf(" 5.9 "), 5);
    EXPECT_EQ(WholePartOf("32767.9"), 32767);
    EXPECT_EQ(WholePartOf("-32768"), -32768);
    for (const char* text : {"", "ten", "5 mph"}) EXPECT_ERROR(TypeMismatch, WholePartOf(text)) << text;
    for (const char* text : {"32768", "-32769", "99999999999"}) EXPECT_ERROR(Overflow, WholePartOf(text)) << text;
}

TEST(Preferences, WhatIsWrongWithAFolderIsSaid) {
    const std::pair<std::string, const char*> folders[] = {{"", "No folder"},
                                                           {"runs", "Not a whole path"},
                                                           {"~/runs", "\"~\""},
                                                           {"/" + std::string(80, 'x'), "Longer than the 80"},
                                                           {"/\u0416", "no room for some of its letters"}};
    for (const auto& [folder, problem] : folders) EXPECT_THAT(FolderProblem(folder), HasSubstr(problem));
    EXPECT_EQ(FolderProblem("/" + std::string(79, 'x')), "");
}

}  // namespace
}  // namespace vantor
