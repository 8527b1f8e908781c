#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>

#include "core/RunDecoding.h"
#include "core/RunFile.h"
#include "core/Settings.h"
#include "core/StudyFile.h"
#include "platform/DiskFileSystem.h"
#include "platform/QtDocumentWriter.h"
#include "reports/modReports.h"

namespace vantor {
namespace {

constexpr int RunsInStudy = 200;

/// Ten minutes of stop and go over six nodes, with a key at every stop.
RunRecord ReportedRun() {
    constexpr int Samples = 600;
    RunRecord run;
    run.Header.CalConstant = 1000;
    run.Header.SampleCount = Samples;
    run.RunSamples.ResizeTo(Samples);
    for (int second = 1; second <= Samples; ++second) {
        const int phase = second % 60;
        const int mark = second % 100 == 0 ? NodeFlag : (phase == 50 ? 16 << 8 : 0);
        run.SampleValues.Append(static_cast<std::int16_t>(mark | (phase > 45 ? 0 : 30 + phase)));
    }
    DecodeNewRun(run);
    return run;
}

/// Reading 200 runs and printing all reports on them as a PDF file.
void ReportOn200Runs(benchmark::State& state) {
    char pattern[] = "/tmp/vantor-bench-XXXXXX";
    const std::string folder = std::string(mkdtemp(pattern)) + "/";
    DiskFileSystem files("/");
    Study study;
    study.Record.StudyName = "All";
    RunRecord run = ReportedRun();
    const auto batch = files.BeginWrites();
    for (int i = 1; i <= RunsInStudy; ++i) {
        const std::string name = "Main St-NB-" + std::to_string(i);
        AddRunFile(*batch, run, folder, name, Expected::Nothing());
        AppendRun(study, name);
        study.Entries[i].CDStartDist = 300;
        study.Entries[i].CDEndDist = 20000;
        study.Entries[i].ControlDelay = i % 90;
        study.Entries[i].LOSGrade = "C";
    }
    batch->Commit();
    AppSettings settings;
    settings.SpeedFactor = static_cast<float>(3600.0 / FeetPerMile);
    settings.ShowPageNumbers = settings.ShowRunNamesOnStats = -1;

    const QtDocumentWriter writer;
    std::size_t pages = 0;
    std::size_t size = 0;
    for (auto _ : state) {
        const ReportData data = LoadReportData(study, settings, files, folder, DateOf(2026, 11, 21));
        const PagedDocument document = MakeReport(data, {}, writer.Measure());
        pages = document.Pages.size();
        size = writer.Pdf(document).size();
    }
    state.counters["pages"] = static_cast<double>(pages);
    state.counters["bytes"] = static_cast<double>(size);
    std::filesystem::remove_all(folder);
}
BENCHMARK(ReportOn200Runs)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace vantor
