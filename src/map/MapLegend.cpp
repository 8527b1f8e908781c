#include "map/MapLegend.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "core/Axis.h"
#include "core/Numeric.h"

namespace vantor {
namespace {

constexpr double Edge = 8;   // from the edge of the map
constexpr double Space = 5;  // within a panel
constexpr double BlockWidth = 28;
constexpr double NoSpeedWidth = 56;
constexpr double BlockHeight = 7;
constexpr double Marker = 8;
constexpr const char* StartName = "start";
constexpr const char* EndName = "end";
constexpr const char* NoSpeedName = "no speed";

void FillRing(Canvas& canvas, CanvasPoint at, double size, Colour ink, Colour middle) {
    canvas.DrawDot(at, size, ink);
    canvas.DrawDot(at, size * 0.5, middle);
}

void FillSquare(Canvas& canvas, CanvasPoint at, double size, Colour ink) {
    canvas.FillBox({at.X - size / 2, at.Y - size / 2, size, size}, ink);
}

}  // namespace

void FillPanel(Canvas& canvas, const CanvasBox& box, const Colours& inks) {
    constexpr double Opacity = 0.85;
    const std::array outline = {CanvasPoint{box.X, box.Y}, CanvasPoint{box.X + box.Width, box.Y},
                                CanvasPoint{box.X + box.Width, box.Y + box.Height},
                                CanvasPoint{box.X, box.Y + box.Height}};
    canvas.FillShape(outline, inks.Base, Opacity);
}

void DrawEndMarker(Canvas& canvas, CanvasPoint at, double size, const Colours& inks, bool isStart) {
    constexpr double Halo = 3;
    if (isStart) {
        canvas.DrawDot(at, size + Halo, inks.Base);
        FillRing(canvas, at, size, inks.Text, inks.Base);
    } else {
        FillSquare(canvas, at, size + Halo - 1, inks.Base);
        FillSquare(canvas, at, size - 1, inks.Text);
    }
}

void DrawNodeMarker(Canvas& canvas, CanvasPoint at, double size, const Colours& inks) {
    const double half = size / 2;
    const std::array outline = {CanvasPoint{at.X, at.Y - half}, CanvasPoint{at.X + half, at.Y},
                                CanvasPoint{at.X, at.Y + half}, CanvasPoint{at.X - half, at.Y},
                                CanvasPoint{at.X, at.Y - half}, CanvasPoint{at.X + half, at.Y}};
    // Hollow: runs stop at their nodes, and that is to be seen.
    canvas.DrawPolyline(outline, {4, inks.Base});
    canvas.DrawPolyline(outline, {2, inks.Boundary});
}

ScaleBar ScaleBarOf(const MapWindow& window, const Units& units, double room) {
    constexpr double Thousand = 1000;
    const double feetPerUnit = window.FeetPerUnit();
    const double most = room * feetPerUnit;
    const double large = units.Metric ? units.FeetOfLength(Thousand) : FeetPerMile;
    // The large unit from the point on where its bar is at least a half long.
    const bool isLarge = most >= large / 2;
    const double unit = isLarge ? large : units.FeetOfLength(1);
    const double fits = most / unit;
    // The greatest round number that fits: the smallest that is above the half of what fits, or the one below.
    double count = RoundFraction(fits / 2.5);
    for (const double next : {RoundFraction(fits / 2), RoundFraction(fits)})
        if (next <= fits) count = std::max(count, next);
    const char* name = isLarge ? (units.Metric ? "km" : count == 1 ? "mile" : "miles") : units.LengthLabel();
    return {count * unit / feetPerUnit, FixedDecimals(count, count < 1 ? 1 : 0) + " " + name};
}

MapFurniture::MapFurniture(const TextMeasure& measure, const MapScene& scene, const MapWindow& window,
                           const MapLook& look)
    : measure_(measure), scene_(scene), window_(window), look_(look) {
    const CanvasBox& area = window.Area;
    line_ = measure.LineHeight(Style());
    bottom_ = area.Y + area.Height - Edge;
    constexpr double LeastWidth = 140;
    PlaceAttribution();
    if (area.Width < LeastWidth || area.Height < MapWindow::LeastFurnished || scene.IsEmpty()) return;
    const double north = 2 * line_;
    north_ = {area.X + area.Width - Edge - north, area.Y + Edge, north, north + line_};
    PlaceScaleAndLegend();
}

TextStyle MapFurniture::Style(TextSide side) const { return {look_.TextSize, false, look_.Inks.Text, side}; }

void MapFurniture::PlaceAttribution() {
    if (look_.Under == nullptr || look_.Under->Facts().Attribution.empty()) return;
    const CanvasBox& area = window_.Area;
    const double width =
        std::min(measure_.TextWidth(look_.Under->Facts().Attribution, Style()) + 2 * Space, area.Width);
    attribution_ = {area.X + area.Width - width, area.Y + area.Height - line_, width, line_};
}

/// Of the class whose name may be longer.
double MapFurniture::LastBlockWidth() const {
    const SpeedScale& speeds = scene_.Speeds();
    return std::max(BlockWidth, measure_.TextWidth(speeds.NameOf(speeds.Classes() - 1), Style()) + Space);
}

double MapFurniture::LegendWidth() const {
    if (scene_.Items() == 0) return 0;
    const double ends =
        Marker + Space + std::max(measure_.TextWidth(StartName, Style()), measure_.TextWidth(EndName, Style()));
    const double speeds = (scene_.Speeds().Classes() - 1) * BlockWidth + LastBlockWidth() +
                          measure_.TextWidth(scene_.Contents().Shown.SpeedLabel(), Style()) + Space;
    return Space + speeds + (scene_.LacksSpeeds() ? NoSpeedWidth + Space : 0) + 2 * Space + ends + Space;
}

void MapFurniture::PlaceScaleAndLegend() {
    constexpr double BarRoom = 120;
    const CanvasBox& area = window_.Area;
    const double height = line_ + BlockHeight + 2 * Space;
    const double legend = LegendWidth();
    bar_ = ScaleBarOf(window_, scene_.Contents().Shown, std::min(BarRoom, area.Width / 3));
    const double scale = std::max(bar_.Width, measure_.TextWidth(bar_.Name, Style())) + 2 * Space;
    const bool isOneRow = scale + legend + 3 * Edge <= area.Width;
    const double reached = area.X + Edge + (isOneRow ? scale + Edge + legend : std::max(scale, legend));
    if (attribution_.Width > 0 && reached > attribution_.X) bottom_ -= line_;
    scale_ = {area.X + Edge, bottom_ - height, scale, height};
    if (legend > area.Width - 2 * Edge || legend == 0) return;
    if (!isOneRow && area.Height < MapWindow::LeastForTwoRows) return;
    legend_ = isOneRow ? CanvasBox{area.X + 2 * Edge + scale, bottom_ - height, legend, height}
                       : CanvasBox{area.X + Edge, bottom_ - 2 * height - 2, legend, height};
}

std::vector<CanvasBox> MapFurniture::Boxes() const { return {scale_, legend_, north_, attribution_}; }

void MapFurniture::Draw(Canvas& canvas) const {
    for (const CanvasBox& box : Boxes())
        if (box.Width > 0) FillPanel(canvas, box, look_.Inks);
    if (scale_.Width > 0) DrawScale(canvas);
    if (legend_.Width > 0) DrawLegend(canvas);
    if (north_.Width > 0) DrawNorth(canvas);
    if (attribution_.Width > 0)
        canvas.DrawText({attribution_.X + Space, attribution_.Y, attribution_.Width - 2 * Space, line_},
                        look_.Under->Facts().Attribution, Style(TextSide::Right));
}

void MapFurniture::DrawScale(Canvas& canvas) const {
    const double left = scale_.X + Space;
    const double y = scale_.Y + Space + line_ + BlockHeight - 1;
    const LineStyle style{1.5, look_.Inks.Text};
    canvas.DrawText({left, scale_.Y + Space, scale_.Width - 2 * Space, line_}, bar_.Name, Style());
    canvas.DrawPolyline(
        std::array{CanvasPoint{left, y - BlockHeight + 2}, CanvasPoint{left, y}, CanvasPoint{left + bar_.Width, y},
                   CanvasPoint{left + bar_.Width, y - BlockHeight + 2}},
        style);
}

void MapFurniture::DrawLegend(Canvas& canvas) const {
    const SpeedScale& speeds = scene_.Speeds();
    const double top = legend_.Y + Space;
    const double below = top + BlockHeight;
    double x = legend_.X + Space;
    for (int speed = 0; speed < speeds.Classes(); ++speed) {
        const double width = speed + 1 < speeds.Classes() ? BlockWidth : LastBlockWidth();
        // As broad as the lines are against each other.
        const double height = BlockHeight * speeds.WidthOf(speed) / speeds.WidthOf(0);
        canvas.FillBox({x, below - height, width, height}, speeds.InkOf(speed, look_.Inks));
        canvas.DrawText({x, below, width, line_}, speeds.NameOf(speed), Style());
        x += width;
    }
    const char* unit = scene_.Contents().Shown.SpeedLabel();
    const double unitWidth = measure_.TextWidth(unit, Style());
    canvas.DrawText({x, below, unitWidth + Space, line_}, unit, Style());
    x += unitWidth + Space;
    if (scene_.LacksSpeeds()) {
        canvas.FillBox({x, below - BlockHeight / 2, NoSpeedWidth, BlockHeight / 2},
                       speeds.InkOf(SpeedScale::NoClass, look_.Inks));
        canvas.DrawText({x, below, NoSpeedWidth, line_}, NoSpeedName, Style());
        x += NoSpeedWidth + Space;
    }
    x += 2 * Space;
    const double half = (legend_.Height - 2) / 2;
    for (const bool isStart : {true, false}) {
        const double y = legend_.Y + 1 + (isStart ? 0 : half);
        DrawEndMarker(canvas, {x + Marker / 2, y + half / 2}, Marker, look_.Inks, isStart);
        canvas.DrawText({x + Marker + Space, y, legend_.X + legend_.Width - x - Marker - Space, half},
                        isStart ? StartName : EndName, Style());
    }
}

void MapFurniture::DrawNorth(Canvas& canvas) const {
    const double middle = north_.X + north_.Width / 2;
    const double top = north_.Y + 3;
    const double base = top + north_.Width - 2;
    const double half = north_.Width / 4;
    canvas.FillShape(std::array{CanvasPoint{middle, top}, CanvasPoint{middle + half, base},
                                CanvasPoint{middle, base - half}, CanvasPoint{middle - half, base}},
                     look_.Inks.Text, 1);
    canvas.DrawText({north_.X, base, north_.Width, line_}, "N", Style(TextSide::Centre));
}

}  // namespace vantor
