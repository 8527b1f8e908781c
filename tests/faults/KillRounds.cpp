// Kills a program that stores without pause, again and again, and looks at what lies on the disk afterwards: every
// file must be the last one stored or the one that was just being stored, whole.
//
//   kill_rounds [ROUNDS]      100 rounds by default; exit status 0 when every file was whole in every round

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <iostream>
#include <map>
#include <optional>
#include <random>
#include <thread>

#include "core/RunFile.h"
#include "core/Settings.h"
#include "core/StudyFile.h"
#include "core/Text.h"
#include "counter/CounterFile.h"
#include "editing/SaveRun.h"
#include "platform/DiskFileSystem.h"

namespace vantor {
namespace {

constexpr int Samples = 3600;

/// Answers nothing; a run that should be there and is missing is found by its checks.
struct SilentMessages : MessageBoxes {
    MessageAnswer Ask(const Prompt&) override { return MessageAnswer::Ok; }
};

/// What the two programs agree on: every value stored tells the generation that it is of.
struct Scene {
    explicit Scene(const std::string& root)
        : Files(root), Group(root + "Group/"), Temp(root + "Temp/"), Counter(root + "Corridor.tdc") {}

    DiskFileSystem Files;
    std::string Group, Temp, Counter;
    std::map<std::string, RunRecord>
        Converted;  ///< the runs of the counter file, by the names of their first conversion

