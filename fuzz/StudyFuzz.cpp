#include "FuzzInput.h"
#include "core/StudyFile.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace vantor;
    // A damaged number of runs only makes as many empty ones, which would take nearly all of the time.
    if (DecodeRecord<StudyRecord>(StudyRecordFields, std::as_bytes(std::span(data, size))).RunCount > 200) return 0;
    FuzzFile(data, size, "/g/S.ld2", [](MemoryFileSystem& files) {
        auto study = LoadStudy(files, "/g/", "S");
        if (study) WriteStudyFile(files, *study, "/g/", "Again", Replacing::AnyFile);
    });
    return 0;
}
