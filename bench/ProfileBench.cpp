#include <benchmark/benchmark.h>

#include <QApplication>
#include <algorithm>
#include <optional>

#include "bench/NeedApplication.h"
#include "core/Settings.h"
#include "editing/forms/SpeedProfilePlot.h"
#include "plots/SpeedProfile.h"

namespace vantor {
namespace {

/// The longest run there can be: nine hours of stop and go with some noise, nodes and keys on the way.
RunRecord LongestRun() {
    constexpr int Samples = 32767;
    RunRecord run;
    run.Header.CalConstant = 1582;
    run.Header.SampleCount = Samples;
    run.SampleValues.ResizeTo(Samples);
    run.RunSamples.ResizeTo(Samples);
    std::uint32_t noise = 1;
    int pulses = 30;
    for (int i = 1; i <= Samples; ++i) {
        noise = noise * 1664525U + 1013904223U;
        pulses = std::clamp(pulses + static_cast<int>(noise >> 16) % 7 - 3, 0, 45);
        const int mark = i % 300 == 0 ? NodeFlag : (i % 170 == 0 ? 16 << 8 : 0);
        run.SampleValues[i] = static_cast<std::int16_t>(mark | pulses);
    }
    return run;
}

struct ProfileScreen {
    RunRecord Run = LongestRun();
    AppSettings Settings;
    StudyRunEntry Entry;
    std::optional<SpeedProfile> Profile;
    SpeedProfilePlot Plot{nullptr};

    explicit ProfileScreen(BoundaryAxis axis) {
        Settings.SpeedFactor = static_cast<float>(3600.0 / FeetPerMile);
        Entry.CDStartDist = 20000;
        Entry.CDEndDist = 150000;
        Profile.emplace(Run, Settings, Entry);
        if (axis == BoundaryAxis::Time) Profile->ToggleAxis();
        Profile->Compute();
        Plot.resize(1200, 600);
        Plot.SetProfile(&*Profile, {});
        Plot.show();
        QApplication::processEvents();
    }
};

void ProfileWholeFrame(benchmark::State& state) {
    NeedApplication();
    ProfileScreen screen(state.range(0) != 0 ? BoundaryAxis::Time : BoundaryAxis::Distance);
    for (auto _ : state) {
        screen.Plot.Redraw();
        screen.Plot.repaint();
    }
}
BENCHMARK(ProfileWholeFrame)->ArgName("time")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

/// One move of the mouse: the boundary follows, the run is computed, the line is painted.
void ProfileDragFrame(benchmark::State& state) {
    NeedApplication();
    ProfileScreen screen(BoundaryAxis::Distance);
    const PlotRectangle area = screen.Profile->Geometry().Rectangle();
    screen.Profile->Grab(ProfileLine::End);
    double x = (area.Left + area.Right) / 2;
    for (auto _ : state) {
        x = x + 3 < area.Right ? x + 3 : (area.Left + area.Right) / 2;
        screen.Profile->DragTo(x, area.Top);
        screen.Profile->Compute();
        screen.Plot.UpdateLines();
        QApplication::processEvents();
    }
}
BENCHMARK(ProfileDragFrame)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace vantor
