#include "FuzzInput.h"
#include "core/RunFile.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace vantor;
    FuzzFile(data, size, "/g/R.rdf", [](MemoryFileSystem& files) {
        SilentMessageBoxes messages;
        ConvertVer1RunFile(files, messages, "/g/", "R");
    });
    return 0;
}
