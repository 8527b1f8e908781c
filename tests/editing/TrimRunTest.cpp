#include "editing/TrimRun.h"

#include <gmock/gmock.h>

#include "Profiles.h"
#include "core/RunFile.h"
#include "fakes/FakePorts.h"
#include "fakes/ThrowsError.h"

namespace vantor {
namespace {

using testing::ElementsAreArray;

const std::string Group = "/start/Study Groups/Main/";

/// 12 seconds; nodes after 3, 6 and 9, between the start and the end of the run. Each event record tells its sample.
RunRecord NodeRun() {
    RunRecord run = RunOf({10, 10, 0x8000 | 10, 10, 10, 0x8000 | 10, 10, 10, 0x8000 | 10, 10, 10, 10});
    int node = 0;
    for (const char* name : {"Start St", "Ash", "Birch", "Cedar", "End St"}) run.Header.SectionName[node++] = name;
    for (int i = 1; i <= 12; ++i) run.RunSamples[i].Speed = static_cast<float>(i);
    run.Header.RunTime = TimeOf(7, 59, 55);
    return run;
}

TEST(CutRun, NamesStayWithTheirNodes) {
    struct Case {
        std::int32_t First;
        std::int32_t Last;
        std::vector<std::string> Names;
    };
    for (const Case& c : {Case{1, 12, {"Start St", "Ash", "Birch", "Cedar", "End St", ""}},
                          {2, 12, {"", "Ash", "Birch", "Cedar", "End St", ""}},
                          {3, 12, {"", "Ash", "Birch", "Cedar", "End St", ""}},
                          {4, 12, {"Ash", "Birch", "Cedar", "End St", "", ""}},
                          {5, 12, {"", "Birch", "Cedar", "End St", "", ""}},
                          {5, 10, {"", "Birch", "Cedar", "", "", ""}},
                          {5, 9, {"", "Birch", "Cedar", "", "", ""}},
                          {1, 5, {"Start St", "Ash", "", "", "", ""}},
                          {10, 11, {"Cedar", "", "", "", "", ""}}}) {
        const RunHeader header = CutRun(NodeRun(), c.First, c.Last).Header;
        std::vector<std::string> names;
        for (int node = 0; node <= 5; ++node) names.push_back(header.SectionName[node]);
        EXPECT_THAT(names, ElementsAreArray(c.Names)) << c.First << " to " << c.Last;
    }
}

TEST(CutRun, EverythingDerivedIsDecodedAnew) {
    const RunRecord cut = CutRun(NodeRun(), 5, 10);
    EXPECT_EQ(cut.Header.SampleCount, 6);
    EXPECT_EQ(cut.Header.Duration, 6);
    EXPECT_EQ(cut.Header.RunLength, 60);
    EXPECT_EQ(cut.Header.NumberOfSections, 4);
    EXPECT_EQ(cut.Header.SectionDist[1], 20);
    EXPECT_EQ(cut.Header.SectionDist[2], 30);
    EXPECT_EQ(cut.Header.SectionDist[3], 10);
    EXPECT_EQ(cut.RunSamples.size(), 6u);
    EXPECT_EQ(cut.RunSamples[1].Speed, 5.0F);
    EXPECT_TRUE(HasNode(cut.SampleValues[2]));
    const CivilTime time = CivilOf(cut.Header.RunTime);
    EXPECT_EQ(time.Minute * 60 + time.Second, 59 * 60 + 59);
    EXPECT_EQ(CutRun(NodeRun(), 1, 12), NodeRun());
}

TEST(CutRun, RefusesSamplesThatAreNotThere) {
    for (const auto& [first, last] : {std::pair{0, 5}, {5, 4}, {5, 13}})
        EXPECT_ERROR(SubscriptOutOfRange, CutRun(NodeRun(), first, last)) << first;
    RunRecord withoutEvents = NodeRun();
    withoutEvents.RunSamples.Clear();
    EXPECT_ERROR(SubscriptOutOfRange, CutRun(withoutEvents, 2, 5));
}

class TrimRunTest : public testing::Test {
protected:
    TrimRunTest() {
        Program.Files.CreateFolder(Group);
        Run = NodeRun();
        WriteRunFile(Program.Files, Run, Group, "Main-1");
        Entry.EntryRunName = "Main-1";
        Entry.CDStartDist = 50;
        Entry.CDEndDist = 90;
        Plot.CDStartSample = 5;
        Plot.CDEndSample = 8;
        Before = *Program.Files.Bytes(Group + "Main-1.rd2");
    }

