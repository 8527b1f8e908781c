#include "faults/FaultHarness.h"

#include "core/Paths.h"
#include "core/RunDecoding.h"
#include "fakes/PutFiles.h"
#include "fakes/ThrowsError.h"
#include "workspace/StudyWorkspace.h"

namespace vantor {
namespace {

RunRecord RunOfFeet(int samples) {
    RunRecord run;
    run.Header.CalConstant = 1000;
    run.Header.SampleCount = samples;
    run.RunSamples.ResizeTo(samples);
    for (int i = 1; i <= samples; ++i) run.SampleValues.Append(static_cast<std::int16_t>(i % 2 == 0 ? 44 : 45));
    run.Header.RunDate = DateOf(2008, 3, 11);
    run.Header.Before = -1;
    DecodeRunSamples(run);
    return run;
}

Disk DiskOf(const FaultScene& scene) {
    Disk disk;
    for (const std::string& path : scene.Files.AllFiles()) disk[path] = *scene.Files.Bytes(path);
    return disk;
}

/// True when nothing went wrong.
bool Attempt(const Operation& operation, FaultScene& scene) {
    try {
        operation.Run(scene);
    } catch (const RunTimeError& error) {
        scene.Told.Problems.push_back(error.Message());
    }
    return scene.Told.Problems.empty();
}

/// The number of changes of the disk that the operation makes when none fails, and the disk then.
std::pair<int, Disk> Succeed(const Operation& operation) {
    constexpr int More = 100;
    FaultScene scene;
    operation.Prepare(scene);
    scene.Files.FailChangeAfter(More, ErrorNumber::DiskFull);
    EXPECT_TRUE(Attempt(operation, scene)) << (scene.Told.Problems.empty() ? "" : scene.Told.Problems.front());
    operation.Agrees(scene);
    const Disk after = DiskOf(scene);
    int left = 0;
    while (!ErrorOf([&] { scene.Files.CreateFolder("/probe" + std::to_string(left)); })) ++left;
    EXPECT_LT(left, More);
    return {More - left, after};
}

bool HasContents(const Disk& disk, const std::vector<std::byte>& bytes) {
    for (const auto& [path, contents] : disk)
        if (contents == bytes) return true;
    return false;
}

void ExpectWhole(const Operation& operation, const Disk& before, const Disk& now, const Disk& after) {
    for (const auto& [path, old] : before) {
        const auto found = now.find(path);
        const auto wanted = after.find(path);
        if (found == now.end()) {
            EXPECT_TRUE(wanted == after.end()) << path << " is gone";
            EXPECT_TRUE(operation.Deletes || HasContents(now, old)) << path << " is lost";
        } else {
            const bool isNew = wanted != after.end() && found->second == wanted->second;
            EXPECT_TRUE(found->second == old || isNew) << path << " is neither the old nor the new file";
        }
    }
    for (const auto& [path, contents] : now) {
        if (before.contains(path)) continue;
        const auto wanted = after.find(path);
        EXPECT_TRUE(wanted != after.end() && wanted->second == contents) << path << " is left behind";
    }
}

}  // namespace

FaultScene::FaultScene() {
    Files.CreateFolder(Group);
    State.Paths.LastStudyGroupPath = Group;
    SaveSettings(State, Files);
    Study study;
    study.Record.StudyName = "AM";
    int samples = 30;
    for (const std::string name : {"R1", "R2"}) {
        RunRecord run = RunOfFeet(samples++);
        PutRunFile(Files, run, Group, name);
        PutRunFile(Files, run, Temp, "T" + name);
        AppendRun(study, name);
        study.Entries[study.Record.RunCount].CDStartDist = 100;
        study.Entries[study.Record.RunCount].CDEndDist = 900;
    }
    PutStudyFile(Files, study, Group, "AM");
    OpenStudy(State, Files, DesktopServices, Time, Group, "AM");
    State.CurrentRun = StoredRun(Group, "R1");
}

RunRecord FaultScene::StoredRun(const std::string& folder, const std::string& name) {
    RunRecord run;
    EXPECT_TRUE(ReadRunFile(Files, Told, run, folder, name, true)) << name;
    return run;
}

void ExpectStudyAgrees(FaultScene& scene) {
    const ApplicationState& state = scene.State;
    if (!state.StudyUnchanged) return;
    const std::string path = StudyGroupFolder(state) + state.Paths.LastStudyName + StudyExtension;
    EXPECT_EQ(scene.Files.Bytes(path), EncodeStudy(state.CurrentStudy)) << "\"Saved\" is shown";
    EXPECT_EQ(state.CurrentStudy.Record.StudyName, state.Paths.LastStudyName);
}

void ExpectRunAgrees(FaultScene& scene) {
    const RunRecord& run = scene.State.CurrentRun;
    EXPECT_EQ(scene.StoredRun(scene.Group, run.Header.RunName), run);
    for (int i = 1; i <= scene.State.CurrentStudy.Record.RunCount; ++i) {
        const std::string name = RunFileName(scene.State.CurrentStudy.Entries[i]);
        EXPECT_TRUE(scene.Files.Bytes(scene.Group + name + RunExtension)) << name;
    }
    ExpectStudyAgrees(scene);
}

void ExpectSettingsAgree(FaultScene& scene) {
    ApplicationState stored;
    LoadSettings(stored, scene.Files);
    EXPECT_EQ(EncodeRecord(stored.Settings, AppSettingsFields), EncodeRecord(scene.State.Settings, AppSettingsFields));
}

void ExpectFaultsLeaveAllWhole(const Operation& operation, ErrorNumber error) {
    const auto [changes, after] = Succeed(operation);
    ASSERT_GT(changes, 0) << "it stores nothing";
    for (int change = 0; change < changes; ++change) {
        SCOPED_TRACE("change " + std::to_string(change + 1) + " of " + std::to_string(changes));
        FaultScene scene;
        operation.Prepare(scene);
        const Disk before = DiskOf(scene);
        scene.Files.FailChangeAfter(change, error);
        const bool isWell = Attempt(operation, scene);
        EXPECT_EQ(isWell, operation.IsSilent);
        ExpectWhole(operation, before, DiskOf(scene), after);
        operation.Agrees(scene);
    }
}

void PrintTo(const Operation& operation, std::ostream* out) { *out << operation.Name; }

std::string NameOfFault(const testing::TestParamInfo<FaultTest::ParamType>& info) {
    const auto& [operation, error] = info.param;
    return operation.Name + std::to_string(static_cast<int>(error));
}

TEST_P(FaultTest, LeavesAllWhole) {
    const auto& [operation, error] = GetParam();
    ExpectFaultsLeaveAllWhole(operation, error);
}

}  // namespace vantor
