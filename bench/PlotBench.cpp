#include <benchmark/benchmark.h>

#include <QApplication>
#include <QImage>

#include "bench/NeedApplication.h"
#include "core/forms/PainterCanvas.h"
#include "statistics/OverlayPlot.h"
#include "statistics/TimeSpacePlot.h"

namespace vantor {
namespace {

constexpr int Runs = 200;
constexpr int Samples = 600;

/// Runs of ten minutes with stops of different lengths at their five nodes, every other one before.
struct Drives {
    TracedRuns Traced;

    Drives() {
        std::uint32_t noise = 1;
        const auto random = [&](std::uint32_t most) {
            noise = noise * 1664525U + 1013904223U;
            return static_cast<int>((noise >> 16) % most);
        };
        constexpr float SpeedFactor = 3600.0F / 5280;
        for (int run = 1; run <= Runs; ++run) {
            RunRecord record;
            record.Header.CalConstant = 1000;
            int feet = 0;
            int nodes = 0;
            int standing = 0;
            for (int second = 0; second < Samples; ++second) {
                const int step = standing > 0 ? 0 : 30 + random(20);
                standing = std::max(standing - 1, 0);
                feet += step;
                const bool isNode = nodes < 5 && feet > (nodes + 1) * 2500;
                if (isNode) standing = random(50);
                nodes += isNode ? 1 : 0;
                record.SampleValues.Append(static_cast<std::int16_t>(step | (isNode ? NodeFlag : 0)));
            }
            MeasuredRun& measured = Traced.Read.Runs.emplace_back();
            measured.Name = "Run " + std::to_string(run);
            measured.IsBefore = run % 2 == 0;
            measured.Measures = MeasureRun(record, SpeedFactor, {5, 10});
            Traced.Traces.push_back(TraceOf(record, SpeedFactor));
        }
    }

    PlottedRuns Plotted() const {
        PlottedRuns runs;
        for (std::size_t i = 0; i < Traced.Traces.size(); ++i)
            runs.push_back({&Traced.Read.Runs[i], &Traced.Traces[i]});
        return runs;
    }
};

Plot TimeSpace() {
    const Drives drives;
    return TimeSpacePlot(drives.Plotted(), TimeSpaceClock::FromStart, "Time-space diagram", {});
}

/// The whole plot drawn anew, as on a change of its zoom, on a screen with so many pixels for one.
void DrawFrames(benchmark::State& state, const Plot& plot) {
    const PlotLook look{.Tolerance = 0.35};  // that of a window
    const auto ratio = static_cast<double>(state.range(0));
    QImage image(1200, 600, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    for (auto _ : state) {
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        PainterCanvas canvas(painter);
        DrawPlot(canvas, {0, 0, 1200 / ratio, 600 / ratio}, plot, look, plot.Whole());
    }
}

void TimeSpaceFrame(benchmark::State& state) {
    NeedApplication();
    DrawFrames(state, TimeSpace());
}
BENCHMARK(TimeSpaceFrame)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);

void OverlayFrame(benchmark::State& state) {
    NeedApplication();
    const Drives drives;
    DrawFrames(state, OverlayPlot(drives.Plotted(), true, "Speeds", {}));
}
BENCHMARK(OverlayFrame)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);

/// Another choice of what is looked at: both plots are made anew.
void PlotsOverRuns(benchmark::State& state) {
    const Drives drives;
    const PlottedRuns runs = drives.Plotted();
    for (auto _ : state) {
        benchmark::DoNotOptimize(TimeSpacePlot(runs, TimeSpaceClock::FromStart, "Time-space diagram", {}));
        benchmark::DoNotOptimize(OverlayPlot(runs, true, "Speeds", {}));
    }
}
BENCHMARK(PlotsOverRuns)->Unit(benchmark::kMillisecond);

/// The run under the mouse.
void TimeSpacePointing(benchmark::State& state) {
    NeedApplication();
    const Plot plot = TimeSpace();
    const PlotMap map = MapOf(FontMeasure(), {0, 0, 1200, 600}, plot, {}, plot.Whole());
    double x = 0;
    for (auto _ : state) {
        x = x < 1200 ? x + 7 : 0;
        benchmark::DoNotOptimize(FindItem(plot, map, {x, 300}, 8));
    }
}
BENCHMARK(TimeSpacePointing)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace vantor
