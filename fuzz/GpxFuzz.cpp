#include <cstdlib>

#include "FuzzInput.h"
#include "tracks/GpxReader.h"

namespace vantor {
namespace {

constexpr const char* Path = "/g/T.gpx";

/// The points and what is told of them as one text.
std::string Told(MemoryFileSystem& files) {
    std::string told;
    const TrackSummary summary = ReadGpx(files, Path, [&](const TrackPoint& point) {
        told += std::to_string(point.Time.value_or(0)) + " " + std::to_string(point.Position->Latitude) + " " +
                std::to_string(point.Speed.value_or(-1)) + " " + std::to_string(point.Segment) + "\n";
        return true;
    });
    if (!summary.Damage.empty()) throw RunTimeError(ErrorNumber::TypeMismatch);
    return told + std::to_string(summary.Void) + " " + std::to_string(summary.Broken);
}

/// A point with a further attribute is read by the XML parser alone: it has to come out the same.
void ReadBothWays(MemoryFileSystem& files, std::string text) {
    const std::string told = Told(files);
    constexpr std::string_view Start = "<trkpt";
    for (std::size_t at = text.find(Start); at != std::string::npos; at = text.find(Start, at + 1))
        text.insert(at + Start.size(), " zqzq=''");
    files.PutText(Path, text);
    if (Told(files) != told) std::abort();
}

}  // namespace
}  // namespace vantor

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace vantor;
    const std::string text(reinterpret_cast<const char*>(data), size);
    LooksLikeGpx(text, "T.gpx");
    // Elsewhere than in a start tag the attribute may change what the file says.
    const bool isPlain = text.find("<!") == std::string::npos && text.find("<?") == std::string::npos;
    FuzzFile(data, size, Path, [&](MemoryFileSystem& files) {
        if (isPlain)
            ReadBothWays(files, text);
        else
            Told(files);
    });
    return 0;
}
