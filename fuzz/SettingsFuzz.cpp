#include "FuzzInput.h"
#include "core/Settings.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace vantor;
    FuzzFile(data, size, std::string("/program/") + SettingsFileName, [](MemoryFileSystem& files) {
        ApplicationState state;
        LoadSettings(state, files);
        SaveSettings(state, files);
    });
    return 0;
}
