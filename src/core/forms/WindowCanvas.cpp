#include "core/forms/WindowCanvas.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "core/Numeric.h"
#include "core/forms/Theme.h"
#include "core/forms/TraceImage.h"

namespace vantor {

WindowCanvas::WindowCanvas(QPainter& painter) : PainterCanvas(painter) {
    painter.setRenderHint(QPainter::Antialiasing);
}

void WindowCanvas::DrawLine(CanvasPoint from, CanvasPoint to, const LineStyle& style) {
    const bool isUpright = from.X == to.X;
    if (!isUpright && from.Y != to.Y) return PainterCanvas::DrawLine(from, to, style);
    constexpr double Hair = 1e-3;  // so that a place that was computed is not one pixel aside
    const double ratio = Painter().device()->devicePixelRatioF();
    const double width = std::max(1.0, static_cast<double>(Round32(style.Width * ratio))) / ratio;
    const double place = isUpright ? from.X : from.Y;
    const double before = std::floor((place - width / 2) * ratio + 0.5 + Hair) / ratio;
    const auto end = [&](double along) { return Round32(along * ratio) / ratio; };
    const auto [low, high] = isUpright ? std::minmax({end(from.Y), end(to.Y)}) : std::minmax({end(from.X), end(to.X)});
    if (style.Pattern == LinePattern::Solid)
        return FillSharp(isUpright ? QRectF(before, low, width, high - low) : QRectF(low, before, high - low, width),
                         Ink(style.Ink));
    const double middle = before + width / 2;
    Painter().setRenderHint(QPainter::Antialiasing, false);
    PainterCanvas::DrawLine(isUpright ? CanvasPoint{middle, low} : CanvasPoint{low, middle},
                            isUpright ? CanvasPoint{middle, high} : CanvasPoint{high, middle},
                            {width, style.Ink, style.Pattern});
    Painter().setRenderHint(QPainter::Antialiasing);
}

void WindowCanvas::FillShape(std::span<const CanvasPoint> outline, Colour ink, double opacity) {
    const auto isStraight = [](CanvasPoint one, CanvasPoint next) { return one.X == next.X || one.Y == next.Y; };
    if (outline.size() != 4 || !isStraight(outline[0], outline[1]) || !isStraight(outline[1], outline[2]) ||
        !isStraight(outline[2], outline[3]) || !isStraight(outline[3], outline[0]))
        return PainterCanvas::FillShape(outline, ink, opacity);
    QColor colour = Ink(ink);
    colour.setAlphaF(static_cast<float>(opacity));
    const QPointF first(outline[0].X, outline[0].Y);
    FillSharp(QRectF(first, QPointF(outline[2].X, outline[2].Y)).normalized(), colour);
}

void WindowCanvas::FillSharp(const QRectF& box, const QColor& colour) {
    Painter().setRenderHint(QPainter::Antialiasing, false);
    Painter().fillRect(box, colour);
    Painter().setRenderHint(QPainter::Antialiasing);
}

void WindowCanvas::DrawSurface(const CanvasBox& area, std::span<const CanvasPoint> line, const LineStyle& style,
                               double opacity) {
    // Closer together than this, single points cannot be told apart.
    constexpr double PixelsPerPoint = 3;
    const bool isDense = static_cast<double>(line.size()) * PixelsPerPoint > area.Width;
    const QRectF place(area.X, area.Y, area.Width, area.Height);
    PaintTraceImage(Painter(), line, place, style, opacity, isDense);
    if (isDense) return;
    Painter().save();
    Painter().setClipRect(place.adjusted(0, 0, 1, 1), Qt::IntersectClip);
    DrawSingleLines(line, style);
    Painter().restore();
}

void WindowCanvas::DrawSingleLines(std::span<const CanvasPoint> line, const LineStyle& style) {
    // The time for one antialiased line grows with the square of its points.
    constexpr std::size_t PointsAtATime = 8;
    Painter().setPen(QPen(Ink(style.Ink), style.Width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    std::array<QPointF, PointsAtATime + 1> part;
    for (std::size_t i = 0; i + 1 < line.size(); i += PointsAtATime) {
        const auto points = line.subspan(i, std::min(part.size(), line.size() - i));
        std::ranges::transform(points, part.begin(), [](CanvasPoint point) { return QPointF(point.X, point.Y); });
        Painter().drawPolyline(part.data(), static_cast<int>(points.size()));
    }
}

}  // namespace vantor
