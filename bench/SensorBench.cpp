#include <benchmark/benchmark.h>

#include "bench/NeedApplication.h"
#include "core/Settings.h"
#include "editing/SensorEdits.h"
#include "editing/forms/SensorPlot.h"

namespace vantor {
namespace {

/// The longest run there can be, all noise, with nodes and keys on the way.
RunRecord NoisyRun() {
    constexpr int Samples = 32767;
    RunRecord run;
    run.Header.CalConstant = 1582;
    run.Header.SampleCount = Samples;
    run.SampleValues.ResizeTo(Samples);
    run.RunSamples.ResizeTo(Samples);
    std::uint32_t noise = 1;
    for (int i = 1; i <= Samples; ++i) {
        noise = noise * 1664525U + 1013904223U;
        const int mark = i % 300 == 0 ? NodeFlag : (i % 170 == 0 ? 16 << 8 : 0);
        run.SampleValues[i] = static_cast<std::int16_t>(mark | static_cast<int>(noise >> 26));
    }
    return run;
}

/// A repair, as one step, and the whole picture after it; the step is taken back outside the measured time.
void SensorRepair(benchmark::State& state) {
    NeedApplication();
    AppSettings settings;
    settings.SpeedFactor = static_cast<float>(3600.0 / FeetPerMile);
    RunRecord run = NoisyRun();
    const SensorData data(run.Header.CalConstant, settings);
    SensorEdits edits(run.SampleValues);
    SensorView view(run, settings);
    SensorPlot plot(nullptr, view);
    plot.resize(1200, 600);
    plot.show();
    QApplication::processEvents();
    const bool smooths = state.range(0) != 0;
    const bool redraws = state.range(1) != 0;
    for (auto _ : state) {
        edits.Do(smooths ? data.Smooth(run.SampleValues, 5) : data.DeSpike(run.SampleValues));
        if (redraws) {
            view.WordsChanged();
            plot.repaint();
        }
        state.PauseTiming();
        edits.Undo();
        state.ResumeTiming();
    }
}
BENCHMARK(SensorRepair)->ArgNames({"smooth", "redraw"})->ArgsProduct({{0, 1}, {0, 1}})->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace vantor
