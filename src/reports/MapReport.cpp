#include <algorithm>
#include <cstddef>
#include <memory>
#include <string>

#include "map/MapDrawing.h"
#include "reports/ReportContents.h"

namespace vantor {

void AddMap(ReportPages& pages, const ReportData& data) {
    const std::size_t drawn = data.Map.Tracks.size();
    if (drawn == 0)
        return pages.AddText("No run of this study has positions, as runs of counters have none.", BodyStyle);
    const auto scene = std::make_shared<const MapScene>(data.Map);
    const double text = 3 * pages.Measure().LineHeight(CaptionStyle);
    const double height = pages.Room() - text;
    const CanvasBox box{pages.Left(), pages.Take(height), pages.Width(), height};
    pages.Draw([scene, box](Canvas& canvas) {
        constexpr double PixelsToPoint = 4;  // finer than is seen on paper
        MapLook look;
        look.Detail = PixelsToPoint;
        DrawMap(canvas, *scene, FittedWindow(scene->Bounds(), box), look);
        canvas.DrawFrame(box, {0.75, PaperColours.Rule});
    });
    std::string note = std::to_string(drawn) + " of " + std::to_string(data.Runs.size()) +
                       " runs have positions and are drawn, coloured by speed; slow ones are broader.";
    if (std::ranges::any_of(data.Map.Tracks, &MapTrack::IsSetAside))
        note += " Those that are set aside are grey and dashed.";
    if (const std::size_t out = scene->LeftOut(); out > 0)
        note += " " + std::to_string(out) + " of their samples have no position.";
    pages.AddText(note, CaptionStyle);
}

}  // namespace vantor
