#include "FuzzInput.h"
#include "gpsobd/PalmDatabase.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace vantor;
    FuzzFile(data, size, "/g/G.pdb", [](MemoryFileSystem& files) {
        const auto records = PalmDatabase(files).Open("/g/G.pdb", "GPSData");
        while (records->Next())
            for (int i = 0; i < records->FieldCount(); ++i) records->Text(i);
    });
    return 0;
}
