#pragma once

#include <optional>
#include <string>
#include <vector>

#include "map/MapDrawing.h"

namespace vantor {

/// A surface under texts that lie on the map.
void FillPanel(Canvas& canvas, const CanvasBox& box, const Colours& inks);
/// Where a track begins, a ring, or ends, a square.
void DrawEndMarker(Canvas& canvas, CanvasPoint at, double size, const Colours& inks, bool isStart);
void DrawNodeMarker(Canvas& canvas, CanvasPoint at, double size, const Colours& inks);

/// What stands at the edges of a map: scale bar, legend, north, whom the base map is of. What has no room is left out.
class MapFurniture {
public:
    MapFurniture(const TextMeasure& measure, const MapScene& scene, const MapWindow& window, const MapLook& look);

    std::vector<CanvasBox> Boxes() const;
    void Draw(Canvas& canvas) const;

private:
    void PlaceAttribution();
    void PlaceScaleAndLegend();
    TextStyle Style(TextSide side = TextSide::Left) const;
    double LastBlockWidth() const;
    double LegendWidth() const;
    void DrawScale(Canvas& canvas) const;
    void DrawLegend(Canvas& canvas) const;
    void DrawNorth(Canvas& canvas) const;

    const TextMeasure& measure_;
    const MapScene& scene_;
    const MapWindow& window_;
    const MapLook& look_;
    double line_;    ///< the height of a line of text
    double bottom_;  ///< what is placed stands above
    ScaleBar bar_;
    CanvasBox scale_, legend_, north_, attribution_;  ///< without width where it is left out
};

}  // namespace vantor
