#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <string>

#include "core/RunTimeError.h"
#include "platform/DiskFileSystem.h"
#include "platform/MdbDatabase.h"

// libmdb opens files of the disk alone. It is not built with the sanitizers: what they see is what it hands to the C
// library and to us, and a crash.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace vantor;
    static const std::string path =
        (std::filesystem::temp_directory_path() / ("vantor-fuzz-" + std::to_string(getpid()) + ".mdb")).string();
    std::FILE* file = std::fopen(path.c_str(), "wb");
    if (file == nullptr || std::fwrite(data, 1, size, file) != size) return -1;
    std::fclose(file);
    const DiskFileSystem files("/");
    for (const char* table : {"GPSData", "OBDData"}) {
        try {
            const auto records = MdbDatabase(files).OpenTable(path, table);
            while (records->Next())
                for (int i = 0; i < records->FieldCount(); ++i) records->Text(i);
        } catch (const RunTimeError&) {
            // An answer, as in the other fuzzers.
        }
    }
    std::filesystem::remove(path);
    return 0;
}
