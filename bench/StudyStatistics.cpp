// How long the statistics of a study take, its runs read from their files, in turns with a plain loop that reads those
// files.
//
//   study_statistics RUNS [ROUNDS]      prints one JSON value; without ROUNDS 7

#include "statistics/StudyStatistics.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <stdexcept>
#include <vector>

#include "bench/ReadHeaders.h"
#include "bench/SecondsOf.h"
#include "core/RunFile.h"
#include "core/StudyFile.h"
#include "platform/DiskFileSystem.h"

namespace vantor {
namespace {

/// Runs of ten minutes with five nodes and stops at different places, half of them Before.
Study MakeStudy(DiskFileSystem& files, const std::string& folder, int runs) {
    Study study;
    RunRecord run;
    run.Header.CalConstant = 1000;
    run.Header.RunDate = DateOf(2008, 3, 14);
    const auto batch = files.BeginWrites();
    for (int i = 1; i <= runs; ++i) {
        const int samples = 600 - i % 37;
        run.Header.SampleCount = samples;
        run.Header.RunTime = TimeOf(7, i % 60);
        run.Header.Before = i % 2 == 0 ? -1 : 0;
        run.Header.After = i % 2 == 0 ? 0 : -1;
        run.SampleValues.Clear();
        for (int s = 1; s <= samples; ++s) {
            const int feet = (s + i) % 90 < 15 + i % 11 ? 0 : 40 + (s * 7 + i) % 20;
            run.SampleValues.Append(static_cast<std::int16_t>(feet | (s % 100 == 0 ? NodeFlag : 0)));
        }
        run.RunSamples.ResizeTo(samples);
        const std::string name = "Main St-NB-" + std::to_string(i);
        AddRunFile(*batch, run, folder, name, Expected::Nothing());
        AppendRun(study, name);
        study.Entries[i].CDStartDist = 300;
        study.Entries[i].CDEndDist = 7600;
        study.Entries[i].ControlDelay = i % 90;
        study.Entries[i].LOSGrade = "C";
    }
    batch->Commit();
    study.Options.FreeFlowSpeed = 45;
    return study;
}

double SecondsOfStatistics(const Study& study, const std::string& folder) {
    DiskFileSystem files("/");
    AppSettings settings;
    settings.SpeedFactor = static_cast<float>(3600.0 / 5280.0);
    int runs = 0;
    const double seconds = SecondsOf([&] {
        const StudyRuns read = ReadStudyRuns(study, files, folder, settings);
        runs = ComputeStatistics(read.Runs, study.Options).Whole.All.N;
    });
    if (runs != study.Record.RunCount) throw std::runtime_error("runs were left out");
    return seconds;
}

int MeasureStudy(int runs, int rounds) {
    char pattern[] = "/tmp/vantor-bench-XXXXXX";
    const std::string folder = std::string(mkdtemp(pattern)) + "/";
    DiskFileSystem files("/");
    const Study study = MakeStudy(files, folder, runs);
    std::vector<double> statistics;
    std::vector<double> reading;
    for (int i = 0; i < rounds; ++i) {
        statistics.push_back(SecondsOfStatistics(study, folder));
        reading.push_back(SecondsToReadHeaders(folder, runs, "--whole"));
    }
    std::filesystem::remove_all(folder);
    std::printf("{\"runs\": %d", runs);
    Tell("statistics", statistics);
    Tell("read", reading);
    std::printf(", \"ratio\": %.2f}\n", *std::ranges::min_element(statistics) / *std::ranges::min_element(reading));
    return 0;
}

}  // namespace
}  // namespace vantor

int main(int argc, char** argv) {
    try {
        return vantor::MeasureStudy(argc > 1 ? std::atoi(argv[1]) : 1000, argc > 2 ? std::atoi(argv[2]) : 7);
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
}
