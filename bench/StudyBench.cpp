#include <benchmark/benchmark.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <limits>

#include "analysis/DelayStatistics.h"
#include "analysis/StudyResults.h"
#include "bench/SecondsOf.h"
#include "core/RunFile.h"
#include "core/StudyFile.h"
#include "platform/DiskFileSystem.h"

namespace vantor {
namespace {

constexpr int RunsInStudy = 1000;

/// A Study Group on the disk with a study of 1000 runs.
class StudyOnDisk {
public:
    StudyOnDisk() {
        char pattern[] = "/tmp/vantor-bench-XXXXXX";
        folder_ = std::string(mkdtemp(pattern)) + "/";
        Study study;
        const auto batch = Files.BeginWrites();
        RunRecord run;
        run.Header.SampleCount = 300;
        run.SampleValues.ResizeTo(300);
        run.RunSamples.ResizeTo(300);
        for (int i = 1; i <= RunsInStudy; ++i) {
            const std::string name = "Main St-NB-" + std::to_string(i);
            AddRunFile(*batch, run, folder_, name, Expected::Nothing());
            AppendRun(study, name);
            study.Entries[i].CDStartDist = 300;
            study.Entries[i].CDEndDist = 7600;
            study.Entries[i].ControlDelay = i % 90;
        }
        batch->Commit();
        WriteStudyFile(Files, study, folder_, "All", Replacing::OwnFile);
    }
    StudyOnDisk(const StudyOnDisk&) = delete;
    StudyOnDisk& operator=(const StudyOnDisk&) = delete;
    ~StudyOnDisk() { std::filesystem::remove_all(folder_); }

    const std::string& Folder() const { return folder_; }
    DiskFileSystem Files{"/"};

private:
    std::string folder_;
};

/// Reading the study, its run headers and computing its figures, against reading the same headers as plain bytes.
void OpenStudyOf1000Runs(benchmark::State& state) {
    const StudyOnDisk disk;
    // The best of the rounds: what else the machine does at the time only adds to them.
    double opening = std::numeric_limits<double>::max();
    double reading = opening;
    for (auto iteration : state) {
        const double seconds = SecondsOf([&] {
            Study study = LoadStudy(disk.Files, disk.Folder(), "All").value();
            ResultLabels labels;
            ComputeStudyResults(study, MakeRunListRows(study, disk.Files, disk.Folder(), {}), labels);
            benchmark::DoNotOptimize(labels);
        });
        reading = std::min(
            reading, SecondsOf([&] {
                for (int i = 1; i <= RunsInStudy; ++i)
                    benchmark::DoNotOptimize(ReadFirstBytes(
                        disk.Files, disk.Folder() + "Main St-NB-" + std::to_string(i) + RunExtension, RunHeaderSize));
            }));
        opening = std::min(opening, seconds);
        state.SetIterationTime(seconds);
    }
    state.counters["open_s"] = opening;
    state.counters["read_s"] = reading;
    state.counters["ratio"] = opening / reading;
}
BENCHMARK(OpenStudyOf1000Runs)->UseManualTime()->Iterations(30)->Unit(benchmark::kMillisecond);

/// Boundaries at both ends of the longest run.
void DelayOfTheLongestRun(benchmark::State& state) {
    RunRecord run;
    run.Header.CalConstant = 1246;
    run.Header.SampleCount = 32767;
    for (int i = 1; i <= 32767; ++i) run.SampleValues.Append(static_cast<std::int16_t>(i % 60));
    AppSettings settings;
    settings.SpeedFactor = static_cast<float>(3600.0 / 5280.0);
    StudyRunEntry entry;
    for (auto _ : state) {
        PlotState plot{BoundaryAxis::Time, 1, 32766};
        benchmark::DoNotOptimize(ComputeRunDelay(run, settings, plot, entry));
    }
    state.SetItemsProcessed(state.iterations() * 32767);
}
BENCHMARK(DelayOfTheLongestRun)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace vantor
