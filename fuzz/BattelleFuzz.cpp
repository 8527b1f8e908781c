#include <cstdlib>

#include "FuzzLog.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace vantor;
    FuzzFile(data, size, "/g/L.txt", [](MemoryFileSystem& files) {
        const FileSources sources(files);
        const LogFormat& format = FormatOf(LogKind::Battelle);
        const auto summary = ReadLogSummary(sources.All, format, "/g/L.txt");
        const FieldLog log = ReadFieldLog(sources.All, format, "/g/L.txt");
        if (!summary || summary->StudyDate != log.StudyDate) std::abort();
        for (const GpsPoint& point : log.Gps)
            if (point.RunNumber < 1 || point.RunNumber > summary->Runs || !IsValidDate(point.DateTime)) std::abort();
        WriteFieldLog(files, log);
    });
    return 0;
}
