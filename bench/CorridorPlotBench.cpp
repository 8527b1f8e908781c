#include <benchmark/benchmark.h>

#include <QApplication>
#include <QImage>
#include <cmath>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "bench/NeedApplication.h"
#include "core/forms/PainterCanvas.h"
#include "corridor/BandDrag.h"
#include "corridor/CorridorPlots.h"

namespace vantor {
namespace {

constexpr int Runs = 400;
constexpr int Samples = 600;
constexpr int Nodes = 5;

/// Runs of ten minutes one way past five nodes 2500 ft apart, with stops of different lengths, every other one before.
struct Street {
    Corridor Of;
    std::vector<MatchedRun> Driven;
    AppSettings Settings;

    Street() {
        Of.Name = "Main St";
        Settings.SpeedFactor = 3600.0F / 5280;
        for (int node = 0; node < Nodes; ++node) {
            CorridorNode& made = Of.Nodes.emplace_back();
            made.Name = "Node " + std::to_string(node + 1);
            made.DistanceFt = node * 2500.0;
            made.Timings.push_back({{}, {}, "", 90, 10.0 * node, 40});
        }
        Of.Of(Way::Forward).IdealSpeedMph = 30;
        for (int run = 0; run < Runs; ++run) Driven.push_back(Drive(run));
    }

    MatchedRun Drive(int number) {
        auto read = std::make_shared<RunReading>();
        read->Outcome = RunOutcome::Run;
        RunRecord& run = read->Run;
        run.Header.CalConstant = 1000;
        run.Header.SampleCount = read->SamplesInFile = Samples;
        run.Header.RunDate = DateOf(2026, 3, 4);
        run.Header.RunTime = TimeOf(7 + number / 100, number / 2 % 60);
        run.RunSamples.ResizeTo(Samples);
        int feet = 0;
        int nodes = 0;
        int standing = 0;
        for (int second = 0; second < Samples; ++second) {
            const int step = standing > 0 ? 0 : 30 + Random(20);
            standing = std::max(standing - 1, 0);
            feet += step;
            const bool isNode = nodes < Nodes && feet > 1000 + nodes * 2500;
            if (isNode) standing = Random(50);
            nodes += isNode ? 1 : 0;
            run.SampleValues.Append(static_cast<std::int16_t>(step | (isNode ? NodeFlag : 0)));
        }
        CorridorRun& as = Of.Runs.emplace_back();
        as.Name = "Run " + std::to_string(number + 1);
        as.IsBefore = number % 2 == 0;
        MatchedRun matched;
        matched.Index = static_cast<std::size_t>(number);
        matched.Read = std::move(read);
        return MatchAgain(std::move(matched), Of, nullptr, Settings);
    }

    int Random(std::uint32_t most) {
        noise_ = noise_ * 1664525U + 1013904223U;
        return static_cast<int>((noise_ >> 16) % most);
    }

private:
    std::uint32_t noise_ = 1;
};

const Street& TheStreet() {
    static const Street street;
    return street;
}

Plot Profiles() { return CorridorProfilePlot(TheStreet().Of, TheStreet().Driven, {}, Way::Forward, {}); }
Plot TimeSpace(TimeSpaceClock clock) {
    return CorridorTimeSpacePlot(TheStreet().Of, TheStreet().Driven, {}, Way::Forward, clock, {});
}

/// Half of the plot, moved on from frame to frame, on a screen with so many pixels for one.
void MoveFrames(benchmark::State& state, const Plot& plot) {
    const PlotLook look{.Tolerance = 0.35};  // that of a window
    const auto ratio = static_cast<double>(state.range(0));
    const PlotWindow whole = plot.Whole();
    const PlotPoint middle{whole.Across.Low + whole.Across.Span() / 2, whole.Up.Low + whole.Up.Span() / 2};
    const PlotWindow half = ZoomedWindow(whole, whole, middle, 2, plot.ZoomsUp);
    QImage image(static_cast<int>(1300 * ratio), static_cast<int>(600 * ratio), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    int frame = 0;
    for (auto _ : state) {
        const double step = std::sin(++frame * 0.1) / 4;
        image.fill(Qt::white);
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        PainterCanvas canvas(painter);
        DrawPlot(canvas, {0, 0, 1300, 600}, plot, look, MovedWindow(half, whole, step * whole.Across.Span(), 0));
    }
}

void CorridorProfilesWhole(benchmark::State& state) {
    NeedApplication();
    MoveFrames(state, Profiles());
}
BENCHMARK(CorridorProfilesWhole)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);

void CorridorProfilesMoving(benchmark::State& state) {
    NeedApplication();
    MoveFrames(state, LightOf(Profiles()));
}
BENCHMARK(CorridorProfilesMoving)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);

void CorridorTimeSpaceWhole(benchmark::State& state) {
    NeedApplication();
    MoveFrames(state, TimeSpace(TimeSpaceClock::FromStart));
}
BENCHMARK(CorridorTimeSpaceWhole)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);

void CorridorGreensWhole(benchmark::State& state) {
    NeedApplication();
    MoveFrames(state, TimeSpace(TimeSpaceClock::TimeOfDay));
}
BENCHMARK(CorridorGreensWhole)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);

/// A band was moved: the plots are made anew.
void CorridorPlotsMade(benchmark::State& state) {
    for (auto _ : state) {
        benchmark::DoNotOptimize(Profiles());
        benchmark::DoNotOptimize(TimeSpace(TimeSpaceClock::FromStart));
    }
}
BENCHMARK(CorridorPlotsMade)->Unit(benchmark::kMillisecond);

void CorridorProposals(benchmark::State& state) {
    for (auto _ : state)
        benchmark::DoNotOptimize(
            ProposeBands(TheStreet().Of, TheStreet().Driven, Way::Forward, TheStreet().Settings.SpeedFactor));
}
BENCHMARK(CorridorProposals)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace vantor
