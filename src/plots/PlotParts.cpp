#include "plots/PlotParts.h"

#include <cmath>

#include "plots/PlotReduction.h"

namespace vantor {
namespace {

constexpr double RingWidth = 1.5;
/// A ring around a marker, with air between.
constexpr double RingRoom = 7;
constexpr double ChosenWidth = 2;
constexpr double LayerOpacity = 0.07;
constexpr double NameGap = 3;

void DrawDiscs(Canvas& canvas, CanvasPoint centre, double size, const Colours& inks) {
    canvas.DrawDot(centre, size, inks.DimText);
    canvas.DrawDot(centre, size - 2 * RingWidth, inks.Base);
}

bool IsWithin(double place, double from, double length) { return place >= from - 0.5 && place <= from + length + 0.5; }

}  // namespace

void PlotSearch::Offer(int item, double x, double y) {
    const double distance = std::hypot(x - place_.X, y - place_.Y);
    if (distance > reach_ || (found_.Item != 0 && distance == reach_)) return;
    reach_ = distance;
    found_ = {item, map_.ValueAt({x, y})};
}

void PlotSearch::OfferPoint(int item, PlotPoint point) {
    if (item != 0) Offer(item, map_.XOf(point.X), map_.YOf(point.Y));
}

void PlotSearch::OfferWay(int item, PlotPoint from, PlotPoint to) {
    const double x = map_.XOf(from.X);
    const double width = map_.XOf(to.X) - x;
    if (x - reach_ > place_.X || x + width + reach_ < place_.X) return;
    const double y = map_.YOf(from.Y);
    const double height = map_.YOf(to.Y) - y;
    const double square = width * width + height * height;
    const double along = square > 0 ? ((place_.X - x) * width + (place_.Y - y) * height) / square : 0;
    const double share = std::clamp(along, 0.0, 1.0);
    Offer(item, x + share * width, y + share * height);
}

void DrawMarker(Canvas& canvas, CanvasPoint centre, PlotMarker marker, double size, Colour ink, const Colours& inks) {
    const auto [x, y] = centre;
    const double half = size / 2;
    const auto fill = [&](std::vector<CanvasPoint> corners) { canvas.FillShape(corners, ink, 1); };
    switch (marker) {
        case PlotMarker::None: return;
        case PlotMarker::RingedDot: DrawDiscs(canvas, centre, size + RingRoom, inks); [[fallthrough]];
        case PlotMarker::Dot: return canvas.DrawDot(centre, size, ink);
        case PlotMarker::Ring: canvas.DrawDot(centre, size, ink); return canvas.DrawDot(centre, size / 2, inks.Base);
        case PlotMarker::Square: return canvas.FillBox({x - half, y - half, size, size}, ink);
        case PlotMarker::Diamond: return fill({{x, y - half}, {x + half, y}, {x, y + half}, {x - half, y}});
        case PlotMarker::Triangle: return fill({{x, y - half}, {x + half, y + half}, {x - half, y + half}});
    }
}

void PlotTrace::DrawLine(Canvas& canvas, const PlotMap& map, const PlotLook& look, const LineStyle& style) const {
    const std::vector<CanvasPoint> line = ReducedLine(Points, map, look.Tolerance);
    if (line.size() > 1) canvas.DrawPolyline(line, style);
}

void PlotTrace::Draw(Canvas& canvas, const PlotMap& map, const PlotLook& look) const {
    const double markerSize = std::max(5.0, 3 * Width);
    constexpr double Thin = 2;
    DrawLine(canvas, map, look, {Width, look.Inks.*Ink, Pattern, Width <= Thin});
    if (Marker == PlotMarker::None) return;
    for (const PlotPoint& point : Points)
        DrawMarker(canvas, map.Of(point), Marker, markerSize, look.Inks.*Ink, look.Inks);
}

void PlotTrace::DrawChosen(Canvas& canvas, const PlotMap& map, const PlotLook& look, int item) const {
    if (item == Item) DrawLine(canvas, map, look, {Width + ChosenWidth, look.Inks.Highlight, Pattern});
}

void PlotTrace::Search(PlotSearch& search) const {
    if (Item == 0) return;
    for (std::size_t i = 1; i < Points.size(); ++i) search.OfferWay(Item, Points[i - 1], Points[i]);
}

std::optional<PlotPoint> PlotTrace::PlaceOf(int item) const {
    if (item != Item || Points.empty()) return std::nullopt;
    return Points[Points.size() / 2];
}

void PlotBand::Draw(Canvas& canvas, const PlotMap& map, const PlotLook& look) const {
    canvas.DrawInside(map.Area(), [&] {
        std::size_t first = 0;
        for (std::size_t i = 0; i <= Slices.size(); ++i) {
            if (i < Slices.size() && Slices[i].Between) continue;
            if (i > first + 1) DrawRun(canvas, map, look, first, i);
            first = i + 1;
        }
    });
}

void PlotBand::DrawRun(Canvas& canvas, const PlotMap& map, const PlotLook& look, std::size_t first,
                       std::size_t end) const {
    std::vector<CanvasPoint> outline;
    for (std::size_t i = first; i < end; ++i) outline.push_back(map.Of({Slices[i].X, Slices[i].Between->High}));
    const std::size_t upper = outline.size();
    for (std::size_t i = end; i > first; --i) outline.push_back(map.Of({Slices[i - 1].X, Slices[i - 1].Between->Low}));
    canvas.FillShape(outline, look.Inks.*Ink, Opacity);
    if (!HasEdges) return;
    const LineStyle edge{1, look.Inks.*Ink, Edges};
    canvas.DrawPolyline(std::span(outline).first(upper), edge);
    canvas.DrawPolyline(std::span(outline).subspan(upper), edge);
}

void PlotPoints::Draw(Canvas& canvas, const PlotMap& map, const PlotLook& look) const {
    for (const Mark& mark : Marks) DrawMarker(canvas, map.Of(mark.At), mark.Marker, Size, look.Inks.*Ink, look.Inks);
}

void PlotPoints::DrawChosen(Canvas& canvas, const PlotMap& map, const PlotLook& look, int item) const {
    constexpr double Steps = 24;
    constexpr double Turn = 6.283185307179586;
    const CanvasBox& area = map.Area();
    for (const Mark& mark : Marks) {
        if (mark.Item != item) continue;
        const CanvasPoint centre = map.Of(mark.At);
        std::vector<CanvasPoint> ring;
        for (double step = 0; step <= Steps; ++step)
            ring.push_back(
                {centre.X + Size * std::cos(Turn * step / Steps), centre.Y + Size * std::sin(Turn * step / Steps)});
        canvas.DrawPolyline(ring, {ChosenWidth, look.Inks.Highlight});
        const LineStyle upright{1, look.Inks.Highlight};
        const double bottom = area.Y + area.Height;
        canvas.DrawLine({centre.X, area.Y}, {centre.X, std::max(centre.Y - Size, area.Y)}, upright);
        canvas.DrawLine({centre.X, std::min(centre.Y + Size, bottom)}, {centre.X, bottom}, upright);
    }
}

void PlotPoints::Search(PlotSearch& search) const {
    for (const Mark& mark : Marks) search.OfferPoint(mark.Item, mark.At);
}

std::optional<PlotPoint> PlotPoints::PlaceOf(int item) const {
    const auto mark = std::ranges::find(Marks, item, &Mark::Item);
    return mark == Marks.end() ? std::nullopt : std::optional(mark->At);
}

void PlotSpans::DrawSpan(Canvas& canvas, const PlotMap& map, const PlotLook& look, const Span& span, Colour ink) const {
    constexpr double HalfCap = 6;
    constexpr double MarkerSize = 9;
    const double x = map.XOf(span.At.X);
    if (span.Between) {
        const double low = map.YOf(span.Between->Low);
        const double high = map.YOf(span.Between->High);
        canvas.DrawLine({x, low}, {x, high}, {2, ink, Pattern});
        for (const double y : {low, high}) canvas.DrawLine({x - HalfCap, y}, {x + HalfCap, y}, {2, ink});
    }
    DrawMarker(canvas, map.Of(span.At), Marker, MarkerSize, ink, look.Inks);
}

void PlotSpans::Draw(Canvas& canvas, const PlotMap& map, const PlotLook& look) const {
    for (const Span& span : Spans) DrawSpan(canvas, map, look, span, look.Inks.*Ink);
}

void PlotSpans::DrawChosen(Canvas& canvas, const PlotMap& map, const PlotLook& look, int item) const {
    for (const Span& span : Spans)
        if (span.Item == item) DrawSpan(canvas, map, look, span, look.Inks.Highlight);
}

void PlotSpans::Search(PlotSearch& search) const {
    for (const Span& span : Spans) {
        search.OfferPoint(span.Item, span.At);
        if (span.Item != 0 && span.Between)
            search.OfferWay(span.Item, {span.At.X, span.Between->Low}, {span.At.X, span.Between->High});
    }
}

std::optional<PlotPoint> PlotSpans::PlaceOf(int item) const {
    const auto span = std::ranges::find(Spans, item, &Span::Item);
    return span == Spans.end() ? std::nullopt : std::optional(span->At);
}

void PlotLines::Draw(Canvas& canvas, const PlotMap& map, const PlotLook& look) const {
    const CanvasBox& area = map.Area();
    const double height = canvas.LineHeight(look.Dim());
    const bool isLevel = Along == Way::Level;
    std::vector<CanvasBox> names;
    for (const Line& line : Lines) {
        const double place = isLevel ? map.YOf(line.Value) : map.XOf(line.Value);
        if (!IsWithin(place, isLevel ? area.Y : area.X, isLevel ? area.Height : area.Width)) continue;
        const CanvasPoint from = isLevel ? CanvasPoint{area.X, place} : CanvasPoint{place, area.Y};
        const CanvasPoint to =
            isLevel ? CanvasPoint{area.X + area.Width, place} : CanvasPoint{place, area.Y + area.Height};
        canvas.DrawLine(from, to, {Width, look.Inks.*Ink, Pattern});
        const double width = canvas.TextWidth(line.Name, look.Dim());
        const CanvasBox name = isLevel ? CanvasBox{to.X - width - NameGap, place - height, width, height}
                                       : CanvasBox{place + NameGap, area.Y, width, height};
        const bool meets = std::ranges::any_of(names, [&](const CanvasBox& other) {
            return name.X < other.X + other.Width && other.X < name.X + name.Width && name.Y < other.Y + other.Height &&
                   other.Y < name.Y + name.Height;
        });
        if (line.Name.empty() || meets || name.X + width > area.X + area.Width || name.Y < area.Y - height) continue;
        canvas.DrawText(name, line.Name, look.Dim());
        names.push_back(name);
    }
}

void PlotLayers::Draw(Canvas& canvas, const PlotMap& map, const PlotLook& look) const {
    const CanvasBox& area = map.Area();
    const TextStyle style = look.Dim(TextSide::Right);
    const double height = canvas.LineHeight(style);
    double bottom = std::min(map.YOf(0), area.Y + area.Height);
    for (std::size_t i = 0; i < Layers.size() && bottom > area.Y; ++i) {
        const bool isLast = i + 1 == Layers.size();
        const double top = isLast ? area.Y : std::max(map.YOf(Layers[i].UpTo), area.Y);
        if (top >= bottom) continue;
        const double right = area.X + area.Width;
        if (i % 2 == 1) {
            const std::array corners = {CanvasPoint{area.X, top}, CanvasPoint{right, top}, CanvasPoint{right, bottom},
                                        CanvasPoint{area.X, bottom}};
            canvas.FillShape(corners, look.Inks.Text, LayerOpacity);
        }
        if (bottom - top >= height)
            canvas.DrawText({area.X, (top + bottom - height) / 2, area.Width - NameGap, height}, Layers[i].Name, style);
        bottom = top;
    }
}

void PlotSample::Draw(Canvas& canvas, const CanvasBox& box, const PlotLook& look) const {
    const double middle = box.Y + box.Height / 2;
    const double right = box.X + box.Width;
    const Colour ink = look.Inks.*Ink;
    if (Surface > 0) {
        const double half = std::min(box.Height * 0.7, 10.0) / 2;
        const std::array corners = {CanvasPoint{box.X, middle - half}, CanvasPoint{right, middle - half},
                                    CanvasPoint{right, middle + half}, CanvasPoint{box.X, middle + half}};
        canvas.FillShape(corners, ink, Surface);
        for (const double y : {middle - half, middle + half})
            if (Width > 0) canvas.DrawLine({box.X, y}, {right, y}, {1, ink, Pattern});
    } else if (Width > 0) {
        canvas.DrawLine({box.X, middle}, {right, middle}, {Width, ink, Pattern});
    }
    const Colour marker = MarkerInk != nullptr ? look.Inks.*MarkerInk : ink;
    DrawMarker(canvas, {box.X + box.Width / 2, middle}, Marker, MarkerSize, marker, look.Inks);
}

void PlotSample::DrawNamed(Canvas& canvas, const CanvasBox& box, const PlotLook& look, double gap) const {
    const double before = Length + gap;
    Draw(canvas, {box.X, box.Y, Length, box.Height}, look);
    canvas.DrawText({box.X + before, box.Y, box.Width - before, box.Height}, Caption, look.Text());
}

}  // namespace vantor
