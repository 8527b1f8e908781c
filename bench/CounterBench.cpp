#include <benchmark/benchmark.h>
#ifndef _WIN32
#include <unistd.h>
#endif

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include "bench/SecondsOf.h"
#include "core/Numeric.h"
#include "core/RunRecords.h"
#include "counter/CounterFile.h"
#include "platform/DiskFileSystem.h"

namespace vantor {
namespace {

namespace fs = std::filesystem;

// VANTOR_BENCH_MB is the size of the counter file, VANTOR_BENCH_WORDS the length of its runs (one word a second).
std::size_t FromEnvironment(const char* name, std::size_t otherwise) {
    const char* value = std::getenv(name);
    return value == nullptr ? otherwise : static_cast<std::size_t>(std::max(Round32(Val(value)), 1));
}

/// A folder on the disk of the working directory, gone at the end.
class BenchFolder {
public:
    BenchFolder() : path_(fs::current_path() / "counter-bench.tmp") {
        fs::remove_all(path_);
        fs::create_directories(path_);
    }
    ~BenchFolder() { fs::remove_all(path_); }
    BenchFolder(const BenchFolder&) = delete;
    BenchFolder& operator=(const BenchFolder&) = delete;

    std::string CounterFile() const { return (path_ / "bench.tdc").string(); }
    /// A new folder each time: files just deleted slow the making of others.
    std::string NewFolder() {
        const fs::path folder = path_ / std::to_string(++folders_);
        fs::create_directories(folder);
        return folder.string() + PathSeparator;
    }

private:
    fs::path path_;
    int folders_ = 0;
};

/// What was written before must not be on its way to the disk still.
void Settle() {
#ifndef _WIN32
    sync();
#endif
}

std::string RecordText(std::size_t record, std::size_t words) {
    const auto number = static_cast<std::int64_t>(record);
    std::string text = "T," + ZeroPadded(number / 999 + 1, 3) + "," + ZeroPadded(number % 999 + 1, 3) +
                       ",MAINSTNB,0653,031108,01246\r\n";
    for (std::size_t i = 1; i <= words; ++i) {
        text += ZeroPadded(static_cast<std::int64_t>(40 + i % 17), 3);
        text += i % 97 == 0 ? " 128" : i % 61 == 0 ? " 016" : " 000";
        text += i % 10 == 0 || i == words ? "\r\n" : ",";
    }
    return text + ZeroPadded(static_cast<std::int64_t>(words), 5) + "\r\n";
}

void WriteCounterFile(FileSystem& files, const std::string& path, std::size_t size, std::size_t words) {
    std::string text;
    text.reserve(size + 20 * words);
    for (std::size_t record = 0; text.size() < size; ++record) text += RecordText(record, words);
    text += "::::::::::::::::::::\r\n";
    WriteFile(files, path, std::as_bytes(std::span(text)));
}

/// Seconds in which a plain C program writes the same run files with the same promise.
double SecondsOfPeer(const std::string& from, const std::string& to) {
#ifdef VANTOR_WRITE_RUNS
    std::FILE* const peer = popen((VANTOR_WRITE_RUNS " '" + from + "' '" + to + "'").c_str(), "r");
    double seconds = 0;
    if (peer == nullptr || std::fscanf(peer, "%lf", &seconds) != 1 || pclose(peer) != 0) std::abort();
    return seconds;
#else
    return std::numeric_limits<double>::quiet_NaN();
#endif
}

/// The conversion of a counter file against plain writing of its run files.
void ConvertAgainstWriting(benchmark::State& state) {
    const std::size_t megabytes = FromEnvironment("VANTOR_BENCH_MB", 200);
    const std::size_t words = std::min<std::size_t>(FromEnvironment("VANTOR_BENCH_WORDS", 3600), 32767);
    BenchFolder folder;
    DiskFileSystem files(folder.NewFolder());
    WriteCounterFile(files, folder.CounterFile(), megabytes * 1000000, words);

    // The best of the rounds: what else the disk does at the time only adds to them.
    double converting = std::numeric_limits<double>::max();
    double writing = converting;
    std::vector<std::string> names;
    for (auto iteration : state) {
        const std::string runs = folder.NewFolder();
        RunRecord run;
        Settle();
        const double seconds = SecondsOf([&] { names = ConvertCounterFile(files, folder.CounterFile(), runs, run); });
        writing = std::min(writing, SecondsOfPeer(runs, folder.NewFolder()));
        converting = std::min(converting, seconds);
        state.SetIterationTime(seconds);
    }
    state.counters["files"] = static_cast<double>(names.size());
    state.counters["convert_s"] = converting;
    state.counters["write_s"] = writing;
    state.counters["ratio"] = converting / writing;
}
BENCHMARK(ConvertAgainstWriting)->UseManualTime()->Iterations(5)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace vantor
