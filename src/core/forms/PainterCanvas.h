#pragma once

#include <QFont>
#include <QPainter>

#include "core/ports/Canvas.h"

namespace vantor {

/// The measures of the fonts that a PainterCanvas draws with.
class FontMeasure : public TextMeasure {
public:
    double TextWidth(const std::string& text, const TextStyle& style) const override;
    double LineHeight(const TextStyle& style) const override;
};

/// A canvas over a painter; the painter's unit is the point of the canvas, however large that is on its device.
class PainterCanvas : public Canvas {
public:
    explicit PainterCanvas(QPainter& painter) : painter_(painter) {}

    double TextWidth(const std::string& text, const TextStyle& style) const override;
    double LineHeight(const TextStyle& style) const override;
    void DrawText(const CanvasBox& box, const std::string& text, const TextStyle& style) override;
    void DrawLine(CanvasPoint from, CanvasPoint to, const LineStyle& style) override;
    void DrawPolyline(std::span<const CanvasPoint> points, const LineStyle& style) override;
    void DrawFrame(const CanvasBox& box, const LineStyle& style) override;
    void FillBox(const CanvasBox& box, Colour ink) override;
    void FillShape(std::span<const CanvasPoint> outline, Colour ink, double opacity) override;
    void DrawDot(CanvasPoint centre, double diameter, Colour ink) override;
    void DrawPicture(const CanvasBox& box, const Pixels& picture, const CanvasBox& part) override;
    void DrawInside(const CanvasBox& box, const std::function<void()>& draw) override;

protected:
    QPainter& Painter() { return painter_; }

private:
    const QFont& FontOf(const TextStyle& style) const;

    QPainter& painter_;
    /// That of the last text: to find one anew takes longer than to lay a word out.
    mutable QFont font_;
    mutable TextStyle fontStyle_{0};
};

}  // namespace vantor
