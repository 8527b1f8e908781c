#include <cstdlib>

#include "FuzzInput.h"
#include "gpsobd/LaptopLog.h"

namespace vantor {
namespace {

/// The summary agrees with the log read whole, and what is written reads back as the same log.
void ReadAs(MemoryFileSystem& files, LogKind kind) {
    const NoDay clock;
    const auto summary = ReadLaptopSummary(files, clock, kind, "/g/L.log");
    FieldLog log = ReadLaptopLog(files, clock, kind, "/g/L.log");
    if (!summary || summary->DroppedBytes != log.DroppedBytes) std::abort();
    const auto bytes = EncodeLaptopLog(log);
    files.Put("/g/Again.log", bytes);
    const FieldLog again = ReadLaptopLog(files, clock, kind, "/g/Again.log");
    if (again.Points.size() != log.Points.size() || EncodeLaptopLog(again) != bytes) std::abort();
}

}  // namespace
}  // namespace vantor

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace vantor;
    for (const LogKind kind : {LogKind::GpsLaptop, LogKind::ObdLaptop, LogKind::GpsObd})
        FuzzFile(data, size, "/g/L.log", [kind](MemoryFileSystem& files) { ReadAs(files, kind); });
    return 0;
}
