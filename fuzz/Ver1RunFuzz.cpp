#include "FuzzInput.h"
#include "core/RunFile.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace vantor;
    FuzzFile(data, size, "/g/R.rdf", [](MemoryFileSystem& files) {
        SilentMessageBoxes messages;
        RunRecord run;
        ConvertVer1RunFile(files, messages, run, "/g/", "R");
    });
    return 0;
}
