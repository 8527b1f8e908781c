#include "FuzzInput.h"
#include "counter/CounterCheck.h"
#include "counter/CounterFile.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace vantor;
    FuzzFile(data, size, "/g/C.tdc", [](MemoryFileSystem& files) {
        ThrowingEnd end;
        CheckCounterFile(files, "/g/C.tdc");
        try {
            CounterStudies(files, "/g/C.tdc", end);
        } catch (const RunTimeError&) {
            // The conversion reads on its own and keeps the runs before the fault.
        }
        RunRecord run;
        files.CreateFolder("/t");
        ConvertCounterFile(files, "/g/C.tdc", "/t/", run);
    });
    return 0;
}
