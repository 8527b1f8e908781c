#include "editing/SaveRun.h"

#include "RunScene.h"
#include "analysis/CutRun.h"

namespace vantor {
namespace {

/// A run of 60 ft.
class SaveRunTest : public RunScene<ProgramScene> {
protected:
    SaveRunTest() : RunScene(RunOf({10, 10, 10, 10, 10, 10})) {}
    /// The run with other values.
    RunRecord Edited(std::vector<int> values) {
        RunRecord edited = RunOf(std::move(values));
        edited.Header.RunName = "A";
        return edited;
    }
};

TEST_F(SaveRunTest, ChangedSamplesMoveBoundariesAndComputeAnewAndKeepTheFileThatWasThere) {
    using Case = std::tuple<std::vector<int>, std::int32_t, std::pair<int, int>>;
    for (const auto& [values, cut, boundaries] :
         {Case{{10, 10, 10, 10, 10}, 10, {10, 40}},
          Case{{10, 10, 10}, 20, {0, 30}},  // 20 ft are cut, and the 10 ft of second 1 count twice
          Case{{10, 10, 10}, 30, {0, 20}}, Case{{10, 10, 10, 10}, 0, {20, 0}}, Case{{0, 0, 0, 0}, 0, {0, 0}},
          Case{{10, 10, 40, 10, 10, 10}, 0, {20, 50}}}) {
        SetBoundaries(20, 50);
        Entry().ControlDelay = 77;
        State.CurrentRun = Before;
        RunRecord edited = Edited(values);
        edited.Header.RunLength = 60;  // as it may be typed
        SaveRun(State, Files, edited, {.Entry = 1, .KeepsBackup = true, .FeetCutFromStart = cut});
        EXPECT_EQ(BoundariesOf(Entry()), boundaries);
        EXPECT_FALSE(State.StudyUnchanged);
    }
    // 10 + 10, + 10 + 40: sample 2 to 3 is 1 s; 30 ft at (10 + 40) / 2 ft/s are 1.2 s.
    EXPECT_EQ(Entry().ControlDelay, 0);
    EXPECT_EQ(OnDisk("A").SampleValues[3], 40);
    EXPECT_EQ(Backup(), FileBefore);
}

TEST_F(SaveRunTest, ARestoredRunHasItsBoundariesAtTheirPlaces) {
    Files.PutText(Group + "A.bak", "an older run, or anything");
    RunRecord whole = Edited({10, 12, 10, 10, 10, 10});
    whole.Header.RunTime = TimeOf(23, 59, 59);
    Use(whole);
    SetBoundaries(30, 50);
    const RunSave cut{.Entry = 1, .KeepsBackup = true, .FeetCutFromStart = 22};
    ASSERT_EQ(SaveRun(State, Files, CutRun(whole, 3, 6), cut).Warning, "");
    EXPECT_EQ(BoundariesOf(Entry()), std::pair(8, 28));

    const auto backups = RunBackupsOf(Files, Group, "A");
    ASSERT_EQ(backups.size(), 1u);
    EXPECT_EQ(backups[0].Header.SampleCount, 6);
    EXPECT_EQ(RestoreRun(State, Files, backups[0], 1).Backup, "A.rd2.bak2");
    for (const RunRecord& run : {State.CurrentRun, OnDisk("A")}) EXPECT_EQ(run, Before);
    EXPECT_EQ(BoundariesOf(Entry()), std::pair(30, 50));

    // Of two runs that have nothing in common no boundary can be carried over.
    State.CurrentRun = Edited({7, 7, 7, 7});
    EXPECT_EQ(
        RestoreRun(State, Files, backups[0], 1).Warning,
        "Both boundaries of run A have no place in the samples that are left, so the run does not count any more.\n"
        "Set them again on the speed profile of the run.");
    EXPECT_EQ(BoundariesOf(Entry()), std::pair(0, 0));
}

}  // namespace
}  // namespace vantor