    static Study StudyOf(int generation) {
        Study study;
        study.Record.StudyName = "AM";
        study.Record.StudyNotes = std::to_string(generation);
        for (int i = 0; i < 100 + generation % 50; ++i) {
            AppendRun(study, "R" + std::to_string(i));
            study.Entries[study.Record.RunCount].ControlDelay = generation;
        }
        return study;
    }
    static RunRecord RunOf(int generation) {
        RunRecord run;
        run.Header.RunName = "R1";
        run.Header.Notes = std::to_string(generation);
        run.Header.CalConstant = 1000;
        run.Header.SampleCount = Samples;
        run.SampleValues.ResizeTo(Samples);
        run.RunSamples.ResizeTo(Samples);
        for (int i = 1; i <= Samples; ++i) {
            run.SampleValues[i] = static_cast<std::int16_t>(generation % 256);
            run.RunSamples[i].Speed = static_cast<float>(generation);
        }
        return run;
    }
};

/// Over the study that is there.
void StoreStudy(Scene& scene, int generation) {
    Study study = Scene::StudyOf(generation);
    if (const auto there = LoadStudy(scene.Files, scene.Group, "AM")) study.Stored = there->Stored;
    WriteStudyFile(scene.Files, study, scene.Group, "AM", Replacing::OwnFile);
}

/// The program that is killed. It stores a study, a run and a converted counter file, beginning with a different one
/// each round, and tells each generation that was stored whole.
[[noreturn]] void StoreForEver(Scene& scene, int generation, int first, int told) {
    ApplicationState state;
    state.Paths.LastStudyGroupPath = scene.Group;
    state.CurrentRun.Header.RunName = "R1";
    const std::function<void()> stores[] = {
        [&] { StoreStudy(scene, generation); },
        [&] { SaveRun(state, scene.Files, Scene::RunOf(generation), {.KeepsBackup = true}); },
        [&] {
            RunRecord last;
            for (const std::string& name : ConvertCounterFile(scene.Files, scene.Counter, scene.Temp, last))
                DeleteRunFile(scene.Files, scene.Temp, name);
        }};
    try {
        for (;; ++generation) {
            for (int i = 0; i < 3; ++i) stores[(first + i) % 3]();
            if (write(told, &generation, sizeof generation) != sizeof generation) std::_Exit(2);
        }
    } catch (const RunTimeError& error) {
        std::cerr << error.Message() << "\n";
        std::_Exit(2);
    }
}

/// The last generation stored whole before the program was killed after `wait`; nothing when it ended by itself.
std::optional<int> GenerationAtKill(Scene& scene, int generation, int first, std::chrono::microseconds wait) {
    int ends[2];
    if (pipe(ends) != 0) return std::nullopt;
    const pid_t child = fork();
    if (child == 0) {
        close(ends[0]);
        StoreForEver(scene, generation + 1, first, ends[1]);
    }
    close(ends[1]);
    std::this_thread::sleep_for(wait);
    kill(child, SIGKILL);
    int status = 0;
    waitpid(child, &status, 0);
    int next = 0;
    while (read(ends[0], &next, sizeof next) == sizeof next) generation = next;
    close(ends[0]);
    return WIFSIGNALED(status) ? std::optional(generation) : std::nullopt;
}

struct Counts {
    int Mixed = 0;
    int New = 0;  ///< studies that were of the generation just being stored
    int Leftovers = 0;
    int ConvertedRuns = 0;
};

void Expect(bool holds, const std::string& what, Counts& counts) {
    if (holds) return;
    ++counts.Mixed;
    std::cerr << "NOT WHOLE: " << what << "\n";
}

std::optional<int> GenerationOf(const Scene& scene, const Study& saved) {
    const int generation = std::atoi(std::string(Trim(saved.Record.StudyNotes)).c_str());
    const Study whole = Scene::StudyOf(generation);
    if (saved.Record.RunCount != whole.Record.RunCount) return std::nullopt;
    for (int i = 1; i <= whole.Record.RunCount; ++i)
        if (saved.Entries[i] != whole.Entries[i]) return std::nullopt;
    const auto info = scene.Files.Find(scene.Group + "AM.ld2");
    const auto size = StudyRecordSize + static_cast<std::size_t>(whole.Record.RunCount) * StudyRunEntrySize;
    return info->Size == size ? std::optional(generation) : std::nullopt;
}

std::optional<int> GenerationOf(const RunRecord& saved) {
    const int generation = std::atoi(std::string(Trim(saved.Header.Notes)).c_str());
    const RunRecord whole = Scene::RunOf(generation);
    const bool isWhole = saved.SampleValues == whole.SampleValues && saved.RunSamples == whole.RunSamples;
    return isWhole ? std::optional(generation) : std::nullopt;
}

bool IsWholeRunFile(const Scene& scene, const std::string& path) {
    const auto info = scene.Files.Find(path);
    return info && info->Size == RunHeaderSize + Samples * SamplePairSize;
}

std::optional<int> GenerationOfRun(Scene& scene) {
    SilentMessages messages;
    RunRecord run;
    if (!IsWholeRunFile(scene, scene.Group + "R1.rd2")) return std::nullopt;
    if (!ReadRunFile(scene.Files, messages, run, scene.Group, "R1", true)) return std::nullopt;
    return GenerationOf(run);
}

/// That of the latest backup; the others are deleted.
std::optional<int> GenerationOfBackup(Scene& scene) {
    const auto backups = RunBackupsOf(scene.Files, scene.Group, "R1");
    if (backups.empty() || !IsWholeRunFile(scene, backups.front().Path)) return std::nullopt;
    for (std::size_t older = 1; older < backups.size(); ++older) scene.Files.Delete(backups[older].Path);
    return GenerationOf(ReadRunBackup(scene.Files, backups.front()));
}

void CheckStudyAndRun(Scene& scene, int generation, Counts& counts) {
    const auto isThisOrNext = [&](std::optional<int> found) { return found == generation || found == generation + 1; };
    const auto saved = LoadStudy(scene.Files, scene.Group, "AM");
    const auto ofStudy = saved ? GenerationOf(scene, *saved) : std::nullopt;
    Expect(isThisOrNext(ofStudy), "AM.ld2", counts);
    if (ofStudy == generation + 1) ++counts.New;
    Expect(isThisOrNext(GenerationOfRun(scene)), "R1.rd2", counts);
    const auto ofBackup = GenerationOfBackup(scene);
    Expect(ofBackup == generation - 1 || isThisOrNext(ofBackup), "backup of R1", counts);
}

/// Runs of the conversion that was killed stay; the next one must not meet them.
void CheckConvertedRuns(Scene& scene, Counts& counts) {
    SilentMessages messages;
    for (const FileInfo& info : scene.Files.List(scene.Temp)) {
        if (info.IsHidden) continue;
        ++counts.ConvertedRuns;
        const std::string name = info.Name.substr(0, info.Name.size() - 4);
        RunRecord run;
        const auto whole = scene.Converted.find(name);
        const bool isWhole = whole != scene.Converted.end() &&
                             ReadRunFile(scene.Files, messages, run, scene.Temp, name, true) && run == whole->second;
        Expect(isWhole, info.Name, counts);
        scene.Files.Delete(scene.Temp + info.Name);
    }
}

void RemoveLeftovers(Scene& scene, Counts& counts) {
    for (const std::string& folder : {scene.Group, scene.Temp})
        for (const FileInfo& info : scene.Files.List(folder)) {
            if (!info.IsHidden) continue;
            Expect(info.Name.starts_with(".vantor-") && info.Name.ends_with(".tmp"), info.Name, counts);
            ++counts.Leftovers;
            scene.Files.Delete(folder + info.Name);
        }
}

void Prepare(Scene& scene) {
    for (const std::string& folder : {scene.Group, scene.Temp}) scene.Files.CreateFolder(folder);
    WriteFile(scene.Files, scene.Counter, ReadWholeFile(scene.Files, VANTOR_SAMPLES "Corridor.tdc"),
              AsItStands(scene.Files, scene.Counter));
    ApplicationState state;
    state.Paths.LastStudyGroupPath = scene.Group;
    state.CurrentRun.Header.RunName = "R1";
    StoreStudy(scene, 1);
    for (const int generation : {0, 1}) SaveRun(state, scene.Files, Scene::RunOf(generation), {.KeepsBackup = true});
    SilentMessages messages;
    for (const std::string& name : ConvertCounterFile(scene.Files, scene.Counter, scene.Temp, state.CurrentRun)) {
        ReadRunFile(scene.Files, messages, scene.Converted[name], scene.Temp, name, true);
        scene.Files.Delete(scene.Temp + name + RunExtension);
    }
}

int RunRounds(const std::string& root, int rounds) {
    Scene scene(root);
    Prepare(scene);
    std::mt19937 random(std::random_device{}());
    std::uniform_int_distribution<int> wait(1000, 600000);
    Counts counts;
    int generation = 1;
    for (int round = 1; round <= rounds; ++round) {
        const auto reached = GenerationAtKill(scene, generation, round, std::chrono::microseconds(wait(random)));
        if (!reached) {
            std::cerr << "The storing program ended by itself in round " << round << ".\n";
            return 1;
        }
        CheckStudyAndRun(scene, *reached, counts);
        CheckConvertedRuns(scene, counts);
        RemoveLeftovers(scene, counts);
        // A study that was new already goes with a run that may be old: begin the next round above both.
        generation = *reached;
        ApplicationState state;
        state.Paths.LastStudyGroupPath = scene.Group;
        state.CurrentRun.Header.RunName = "R1";
        StoreStudy(scene, generation);
        SaveRun(state, scene.Files, Scene::RunOf(generation), {.KeepsBackup = true});
    }
    std::cout << rounds << " rounds, " << generation - 1 << " times all files stored; files not whole: " << counts.Mixed
              << "; studies found new: " << counts.New << ", old: " << rounds - counts.New
              << "; converted runs found, whole: " << counts.ConvertedRuns
              << "; temporary files left behind: " << counts.Leftovers << "\n";
    return counts.Mixed == 0 ? 0 : 1;
}

}  // namespace
}  // namespace vantor

int main(int argc, char** argv) {
    const int rounds = argc > 1 ? std::atoi(argv[1]) : 100;
    const auto root = std::filesystem::temp_directory_path() / ("vantor-kill-rounds-" + std::to_string(getpid()));
    std::filesystem::create_directories(root);
    int status = 1;
    try {
        status = vantor::RunRounds(root.string() + "/", rounds);
    } catch (const vantor::RunTimeError& error) {
        std::cerr << error.Message() << "\n";
    }
    std::filesystem::remove_all(root);
    return status;
}
