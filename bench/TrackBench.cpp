#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <limits>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>

#include "bench/SecondsOf.h"
#include "core/Numeric.h"
#include "platform/DiskFileSystem.h"
#include "tracks/GpxReader.h"
#include "tracks/NmeaReader.h"

namespace vantor {
namespace {

namespace fs = std::filesystem;

/// VANTOR_BENCH_POINTS is the number of points of a track.
int PointsOfTrack() {
    const char* value = std::getenv("VANTOR_BENCH_POINTS");
    return value == nullptr ? 1000000 : std::max(Round32(Val(value)), 1);
}

std::string GpxPointText(int second, double latitude, double longitude) {
    char text[200];
    std::snprintf(text, sizeof text,
                  "<trkpt lat=\"%.7f\" lon=\"%.7f\">\n  <ele>200.1</ele>\n  <time>2026-01-%02dT%02d:%02d:%02dZ</time>\n"
                  "</trkpt>\n",
                  latitude, longitude, second / 86400 + 1, second / 3600 % 24, second / 60 % 60, second % 60);
    return text;
}

std::string WithChecksum(const char* body) {
    unsigned sum = 0;
    for (const char* at = body; *at != '\0'; ++at) sum ^= static_cast<unsigned char>(*at);
    char text[200];
    std::snprintf(text, sizeof text, "$%s*%02X\r\n", body, sum);
    return text;
}

std::string NmeaPointText(int second, double latitude, double longitude) {
    char clock[40];
    char place[60];
    char body[160];
    std::snprintf(clock, sizeof clock, "%02d%02d%02d.000", second / 3600 % 24, second / 60 % 60, second % 60);
    std::snprintf(place, sizeof place, "42%07.4f,N,083%07.4f,W", (latitude - 42) * 60, (-longitude - 83) * 60);
    std::snprintf(body, sizeof body, "GPGGA,%s,%s,1,08,1.1,200.1,M,-34.0,M,,", clock, place);
    std::string text = WithChecksum(body);
    std::snprintf(body, sizeof body, "GPRMC,%s,A,%s,012.50,090.00,%02d0126,,", clock, place, second / 86400 + 1);
    return text + WithChecksum(body);
}

/// A track of a point a second on the disk of the working directory, gone at the end.
class TrackOnDisk {
public:
    TrackOnDisk(const char* name, std::string_view start, std::string (*pointText)(int, double, double),
                std::string_view end)
        : path_((fs::current_path() / name).string()) {
        fs::remove(path_);
        const auto file = Files.Create(path_);
        std::string text(start);
        const auto append = [&] {
            file->Append(std::as_bytes(std::span(text)));
            text.clear();
        };
        for (int i = 0; i < PointsOfTrack(); ++i) {
            text += pointText(i, 42.5 + i % 700 * 1e-5, -83.5 - i % 1100 * 1e-5);
            if (text.size() > 1000000) append();
        }
        text += end;
        append();
        file->Close();
    }
    ~TrackOnDisk() { fs::remove(path_); }
    TrackOnDisk(const TrackOnDisk&) = delete;
    TrackOnDisk& operator=(const TrackOnDisk&) = delete;

    const std::string& Path() const { return path_; }
    DiskFileSystem Files{"/"};

private:
    std::string path_;
};

/// Points of a file against gpsbabel reading the same one, which writes nothing.
template <class Read>
void AgainstGpsbabel(benchmark::State& state, const char* format, const TrackOnDisk& track, Read read) {
    double reading = std::numeric_limits<double>::max();
    for (auto iteration : state) {
        std::uint64_t points = 0;
        const TrackSink sink = [&](const TrackPoint& point) { return point.Position && ++points != 0; };
        const double seconds = SecondsOf([&] { read(track.Files, track.Path(), sink); });
        if (points != static_cast<std::uint64_t>(PointsOfTrack())) throw std::runtime_error("points are missing");
        reading = std::min(reading, seconds);
        state.SetIterationTime(seconds);
    }
    state.counters["points"] = PointsOfTrack();
    state.counters["read_s"] = reading;
    if (std::system("command -v gpsbabel >/dev/null") != 0) return;  // there is nothing to compare with
    const std::string command = std::string("gpsbabel -t -i ") + format + " -f '" + track.Path() + "'";
    const double babel = SecondsOf([&] {
        if (std::system(command.c_str()) != 0) throw std::runtime_error("gpsbabel failed");
    });
    state.counters["gpsbabel_s"] = babel;
    state.counters["ratio"] = reading / babel;
}

void ReadGpxTrack(benchmark::State& state) {
    const TrackOnDisk track("bench.gpx",
                            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<gpx version=\"1.1\" creator=\"bench\" "
                            "xmlns=\"http://www.topografix.com/GPX/1/1\">\n<trk><name>A</name><trkseg>\n",
                            GpxPointText, "</trkseg></trk></gpx>\n");
    AgainstGpsbabel(state, "gpx", track, [](const auto& files, const auto& path, const auto& sink) {
        benchmark::DoNotOptimize(ReadGpx(files, path, sink));
    });
}
BENCHMARK(ReadGpxTrack)->UseManualTime()->Iterations(5)->Unit(benchmark::kMillisecond);

void ReadNmeaTrack(benchmark::State& state) {
    const TrackOnDisk track("bench.nmea", "", NmeaPointText, "");
    AgainstGpsbabel(state, "nmea", track, [](const auto& files, const auto& path, const auto& sink) {
        benchmark::DoNotOptimize(ReadNmea(files, path, sink));
    });
}
BENCHMARK(ReadNmeaTrack)->UseManualTime()->Iterations(5)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace vantor
