#include <benchmark/benchmark.h>

#include <QImage>
#include <cmath>
#include <numbers>

#include "bench/NeedApplication.h"
#include "core/forms/PainterCanvas.h"
#include "map/MapDrawing.h"

namespace vantor {
namespace {

constexpr CanvasBox Area{0, 0, 1200, 800};

/// Drives along the same crooked road with stops, each a second apart from point to point and some feet aside.
MapContents Corridor(int tracks, int points) {
    MapContents contents;
    std::uint32_t noise = 1;
    const auto random = [&] {
        noise = noise * 1664525U + 1013904223U;
        return static_cast<double>(noise >> 8) / 0x1000000;
    };
    for (int number = 0; number < tracks; ++number) {
        MapTrack& track = contents.Tracks.emplace_back();
        track.Name = "Run " + std::to_string(number);
        double way = 0;
        double standing = 0;
        double mph = 0;
        for (int i = 0; i < points; ++i) {
            if (standing <= 0 && random() < 0.01) standing = 40 * random();
            standing -= 1;
            mph = standing > 0 ? std::max(mph - 6, 0.0) : std::min(mph + 3, 40.0);
            way += mph * 4e-6;
            track.Add({{33.7 + 0.02 * std::sin(9 * way) + 2e-5 * random(), -84.4 + way + 2e-5 * random()}, mph});
        }
    }
    return contents;
}

/// A million points that turn this way and that over a town: none of them lies where another does.
MapContents Town(int points) {
    MapContents contents;
    MapTrack& track = contents.Tracks.emplace_back();
    std::uint32_t noise = 1;
    double direction = 0;
    Position at{33.7, -84.4};
    for (int i = 0; i < points; ++i) {
        noise = noise * 1664525U + 1013904223U;
        const double chance = static_cast<double>(noise >> 8) / 0x1000000;
        if (chance < 0.03) direction += std::numbers::pi / 2 * (chance < 0.015 ? 1 : -1);
        at.Latitude += 1.2e-4 * std::sin(direction) - (at.Latitude - 33.7) * 1e-4;
        at.Longitude += 1.2e-4 * std::cos(direction) - (at.Longitude + 84.4) * 1e-4;
        track.Add({at, 60 * chance});
    }
    return contents;
}

/// A map drawn anew at a zoom so many levels nearer than the whole, moved on from frame to frame.
void DrawFrames(benchmark::State& state, MapContents contents) {
    NeedApplication();
    const MapScene scene(std::move(contents));
    MapWindow window = FittedWindow(scene.Bounds(), Area);
    window.Zoom += static_cast<double>(state.range(0));
    QImage image(static_cast<int>(Area.Width), static_cast<int>(Area.Height), QImage::Format_ARGB32_Premultiplied);
    double moved = 3;
    for (auto _ : state) {
        moved = -moved;
        window = MovedWindow(window, {0, 0}, {moved, moved});
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        PainterCanvas canvas(painter);
        DrawMap(canvas, scene, window, {});
    }
}

void MapFrame100000(benchmark::State& state) { DrawFrames(state, Corridor(100, 1000)); }
BENCHMARK(MapFrame100000)->ArgName("nearer")->Arg(0)->Arg(2)->Arg(5)->Unit(benchmark::kMillisecond);

void MapFrameMillion(benchmark::State& state) { DrawFrames(state, Corridor(1000, 1000)); }
BENCHMARK(MapFrameMillion)->ArgName("nearer")->Arg(0)->Arg(2)->Arg(5)->Unit(benchmark::kMillisecond);

void MapFrameTown(benchmark::State& state) { DrawFrames(state, Town(1'000'000)); }
BENCHMARK(MapFrameTown)->ArgName("nearer")->Arg(0)->Arg(2)->Arg(5)->Unit(benchmark::kMillisecond);

/// Making a million points ready, beside a window.
void MapThinsMillion(benchmark::State& state) {
    const MapContents contents = Town(1'000'000);
    for (auto _ : state) benchmark::DoNotOptimize(MapScene(contents));
}
BENCHMARK(MapThinsMillion)->Unit(benchmark::kMillisecond);

/// The track under the mouse.
void MapPointing(benchmark::State& state) {
    NeedApplication();
    const MapScene scene(Corridor(1000, 1000));
    const MapWindow window = FittedWindow(scene.Bounds(), Area);
    double x = 0;
    for (auto _ : state) {
        x = x < Area.Width ? x + 7 : 0;
        benchmark::DoNotOptimize(scene.Find(window, {x, Area.Height / 2}, 8));
    }
}
BENCHMARK(MapPointing)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace vantor
