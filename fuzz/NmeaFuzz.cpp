#include <cstdlib>

#include "FuzzInput.h"
#include "tracks/NmeaReader.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace vantor;
    LooksLikeNmea({reinterpret_cast<const char*>(data), size}, "T.nmea");
    FuzzFile(data, size, "/g/T.nmea", [](MemoryFileSystem& files) {
        double time = 0;
        std::int32_t segment = 0;
        ReadNmea(files, "/g/T.nmea", [&](const TrackPoint& point) {
            if (!point.Position || (point.Segment == segment && point.Time && *point.Time <= time)) std::abort();
            time = point.Time.value_or(time);
            segment = point.Segment;
            return true;
        });
    });
    return 0;
}
