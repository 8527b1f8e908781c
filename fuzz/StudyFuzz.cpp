#include "FuzzInput.h"
#include "core/StudyFile.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace vantor;
    FuzzFile(data, size, "/g/S.ld2", [](MemoryFileSystem& files) {
        auto study = LoadStudy(files, "/g/", "S");
        if (study) WriteStudyFile(files, *study, "/g/", "Again");
    });
    return 0;
}
