#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string>

#include "core/Colours.h"
#include "core/Pixels.h"

namespace vantor {

/// Lengths on a canvas are points, 72 to the inch; x counts to the right and y downwards from the upper left corner.
struct CanvasPoint {
    double X = 0;
    double Y = 0;
};

struct CanvasBox {
    double X = 0;
    double Y = 0;
    double Width = 0;
    double Height = 0;
};

enum class TextSide { Left, Centre, Right };

struct TextStyle {
    double Size = 9;  ///< of the font, in points
    bool IsBold = false;
    Colour Ink = {};
    TextSide Side = TextSide::Left;  ///< where the text stands in its box
};

inline TextStyle OnSide(TextStyle style, TextSide side) {
    style.Side = side;
    return style;
}

/// What tells lines apart without colour.
enum class LinePattern { Solid, Dashed, Dotted, DashDotted };

struct LineStyle {
    double Width = 1;
    Colour Ink = {};
    LinePattern Pattern = LinePattern::Solid;
    /// For thin lines of which there are hundreds: on a screen, corners are not rounded, which takes a fifth of the
    /// time.
    bool IsQuick = false;
};

/// Tells how much room texts take, so that pages can be laid out before they are drawn. Texts are UTF-8.
class TextMeasure {
public:
    virtual ~TextMeasure() = default;
    virtual double TextWidth(const std::string& text, const TextStyle& style) const = 0;
    virtual double LineHeight(const TextStyle& style) const = 0;
};

/// What charts and pages are drawn on: a window, a picture, a printed page.
class Canvas : public TextMeasure {
public:
    /// One line of text, centred from top to bottom in its box, cut off with an ellipsis where it is too wide.
    virtual void DrawText(const CanvasBox& box, const std::string& text, const TextStyle& style) = 0;
    virtual void DrawLine(CanvasPoint from, CanvasPoint to, const LineStyle& style) = 0;
    virtual void DrawPolyline(std::span<const CanvasPoint> points, const LineStyle& style) = 0;
    virtual void DrawFrame(const CanvasBox& box, const LineStyle& style) = 0;
    virtual void FillBox(const CanvasBox& box, Colour ink) = 0;
    /// A surface without an edge, from 0 for one that does not show to 1 for one that nothing shows through.
    virtual void FillShape(std::span<const CanvasPoint> outline, Colour ink, double opacity) = 0;
    /// A line whose x never falls, of however many points, and the surface from it down to the lower edge of `area`,
    /// beyond which nothing of both is drawn. `opacity` is that of the surface, as for FillShape.
    virtual void DrawSurface(const CanvasBox& area, std::span<const CanvasPoint> line, const LineStyle& style,
                             double opacity);
    /// A filled circle.
    virtual void DrawDot(CanvasPoint centre, double diameter, Colour ink) = 0;
    /// The part of a picture, in its points, that fills a box.
    virtual void DrawPicture(const CanvasBox& box, const Pixels& picture, const CanvasBox& part) = 0;
    /// Draws with what lies outside the box cut off.
    virtual void DrawInside(const CanvasBox& box, const std::function<void()>& draw) = 0;
};

}  // namespace vantor
