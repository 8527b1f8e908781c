#include "editing/SensorPicture.h"

#include <array>
#include <cmath>

#include "plots/ProfilePlot.h"

namespace vantor {
namespace {

/// Single data points get a dot when they are so many pixels apart.
constexpr double FarApart = 7;
constexpr double DotSize = 4.5;

TextStyle NumberStyle(const PlotLook& look) { return {look.TextSize, false, look.Inks.DimText}; }
double Space(const PlotLook& look) { return look.TextSize / 3; }

class SensorDrawing {
public:
    SensorDrawing(Canvas& canvas, const SensorView& view, const PlotLook& look)
        : canvas_(canvas), view_(view), look_(look), across_(ScaleAcross(view.Geometry())) {
        const ProfileGeometry& geometry = view.Geometry();
        const PlotRectangle& area = geometry.Rectangle();
        up_ = SpeedsUp(geometry.Speeds(), geometry.Units());
        map_ = PlotMap({area.Left, area.Top, area.Right - area.Left, area.Baseline - area.Top},
                       {across_.Whole, up_.Whole});
    }

    void Draw(double width, double columnsPerPixel) {
        DrawSpeedGrid(canvas_, up_, look_, map_, 0);
        DrawScaleGrid(canvas_, across_, look_, map_, width);
        if (view_.PointCount() == 0) return;
        const SpeedTrace speeds = VisibleSpeeds(view_.Trace(), view_.Geometry(), columnsPerPixel);
        speeds.Draw(canvas_, map_, look_);
        if (map_.XOf(1) - map_.XOf(0) >= FarApart || speeds.Points.size() == 1) DrawPoints(speeds);
        DrawMarks(true);
        DrawMarks(false);
        DrawActivePoint();
    }

private:
    double Top() const { return map_.Area().Y; }
    double Bottom() const { return map_.Area().Y + map_.Area().Height; }
    bool IsVisible(double x) const { return x >= map_.Area().X - 1 && x <= map_.Area().X + map_.Area().Width + 1; }
    void DrawSymbol(const PlotSample& symbol, CanvasPoint middle) {
        DrawMarker(canvas_, middle, symbol.Marker, symbol.MarkerSize, look_.Inks.*symbol.Ink, look_.Inks);
    }

    void DrawPoints(const SpeedTrace& speeds) {
        for (const PlotPoint& point : speeds.Points)
            if (IsVisible(map_.XOf(point.X))) canvas_.DrawDot(map_.Of(point), DotSize, look_.Inks.Trace);
    }

    void DrawMarks(bool areNodes) {
        // Where they stand closer together than this, more of them would only cover each other.
        constexpr double Nearest = 3;
        double before = map_.Area().X - Nearest - 1;
        for (const ProfileMark& mark : view_.Trace().Marks()) {
            const double x = map_.XOf(mark.Sample);
            if (mark.IsNode != areNodes || !IsVisible(x) || x - before < Nearest) continue;
            before = x;
            if (areNodes) canvas_.DrawLine({x, Top()}, {x, Bottom()}, {1, look_.Inks.Node});
            DrawSymbol(areNodes ? SensorNode() : SensorKey(),
                       {areNodes ? std::floor(x) + 0.5 : x, areNodes ? Top() : Bottom() - SensorSymbolSize / 2});
        }
    }

    void DrawActivePoint() {
        const std::int32_t point = view_.ActivePoint();
        const double x = map_.XOf(point);
        if (!IsVisible(x)) return;
        const double left = std::floor(x);
        const std::array line = {CanvasPoint{left, Top()}, CanvasPoint{left + 1, Top()},
                                 CanvasPoint{left + 1, Bottom()}, CanvasPoint{left, Bottom()}};
        canvas_.FillShape(line, look_.Inks.Boundary, 0.5);
        DrawSymbol(SensorActivePoint(), {x, map_.YOf(static_cast<double>(view_.Trace().SpeedOf(point)))});
    }

    Canvas& canvas_;
    const SensorView& view_;
    const PlotLook& look_;
    PlotAxis across_;
    PlotAxis up_;
    PlotMap map_;
};

PlotSample Symbol(PlotInk ink, PlotMarker marker) {
    return {.Caption = "", .Ink = ink, .Width = 0, .Marker = marker, .MarkerSize = SensorSymbolSize};
}

}  // namespace

PlotSample SensorActivePoint() { return Symbol(&Colours::Boundary, PlotMarker::Ring); }
PlotSample SensorNode() { return Symbol(&Colours::Node, PlotMarker::Diamond); }
PlotSample SensorKey() { return Symbol(&Colours::Key, PlotMarker::Triangle); }

PlotRectangle SensorAreaOf(const TextMeasure& measure, CanvasSize size, const PlotLook& look) {
    const double numbers = measure.TextWidth("0000", NumberStyle(look));
    return {std::floor(numbers + 4 * Space(look)), std::floor(SensorSymbolSize / 2 + 2 * Space(look)),
            std::floor(size.Width - numbers),
            std::floor(size.Height - measure.LineHeight(NumberStyle(look)) - 2 * Space(look))};
}

void DrawSensorData(Canvas& canvas, CanvasSize size, const SensorView& view, const PlotLook& look,
                    double columnsPerPixel) {
    SensorDrawing(canvas, view, look).Draw(size.Width, columnsPerPixel);
}

}  // namespace vantor
