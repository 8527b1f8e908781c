#pragma once

#include "core/Position.h"
#include "core/ports/Canvas.h"

namespace vantor {

/// False for what loggers write where they know no position (PositionFrom).
inline bool IsPosition(const Position& position) {
    return PositionFrom(position.Latitude, position.Longitude).has_value();
}

/// A place in Web Mercator: the world is 1 wide and 1 high, from 180 degrees west to the east and from 85.05 degrees
/// north, its limit at the poles, to the south. X may be a whole number of turns off, so that what crosses the date
/// line lies in one piece.
struct WorldPoint {
    double X = 0;
    double Y = 0;
};

WorldPoint WorldOf(const Position& position);
/// Its longitude is from -180 up to 180.
Position PositionOf(const WorldPoint& place);
/// The place with as many turns as bring it nearest to `x`.
WorldPoint NearestTurn(WorldPoint place, double x);
/// Feet on the ground, straight across, that the width of the world is there.
double GroundFeet(double worldY);

struct WorldBox {
    WorldPoint Low{1e9, 1e9};
    WorldPoint High{-1e9, -1e9};

    bool IsEmpty() const { return High.X < Low.X; }
    void Include(const WorldPoint& place);
    void Include(const WorldBox& box);
    bool Meets(const WorldBox& other) const;
    WorldPoint Middle() const { return {(Low.X + High.X) / 2, (Low.Y + High.Y) / 2}; }
};

/// What a map shows: the place in the middle of an area of the canvas and the zoom level, at which the world is
/// 256 * 2^Zoom wide.
struct MapWindow {
    static constexpr double TileSide = 256;
    static constexpr double LeastZoom = 0;
    static constexpr double MostZoom = 21;
    /// The height from which on there is room for a scale and a legend.
    static constexpr double LeastFurnished = 90;
    /// Lower than that there is no legend above a scale: both would hide what is shown.
    static constexpr double LeastForTwoRows = 200;

    WorldPoint Centre{0.5, 0.5};
    double Zoom = LeastZoom;
    CanvasBox Area;

    /// Units of the canvas that the world is wide.
    double Scale() const;
    CanvasPoint PlaceOf(const WorldPoint& place) const;
    WorldPoint WorldAt(CanvasPoint place) const;
    /// What is in view, with `margin` units around it.
    WorldBox View(double margin = 0) const;
    double FeetPerUnit() const { return GroundFeet(Centre.Y) / Scale(); }
};

/// The window that shows all of `contents` with a margin, not closer than a street; the world where there is nothing.
MapWindow FittedWindow(const WorldBox& contents, const CanvasBox& area);
/// Zoomed in by `levels` about a place, which stays where it is.
MapWindow ZoomedWindow(MapWindow window, CanvasPoint about, double levels);
/// What was at `from` lies at `to` then.
MapWindow MovedWindow(MapWindow window, CanvasPoint from, CanvasPoint to);

}  // namespace vantor
