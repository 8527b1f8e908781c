#include "map/Projection.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace vantor {
namespace {

constexpr double HalfTurn = 180;
constexpr double Turn = 360;
constexpr double RadiansPerDegree = std::numbers::pi / HalfTurn;
/// Where the projection's world is as high as it is wide.
constexpr double LatitudeLimit = 85.0511287798066;
/// The radius of the projection's sphere.
constexpr double EarthMetres = 6378137;
constexpr double MetresPerFoot = 0.3048;

double NearestWhole(double value) { return std::floor(value + 0.5); }

}  // namespace

WorldPoint WorldOf(const Position& position) {
    const double latitude = std::clamp(position.Latitude, -LatitudeLimit, LatitudeLimit) * RadiansPerDegree;
    return {(position.Longitude + HalfTurn) / Turn, (1 - std::asinh(std::tan(latitude)) / std::numbers::pi) / 2};
}

Position PositionOf(const WorldPoint& place) {
    const double x = place.X - std::floor(place.X);
    return {std::atan(std::sinh(std::numbers::pi * (1 - 2 * place.Y))) / RadiansPerDegree, x * Turn - HalfTurn};
}

WorldPoint NearestTurn(WorldPoint place, double x) {
    place.X += NearestWhole(x - place.X);
    return place;
}

double GroundFeet(double worldY) {
    const double latitude = PositionOf(WorldPoint{0, worldY}).Latitude * RadiansPerDegree;
    return std::cos(latitude) * 2 * std::numbers::pi * EarthMetres / MetresPerFoot;
}

void WorldBox::Include(const WorldPoint& place) {
    Low = {std::min(Low.X, place.X), std::min(Low.Y, place.Y)};
    High = {std::max(High.X, place.X), std::max(High.Y, place.Y)};
}

void WorldBox::Include(const WorldBox& box) {
    if (box.IsEmpty()) return;
    Include(box.Low);
    Include(box.High);
}

bool WorldBox::Meets(const WorldBox& other) const {
    return Low.X <= other.High.X && other.Low.X <= High.X && Low.Y <= other.High.Y && other.Low.Y <= High.Y;
}

double MapWindow::Scale() const { return TileSide * std::exp2(Zoom); }

CanvasPoint MapWindow::PlaceOf(const WorldPoint& place) const {
    const double scale = Scale();
    return {Area.X + Area.Width / 2 + (place.X - Centre.X) * scale,
            Area.Y + Area.Height / 2 + (place.Y - Centre.Y) * scale};
}

WorldPoint MapWindow::WorldAt(CanvasPoint place) const {
    const double scale = Scale();
    return {Centre.X + (place.X - Area.X - Area.Width / 2) / scale,
            Centre.Y + (place.Y - Area.Y - Area.Height / 2) / scale};
}

WorldBox MapWindow::View(double margin) const {
    return {WorldAt({Area.X - margin, Area.Y - margin}),
            WorldAt({Area.X + Area.Width + margin, Area.Y + Area.Height + margin})};
}

MapWindow FittedWindow(const WorldBox& contents, const CanvasBox& area) {
    // Room for names and markers at the edges, and below for scale and legend, which a narrow area has above each
    // other.
    constexpr double OneRow = 28;
    constexpr double TwoRows = 60;
    constexpr double Narrow = 440;
    const double margin = std::min({30.0, area.Width / 8, area.Height / 8});
    const double rows = area.Width < Narrow && area.Height >= MapWindow::LeastForTwoRows ? TwoRows : OneRow;
    const double below = area.Height < MapWindow::LeastFurnished ? 0 : rows;
    constexpr double StreetZoom = 17;
    constexpr double LeastSide = 8;
    constexpr double LeastSpan = 1e-12;
    MapWindow window{.Area = area};
    if (contents.IsEmpty()) return window;
    const auto zoomOf = [&](double room, double span) {
        return std::log2(std::max(room - 2 * margin, LeastSide) / MapWindow::TileSide / std::max(span, LeastSpan));
    };
    const double zoom = std::min(zoomOf(area.Width, contents.High.X - contents.Low.X),
                                 zoomOf(area.Height - below, contents.High.Y - contents.Low.Y));
    window.Zoom = std::clamp(zoom, MapWindow::LeastZoom, StreetZoom);
    window.Centre = contents.Middle();
    window.Centre.Y += below / 2 / window.Scale();
    return window;
}

MapWindow ZoomedWindow(MapWindow window, CanvasPoint about, double levels) {
    const WorldPoint kept = window.WorldAt(about);
    window.Zoom = std::clamp(window.Zoom + levels, MapWindow::LeastZoom, MapWindow::MostZoom);
    return MovedWindow(window, window.PlaceOf(kept), about);
}

MapWindow MovedWindow(MapWindow window, CanvasPoint from, CanvasPoint to) {
    const double scale = window.Scale();
    window.Centre.X -= (to.X - from.X) / scale;
    window.Centre.Y = std::clamp(window.Centre.Y - (to.Y - from.Y) / scale, 0.0, 1.0);
    return window;
}

}  // namespace vantor
