#include <algorithm>
#include <cstddef>
#include <memory>
#include <string>

#include "map/MapDrawing.h"
#include "reports/ReportContents.h"

namespace vantor {
namespace {

std::string NoteOf(const ReportData& data, const MapScene& scene) {
    std::string note = std::to_string(data.Map.Tracks.size()) + " of " + std::to_string(data.Runs.size()) +
                       " runs have positions and are drawn, coloured by speed; slow ones are broader.";
    if (std::ranges::any_of(data.Map.Tracks, &MapTrack::IsSetAside))
        note += " Those that are set aside are grey and dashed.";
    if (const std::size_t out = scene.LeftOut(); out > 0)
        note += " " + std::to_string(out) + " of their samples have no position.";
    return data.UnderMap.Problem.empty() ? note : note + "\n" + data.UnderMap.Problem;
}

}  // namespace

void AddMap(ReportPages& pages, const ReportData& data) {
    if (data.Map.Tracks.empty())
        return pages.AddText("No run of this study has positions, as runs of counters have none.", BodyStyle);
    const auto scene = std::make_shared<const MapScene>(data.Map);
    const std::string note = NoteOf(data, *scene);
    const std::size_t lines = WrappedLines(note, pages.Width(), CaptionStyle, pages.Measure()).size();
    const double text = static_cast<double>(lines + 1) * pages.Measure().LineHeight(CaptionStyle);
    const double height = pages.Room() - text;
    const CanvasBox box{pages.Left(), pages.Take(height), pages.Width(), height};
    const MapWindow window = FittedWindow(scene->Bounds(), box);
    std::shared_ptr<const MapTiles> under;
    constexpr double TilePixelsToPoint = 2;  // with more, the names on a base map could not be read
    if (data.UnderMap.Source) under = TilesOf(*data.UnderMap.Source, window, TilePixelsToPoint);
    pages.Draw([scene, window, under](Canvas& canvas) {
        constexpr double PixelsToPoint = 4;  // finer than is seen on paper
        MapLook look;
        look.Detail = PixelsToPoint;
        look.Under = under.get();
        DrawMap(canvas, *scene, window, look);
        canvas.DrawFrame(window.Area, {0.75, PaperColours.Rule});
    });
    pages.AddText(note, CaptionStyle);
}

}  // namespace vantor
