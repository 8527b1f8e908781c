#pragma once

#include "map/MapScene.h"
#include "map/MapTiles.h"

namespace vantor {

/// How a map is drawn; lengths in the units of its canvas.
struct MapLook {
    Colours Inks = LightColours;
    double TextSize = 9;
    double Detail = 1;                ///< pixels to the unit
    const MapTiles* Under = nullptr;  ///< the base map, where there is one
};

/// The map from the base map to the legend, in the area of its window.
void DrawMap(Canvas& canvas, const MapScene& scene, const MapWindow& window, const MapLook& look);
/// Draws a track once more, so that it stands out, with its ends and its direction.
void DrawChosenTrack(Canvas& canvas, const MapScene& scene, const MapWindow& window, const MapLook& look, int item);
/// Draws what lies over all tracks, also over a chosen one: nodes, scale, legend, north.
void DrawOverTracks(Canvas& canvas, const MapScene& scene, const MapWindow& window, const MapLook& look);

/// A round length for a bar of at most `room` units of the window, with its name: feet and miles, metres and
/// kilometres.
struct ScaleBar {
    double Width = 0;
    std::string Name;
};
ScaleBar ScaleBarOf(const MapWindow& window, const Units& units, double room);

}  // namespace vantor
