#include "faults/FaultHarness.h"

#include <algorithm>
#include <map>

#include "core/Paths.h"
#include "core/RunDecoding.h"
#include "core/StudyBytes.h"
#include "fakes/PutFiles.h"
#include "fakes/ThrowsError.h"
#include "workspace/StudyWorkspace.h"

namespace vantor {
namespace {

RunRecord RunOfFeet(std::size_t samples) {
    std::vector<int> values(samples, 45);
    for (std::size_t i = 1; i < samples; i += 2) values[i] = 44;
    RunRecord run = RunOfValues(values);
    run.Header.RunDate = DateOf(2008, 3, 11);
    run.Header.Before = -1;
    DecodeRunSamples(run);
    return run;
}

using Disk = std::map<std::string, std::vector<std::byte>>;
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

void ExpectWhole(const Operation& operation, const Disk& before, const Disk& now, const Disk& after) {
    const auto isOf = [](const auto& file, const Disk& disk) {
        const auto found = disk.find(file.first);
        return found != disk.end() && found->second == file.second;
    };
    const auto isPart = [&](const std::string& path) {
        return !operation.PartsIn.empty() && HasExtension(path, operation.PartsIn);
    };
    for (const auto& [path, old] : before) {
        if (now.contains(path)) continue;
        EXPECT_FALSE(after.contains(path)) << path << " is gone";
        const bool isThere = std::ranges::any_of(now, [&, &old = old](const auto& file) { return file.second == old; });
        EXPECT_TRUE(operation.Deletes || isThere) << path << " is lost";
    }
    for (const auto& file : now)
        EXPECT_TRUE(isPart(file.first) || isOf(file, before) || isOf(file, after))
            << file.first << " is neither the old nor the new file";
}

}  // namespace

FaultScene::FaultScene() {
    Files.CreateFolder(Group);
    State.Paths.LastStudyGroupPath = Group;
    SaveSettings(State, Files);
    Study study;
    study.Record.StudyName = "AM";
    std::size_t samples = 30;
    for (const std::string name : {"R1", "R2"}) {
        RunRecord run = RunOfFeet(samples++);
        PutRunFile(Files, run, Group, name);
        PutRunFile(Files, run, Temp, "T" + name);
        AppendRun(study, name);
        study.Entries[study.Record.RunCount] = {name, 100, 900};
    }
    PutStudyFile(Files, study, Group, "AM");
    OpenStudy(State, Files, DesktopServices, Time, Group, "AM");
    State.CurrentRun = StoredRun(Group, "R1");
}

RunRecord FaultScene::StoredRun(const std::string& folder, const std::string& name) {
    return ReadRunFile(Files, Told, folder, name).value();
}

void ExpectEntriesAgree(FaultScene& scene) {
    const Study& study = scene.State.CurrentStudy;
    for (int i = 1; i <= study.Record.RunCount; ++i) {
        const std::string name = RunFileName(study.Entries[i]);
        EXPECT_TRUE(scene.Files.Bytes(scene.Group + name + RunExtension)) << name;
        EXPECT_EQ(study.RunNames[i], name);
    }
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
    ExpectEntriesAgree(scene);
    ExpectStudyAgrees(scene);
}

TEST_P(FaultTest, LeavesAllWhole) {
    const Operation& operation = GetParam();
    const auto [changes, after] = Succeed(operation);
    ASSERT_GT(changes, 0) << "it stores nothing";
    for (const ErrorNumber error : {ErrorNumber::DiskFull, ErrorNumber::PermissionDenied, ErrorNumber::PathNotFound})
        for (int change = 0; change < changes; ++change) {
            SCOPED_TRACE("change " + std::to_string(change + 1) + " of " + std::to_string(changes) + ", error " +
                         std::to_string(static_cast<int>(error)));
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

}  // namespace vantor
