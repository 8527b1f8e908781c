#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <limits>

#include "bench/SecondsOf.h"
#include "core/RunDecoding.h"
#include "core/RunFile.h"
#include "corridor/CorridorIntake.h"
#include "corridor/CorridorResults.h"
#include "platform/DiskFileSystem.h"

namespace vantor {
namespace {

constexpr int Seconds = 600;
constexpr double FeetASecond = 44;
constexpr double FeetNorth = 364813.3;  // to a degree

/// Runs of ten minutes to the north, with a stop before every other node, past nodes on all of the way.
class CorridorOnDisk {
public:
    CorridorOnDisk(int runs, int nodes) {
        char pattern[] = "/tmp/vantor-bench-XXXXXX";
        root_ = std::string(mkdtemp(pattern)) + "/";
        Files.CreateFolder(root_ + "g");
        const double step = (Seconds * FeetASecond - 2000) / nodes;
        for (int i = 0; i < nodes; ++i) {
            CorridorNode& node = Street.Nodes.emplace_back();
            node.Name = "Node " + std::to_string(i + 1);
            node.At = Position{42 + (1000 + i * step) / FeetNorth, -83};
            node.Around = {400, 300};
        }
        MeasureNodes(Street);
        for (const Way way : BothWays) Street.Of(way).IdealSpeedMph = 32;
        RunRecord run = Run();
        const auto batch = Files.BeginWrites();
        for (int i = 0; i < runs; ++i) {
            const std::string name = "R" + std::to_string(i);
            AddRunFile(*batch, run, root_ + "g/", name, Expected::Nothing());
            TakeRun(Street, CorridorRunOf(run, "g", name, Way::Forward));
        }
        batch->Commit();
    }
    CorridorOnDisk(const CorridorOnDisk&) = delete;
    CorridorOnDisk& operator=(const CorridorOnDisk&) = delete;
    ~CorridorOnDisk() { std::filesystem::remove_all(root_); }

    const std::string& Root() const { return root_; }
    DiskFileSystem Files{"/"};
    Corridor Street;

private:
    static RunRecord Run() {
        RunRecord run;
        run.Header.CalConstant = 1000;
        double feet = 0;
        for (int i = 0; i < Seconds; ++i) {
            const bool stands = i % 120 > 100;
            const double driven = stands ? 0 : FeetASecond * 120 / 100;
            feet += driven;
            run.SampleValues.Append(static_cast<std::int16_t>(driven));
            RunSample sample;
            sample.Latitude = 42 + feet / FeetNorth;
            sample.Longitude = -83;
            run.RunSamples.Append(sample);
        }
        run.Header.SampleCount = Seconds;
        DecodeNewRun(run);
        return run;
    }

    std::string root_;
};

AppSettings SettingsOfStudies() {
    AppSettings settings;
    settings.SpeedFactor = 0.6818F;
    settings.StopSpeedThreshold = 5;
    return settings;
}

/// Matching runs of ten minutes with the nodes, with all delays and what hangs on the boundaries, against reading the
/// same files.
void MatchCorridor(benchmark::State& state) {
    CorridorOnDisk disk(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
    const AppSettings settings = SettingsOfStudies();
    const auto line = CorridorLine::Of(disk.Street);
    double reading = std::numeric_limits<double>::max();
    double matching = reading;
    double all = reading;
    for (auto iteration : state) {
        reading = std::min(
            reading, SecondsOf([&] {
                for (const CorridorRun& run : disk.Street.Runs)
                    benchmark::DoNotOptimize(ReadRun(disk.Files, disk.Root() + "g/", run.Name, RunPart::Whole));
            }));
        const RunReading run = ReadRun(disk.Files, disk.Root() + "g/", "R0", RunPart::Whole);
        matching = std::min(matching, SecondsOf([&] {
                                for (std::size_t i = 0; i < disk.Street.Runs.size(); ++i)
                                    benchmark::DoNotOptimize(MatchRun(run.Run, disk.Street, &*line, {}));
                            }));
        const double seconds = SecondsOf(
            [&] { benchmark::DoNotOptimize(ReadCorridorRuns(disk.Street, disk.Files, disk.Root(), settings)); });
        all = std::min(all, seconds);
        state.SetIterationTime(seconds);
    }
    state.counters["reading_ms"] = reading * 1000;
    state.counters["matching_to_reading"] = matching / reading;
    state.counters["all_to_reading"] = all / reading;
}
BENCHMARK(MatchCorridor)
    ->ArgNames({"runs", "nodes"})
    ->ArgsProduct({{500, 1000, 2000}, {20}})
    ->Args({1000, 5})
    ->Args({1000, 10})
    ->Args({10000, 20})
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(2);

/// What a window does when a band or an ideal speed has moved: all delays and results of what was read, seconds.
void CorridorResultsAgain(benchmark::State& state) {
    CorridorOnDisk disk(400, 20);
    const AppSettings settings = SettingsOfStudies();
    MatchedRuns runs = ReadCorridorRuns(disk.Street, disk.Files, disk.Root(), settings);
    for (auto iteration : state) {
        for (MatchedRun& run : runs.Runs) DelayAgain(run, disk.Street, settings);
        benchmark::DoNotOptimize(ComputeCorridor(disk.Street, runs.Runs, {}));
    }
}
BENCHMARK(CorridorResultsAgain)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace vantor
