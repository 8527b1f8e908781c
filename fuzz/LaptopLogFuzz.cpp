#include <cstdlib>

#include "FuzzLog.h"
#include "gpsobd/LaptopLog.h"
#include "gpsobd/LogOverview.h"

namespace vantor {
namespace {

/// The summary agrees with the log read whole, its points with those that its runs are made of, and what is written
/// reads back as the same log.
void ReadAs(MemoryFileSystem& files, LogKind kind) {
    const LogFormat& format = FormatOf(kind);
    const FileSources sources(files);
    const auto summary = ReadLogSummary(sources.All, format, "/g/L.log");
    FieldLog log = ReadFieldLog(sources.All, format, "/g/L.log");
    if (!summary || summary->DroppedBytes != log.DroppedBytes) std::abort();
    if (ReadLogOverview(sources.All, format, "/g/L.log").PointCount != log.PointCount()) std::abort();
    const auto bytes = EncodeLaptopLog(log);
    files.Put("/g/Again.log", bytes);
    const FieldLog again = ReadFieldLog(sources.All, format, "/g/Again.log");
    if (again.PointCount() != log.PointCount() || EncodeLaptopLog(again) != bytes) std::abort();
}

}  // namespace
}  // namespace vantor

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace vantor;
    for (const LogKind kind : {LogKind::GpsLaptop, LogKind::ObdLaptop, LogKind::GpsObd})
        FuzzFile(data, size, "/g/L.log", [kind](MemoryFileSystem& files) { ReadAs(files, kind); });
    return 0;
}
