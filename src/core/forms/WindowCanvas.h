#pragma once

#include "core/forms/PainterCanvas.h"

namespace vantor {

/// The canvas of a window, whose unit is the pixel: upright and level lines and edges are as sharp as its device, and a
/// line of many points takes no longer than its columns. The painter must be neither moved nor scaled.
class WindowCanvas : public PainterCanvas {
public:
    explicit WindowCanvas(QPainter& painter);

    void DrawLine(CanvasPoint from, CanvasPoint to, const LineStyle& style) override;
    void FillShape(std::span<const CanvasPoint> outline, Colour ink, double opacity) override;
    void DrawSurface(const CanvasBox& area, std::span<const CanvasPoint> line, const LineStyle& style,
                     double opacity) override;

private:
    void FillSharp(const QRectF& box, const QColor& colour);
    void DrawSingleLines(std::span<const CanvasPoint> line, const LineStyle& style);
};

}  // namespace vantor
