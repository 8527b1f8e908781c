#include "FuzzInput.h"
#include "corridor/CorridorFile.h"
#include "corridor/CorridorNodes.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace vantor;
    FuzzFile(data, size, "/g/C.corridor.geojson", [](MemoryFileSystem& files) {
        Corridor corridor;
        PutNodes(corridor, ReadNodes(files, "/g/C.corridor.geojson"));
    });
    FuzzFile(data, size, "/g/C.corridor.geojson", [](MemoryFileSystem& files) {
        const StoredCorridor stored = LoadCorridor(files, "/g/C.corridor.geojson");
        SaveCorridor(files, "/g/Again.corridor.geojson", stored.Corridor, Expected::Nothing());
        // What was read can be written, and read as the same again.
        StoredCorridor again = LoadCorridor(files, "/g/Again.corridor.geojson");
        again.Corridor.Name = stored.Corridor.Name;
        if (again.Corridor != stored.Corridor) __builtin_trap();
    });
    return 0;
}
