#include <cstdlib>

#include "FuzzInput.h"
#include "tracks/CsvReader.h"
#include "tracks/TrackCut.h"
#include "tracks/TrackSpeeds.h"

namespace vantor {
namespace {

/// The mapping survives its text, and the points their way to pieces for runs.
void Read(MemoryFileSystem& files) {
    CsvMapping mapping = PreviewCsv(files, "/g/T.csv").Mapping;
    if (mapping.Delimiter > 0 && CsvMappingOf(CsvMappingText(mapping)) != mapping) std::abort();
    if (mapping.DayOrder == DayOrder::Unknown) mapping.DayOrder = DayOrder::DayFirst;
    std::vector<TrackPoint> points;
    ReadCsv(files, NoDay(), "/g/T.csv", mapping, [&](const TrackPoint& point) {
        points.push_back(point);
        return true;
    });
    std::vector<TrackPoint> seconds = WholeSecondsOf(points);
    FillSpeeds(seconds);
    for (const TrackPiece& piece : CutTrack(seconds).Pieces)
        if (piece.Count == 0 || piece.First + piece.Count > seconds.size()) std::abort();
}

}  // namespace
}  // namespace vantor

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace vantor;
    LooksLikeCsv({reinterpret_cast<const char*>(data), size}, "T.csv");
    FuzzFile(data, size, "/g/T.csv", Read);
    return 0;
}
