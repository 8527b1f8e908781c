#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <limits>

#include "bench/SecondsOf.h"
#include "core/Numeric.h"
#include "gpsobd/FieldLog.h"
#include "gpsobd/PalmDatabase.h"
#include "platform/DiskFileSystem.h"
#include "platform/MdbDatabase.h"
#include "platform/SystemClock.h"

namespace vantor {
namespace {

namespace fs = std::filesystem;

/// VANTOR_BENCH_MB is the size of the log: 480 for ten million points.
std::size_t BytesOfLog() {
    const char* value = std::getenv("VANTOR_BENCH_MB");
    return static_cast<std::size_t>(value == nullptr ? 96 : std::max(Round32(Val(value)), 1)) * 1000000;
}

/// A second-format log on the disk of the working directory, gone at the end.
class LogOnDisk {
public:
    LogOnDisk() : path_(fs::current_path() / "bench.gd2") {
        FieldLog log = NewFieldLog(FormatOf(LogKind::GpsLaptop), path_.string());
        log.Prefix.LogDate = {37755};
        log.Gps.resize(BytesOfLog() / GpsPointSize);
        for (std::size_t i = 0; i < log.PointCount(); ++i) {
            GpsPoint& point = log.Gps[i];
            point.RunNumber = static_cast<std::int16_t>(i / 1000 % 100);
            point.DateTime = {37755 + static_cast<double>(i) / 86400};
            point.Latitude = 42.5;
            point.Longitude = -83.5;
        }
        WriteFieldLog(Files, log);
    }
    ~LogOnDisk() { fs::remove(path_); }
    LogOnDisk(const LogOnDisk&) = delete;
    LogOnDisk& operator=(const LogOnDisk&) = delete;

    std::string Path() const { return path_.string(); }
    DiskFileSystem Files{"/"};

private:
    fs::path path_;
};

std::uint64_t ReadPlainly(const FileSystem& files, const std::string& path) {
    const auto file = files.Open(path);
    std::vector<std::byte> piece(LogPieceSize);
    std::uint64_t bytes = 0;
    while (const std::size_t count = file->Read(piece)) bytes += count;
    return bytes;
}

/// The summary of a log against plain reading of the same bytes.
void LogSummaryAgainstReading(benchmark::State& state) {
    LogOnDisk log;
    const SystemClock clock;
    const MdbDatabase databases(log.Files);
    const PalmDatabase devices(log.Files);
    const LogSources sources{log.Files, databases, devices, clock};
    ReadPlainly(log.Files, log.Path());  // from here on the system has the file at hand

    // The best of the rounds: what else the machine does at the time only adds to them.
    double summing = std::numeric_limits<double>::max();
    double reading = summing;
    for (auto iteration : state) {
        const double seconds = SecondsOf(
            [&] { benchmark::DoNotOptimize(ReadLogSummary(sources, FormatOf(LogKind::GpsLaptop), log.Path())); });
        reading = std::min(reading, SecondsOf([&] { benchmark::DoNotOptimize(ReadPlainly(log.Files, log.Path())); }));
        summing = std::min(summing, seconds);
        state.SetIterationTime(seconds);
    }
    const std::size_t points = BytesOfLog() / GpsPointSize;
    state.counters["points"] = static_cast<double>(points);
    state.counters["summary_s"] = summing;
    state.counters["read_s"] = reading;
    state.counters["ratio"] = summing / reading;
}
BENCHMARK(LogSummaryAgainstReading)->UseManualTime()->Iterations(5)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace vantor
