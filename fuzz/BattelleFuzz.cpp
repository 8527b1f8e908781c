#include <cstdlib>

#include "FuzzInput.h"
#include "gpsobd/BattelleLog.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace vantor;
    FuzzFile(data, size, "/g/L.txt", [](MemoryFileSystem& files) {
        const auto summary = ReadBattelleSummary(files, "/g/L.txt");
        const FieldLog log = ReadBattelleLog(files, "/g/L.txt");
        if (!summary || summary->StudyDate != log.StudyDate) std::abort();
        for (const LogPoint& point : log.Points)
            if (point.Gps.RunNumber < 1 || point.Gps.RunNumber > summary->Runs || !IsValidDate(point.Gps.DateTime))
                std::abort();
        WriteFieldLog(files, log);
    });
    return 0;
}
