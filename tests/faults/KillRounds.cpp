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
#include "core/StudyFile.h"
#include "core/Text.h"
#include "counter/CounterFile.h"
#include "editing/SaveRun.h"
#include "fakes/PutFiles.h"
#include "platform/DiskFileSystem.h"

namespace vantor {
namespace {

constexpr int Samples = 3600;

Study StudyOf(int generation) {
    Study study;
    study.Record.StudyName = "AM";
    study.Record.StudyNotes = std::to_string(generation);
    for (int i = 0; i < 100 + generation % 50; ++i) {
        AppendRun(study, "R" + std::to_string(i));
        study.Entries[study.Record.RunCount].ControlDelay = generation;
    }
    return study;
}

RunRecord RunOf(int generation) {
    RunRecord run = RunOfValues(std::vector<int>(Samples, generation % 256));
    run.Header.RunName = "R1";
    run.Header.Notes = std::to_string(generation);
    for (RunSample& sample : run.RunSamples) sample.Speed = static_cast<float>(generation);
    return run;
}

/// What the two programs agree on: every value stored tells the generation that it is of.
struct Scene {
    explicit Scene(const std::string& root)
        : Files(root), Group(root + "Group/"), Temp(root + "Temp/"), Counter(root + "Corridor.tdc") {}

    /// Over the study that is there.
    void StoreStudy(int generation) {
        Study study = StudyOf(generation);
        if (const auto there = LoadStudy(Files, Group, "AM")) study.Stored = there->Stored;
        WriteStudyFile(Files, study, Group, "AM", Replacing::OwnFile);
    }
    void StoreRun(int generation) {
        ApplicationState state;
        state.Paths.LastStudyGroupPath = Group;
        state.CurrentRun.Header.RunName = "R1";
        SaveRun(state, Files, RunOf(generation), {.KeepsBackup = true});
    }
    std::vector<std::string> Convert() {
        RunRecord last;
        return ConvertCounterFile(Files, Counter, Temp, last);
    }

    DiskFileSystem Files;
    std::string Group, Temp, Counter;
    std::map<std::string, RunRecord> Converted;  ///< by their names in the first conversion
};

/// The program that is killed. It stores a study, a run and a converted counter file, beginning with a different one
/// each round, and tells each generation that was stored whole.
[[noreturn]] void StoreForEver(Scene& scene, int generation, int first, int told) {
    const std::function<void()> stores[] = {[&] { scene.StoreStudy(generation); }, [&] { scene.StoreRun(generation); },
                                            [&] {
                                                for (const std::string& name : scene.Convert())
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

int GenerationIn(const std::string& notes) { return std::atoi(std::string(Trim(notes)).c_str()); }

std::optional<int> GenerationOfStudy(const Scene& scene) {
    const auto saved = LoadStudy(scene.Files, scene.Group, "AM");
    if (!saved) return std::nullopt;
    const int generation = GenerationIn(saved->Record.StudyNotes);
    const Study whole = StudyOf(generation);
    const std::size_t count = whole.Entries.size() - 1;
    const bool isWhole = saved->Record.RunCount == whole.Record.RunCount && saved->Entries == whole.Entries &&
                         scene.Files.Find(scene.Group + "AM.ld2")->Size == StudyRecordSize + count * StudyRunEntrySize;
    return isWhole ? std::optional(generation) : std::nullopt;
}

std::optional<int> GenerationOfRun(const Scene& scene, const std::string& path) {
    const RunReading saved = ReadRun(scene.Files, path);
    if (!saved || scene.Files.Find(path)->Size != RunHeaderSize + Samples * SamplePairSize) return std::nullopt;
    const int generation = GenerationIn(saved.Run.Header.Notes);
    const RunRecord whole = RunOf(generation);
    const bool isWhole = saved.Run.SampleValues == whole.SampleValues && saved.Run.RunSamples == whole.RunSamples;
    return isWhole ? std::optional(generation) : std::nullopt;
}

/// That of the latest backup; the others are deleted.
std::optional<int> GenerationOfBackup(Scene& scene) {
    const auto backups = RunBackupsOf(scene.Files, scene.Group, "R1");
    if (backups.empty()) return std::nullopt;
    for (std::size_t older = 1; older < backups.size(); ++older) scene.Files.Delete(backups[older].Path);
    return GenerationOfRun(scene, backups.front().Path);
}

void CheckStudyAndRun(Scene& scene, int generation, Counts& counts) {
    const auto isThisOrNext = [&](std::optional<int> found) { return found == generation || found == generation + 1; };
    const auto ofStudy = GenerationOfStudy(scene);
    Expect(isThisOrNext(ofStudy), "AM.ld2", counts);
    if (ofStudy == generation + 1) ++counts.New;
    Expect(isThisOrNext(GenerationOfRun(scene, scene.Group + "R1.rd2")), "R1.rd2", counts);
    const auto ofBackup = GenerationOfBackup(scene);
    Expect(ofBackup == generation - 1 || isThisOrNext(ofBackup), "backup of R1", counts);
}

/// Runs of the conversion that was killed stay; the next one must not meet them.
void CheckConvertedRuns(Scene& scene, Counts& counts) {
    for (const FileInfo& info : scene.Files.List(scene.Temp)) {
        if (info.IsHidden) continue;
        ++counts.ConvertedRuns;
        const auto whole = scene.Converted.find(BaseName(info.Name));
        const RunReading reading = ReadRun(scene.Files, scene.Temp + info.Name);
        Expect(whole != scene.Converted.end() && reading && !reading.IsCut() && reading.Run == whole->second, info.Name,
               counts);
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
    scene.StoreStudy(1);
    for (const int generation : {0, 1}) scene.StoreRun(generation);
    for (const std::string& name : scene.Convert()) {
        scene.Converted[name] = ReadRun(scene.Files, scene.Temp + name + RunExtension).Run;
        scene.Files.Delete(scene.Temp + name + RunExtension);
    }
}

int RunRounds(const std::string& root, int rounds) {
    Scene scene(root);
    Prepare(scene);
    const auto seed = std::random_device{}();
    std::cout << "seed " << seed << std::endl;
    std::mt19937 random(seed);
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
        scene.StoreStudy(generation);
        scene.StoreRun(generation);
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
