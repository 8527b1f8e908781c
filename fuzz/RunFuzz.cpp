#include "FuzzInput.h"
#include "analysis/DelayStatistics.h"
#include "core/RunDecoding.h"
#include "core/RunFile.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace vantor;
    FuzzFile(data, size, "/g/R.rd2", [](MemoryFileSystem& files) {
        SilentMessageBoxes messages;
        auto run = ReadRunFile(files, messages, "/g/", "R");
        if (!run) return;
        WriteRunFile(files, *run, "/g/", "Again", Expected::Nothing());
        DecodeRunSamples(*run);
        AppSettings settings;
        StudyRunEntry entry;
        entry.CDStartDist = 1;
        entry.CDEndDist = run->Header.RunLength;
        PlotState plot = PlacedBoundaries(*run, entry);
        ComputeRunDelay(*run, settings, plot, entry);
    });
    return 0;
}
