#include <benchmark/benchmark.h>

#include <QApplication>
#include <QImage>

#include "bench/NeedApplication.h"
#include "core/forms/PainterCanvas.h"
#include "plots/Plot.h"

namespace vantor {
namespace {

constexpr int Runs = 200;
constexpr int Samples = 600;

/// Ways of so many runs over time, with stops of different lengths at the same places, and the names of these places.
Plot TimeSpace() {
    Plot plot;
    plot.Axes.Title = "Time-space diagram";
    plot.Axes.Across = {"Time (min:s)", {0, Samples}, AxisValues::Minutes};
    plot.Axes.Up = {"Distance (ft)", {0, 16000}};
    std::uint32_t noise = 1;
    const auto random = [&](std::uint32_t most) {
        noise = noise * 1664525U + 1013904223U;
        return (noise >> 16) % most;
    };
    PlotLines nodes;
    for (int node = 1; node <= 5; ++node) nodes.Lines.push_back({node * 2500.0, "Node " + std::to_string(node)});
    plot.Add(nodes);
    for (int run = 1; run <= Runs; ++run) {
        PlotTrace trace;
        trace.Item = run;
        trace.Pattern = run % 2 == 0 ? LinePattern::Dashed : LinePattern::Solid;
        double feet = 0;
        int standing = 0;
        for (int second = 0; second < Samples; ++second) {
            const int before = static_cast<int>(feet / 2500);
            if (standing > 0) {
                --standing;
            } else {
                feet += 30 + random(20);
                if (static_cast<int>(feet / 2500) > before) standing = static_cast<int>(random(50));
            }
            trace.Points.push_back({double(second), feet});
        }
        plot.Items.push_back({"Run " + std::to_string(run)});
        plot.Add(std::move(trace));
    }
    return plot;
}

/// The whole plot drawn anew, as on a change of its zoom.
void TimeSpaceFrame(benchmark::State& state) {
    NeedApplication();
    const Plot plot = TimeSpace();
    const PlotLook look{.Tolerance = 0.35};  // that of a window
    QImage image(1200, 600, QImage::Format_ARGB32_Premultiplied);
    for (auto _ : state) {
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        PainterCanvas canvas(painter);
        DrawPlot(canvas, {0, 0, 1200, 600}, plot, look, plot.Whole());
    }
}
BENCHMARK(TimeSpaceFrame)->Unit(benchmark::kMillisecond);

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