    TestProgram Program;
    RunRecord Run;
    StudyRunEntry Entry;
    PlotState Plot;
    std::vector<std::byte> Before;
};

TEST_F(TrimRunTest, KeepsWhatLiesBetweenTheBoundariesAndTheOldFile) {
    TrimRun(Program.Files, Group, Run, Plot, Entry);
    EXPECT_EQ(Program.Files.Bytes(Group + "Main-1.bak"), Before);
    EXPECT_EQ(Run.Header.SampleCount, 4);
    RunRecord written;
    ASSERT_TRUE(ReadRunFile(Program.Files, Program.Messages, written, Group, "Main-1", true));
    EXPECT_EQ(written, Run);
    EXPECT_EQ(Entry.CDStartDist, 10);
    EXPECT_EQ(Entry.CDEndDist, 40);

    PlotState plot;
    ComputeRunDelay(Run, EnglishSettings(), plot, Entry);
    EXPECT_EQ(plot.CDStartSample, 1);
    EXPECT_EQ(plot.CDEndSample, 3);     // 10 + 10 + 10 + 10
    EXPECT_EQ(Entry.ControlDelay, -1);  // 2 s; 30 ft at 10 ft/s are 3 s
}

TEST_F(TrimRunTest, BoundaryInAStandstillStaysSet) {
    Run = RunOf({20, 0, 0, 20, 20});
    WriteRunFile(Program.Files, Run, Group, "Main-1");
    Plot.CDStartSample = 2;
    Plot.CDEndSample = 5;
    TrimRun(Program.Files, Group, Run, Plot, Entry);
    EXPECT_EQ(Entry.CDStartDist, 1);
    EXPECT_EQ(Entry.CDEndDist, 40);
}

TEST_F(TrimRunTest, AFailingDiskLeavesAllAsItWas) {
    const RunRecord run = Run;
    const StudyRunEntry entry = Entry;
    const auto failsAfter = [&](int changes) {
        Program.Files.FailChangeAfter(changes, ErrorNumber::DiskFull);
        return ErrorOf([&] { TrimRun(Program.Files, Group, Run, Plot, Entry); }) == ErrorNumber::DiskFull;
    };
    int failures = 0;
    for (; failsAfter(failures); ++failures) {
        EXPECT_EQ(Program.Files.Bytes(Group + "Main-1.rd2"), Before) << failures;
        EXPECT_EQ(Run, run) << failures;
        EXPECT_EQ(Entry, entry) << failures;
    }
    EXPECT_GE(failures, 2);  // the copy and the run
    EXPECT_NE(Run, run);
}

TEST_F(TrimRunTest, ARunWithoutAFileIsNotTrimmed) {
    const RunRecord run = Run;
    Program.Files.Delete(Group + "Main-1.rd2");
    EXPECT_ERROR(FileNotFound, TrimRun(Program.Files, Group, Run, Plot, Entry));
    EXPECT_EQ(Run, run);
}

TEST_F(TrimRunTest, SaysWhatKeepsARunFromBeingTrimmed) {
    EXPECT_EQ(TrimProblem(Run, Plot, Entry), "");
    Plot.CDStartSample = 0;  // a start boundary at the left edge of the time axis
    EXPECT_EQ(TrimProblem(Run, Plot, Entry), "");
    Plot.CDStartSample = 9;
    EXPECT_THAT(TrimProblem(Run, Plot, Entry), testing::HasSubstr("before the start boundary"));
    Entry.CDEndDist = 0;
    EXPECT_THAT(TrimProblem(Run, Plot, Entry), testing::HasSubstr("not set"));
    Entry.CDEndDist = 20;
    Plot.CDStartSample = 2;
    Plot.CDEndSample = 3;
    EXPECT_THAT(TrimProblem(RunOf({20, 0, 0, 20}), Plot, Entry), testing::HasSubstr("does not move"));
}

}  // namespace
}  // namespace vantor
