#include "core/forms/PainterCanvas.h"

#include <QFontMetricsF>
#include <QImage>
#include <QList>
#include <QPaintEngine>
#include <QTextLayout>
#include <limits>

#include "core/Numeric.h"
#include "core/forms/Named.h"
#include "core/forms/Theme.h"

namespace vantor {
namespace {

/// Fonts are laid out this many times larger than they are drawn, so that their measures are those of the outlines and
/// the same on every device.
constexpr int Enlarged = 16;

QFont EnlargedFont(const TextStyle& style) {
    QFont font;
    font.setPixelSize(Round32(style.Size * Enlarged));
    font.setBold(style.IsBold);
    font.setHintingPreference(QFont::PreferNoHinting);
    return font;
}

double WidthOf(const std::string& text, const QFont& font) {
    return QFontMetricsF(font).horizontalAdvance(ToQt(text)) / Enlarged;
}
double HeightOf(const QFont& font) { return QFontMetricsF(font).height() / Enlarged; }

QRectF Rectangle(const CanvasBox& box) { return {box.X, box.Y, box.Width, box.Height}; }
QPointF Position(CanvasPoint point) { return {point.X, point.Y}; }

/// Lengths of lines and gaps, in widths of the line.
QList<qreal> Dashes(LinePattern pattern) {
    switch (pattern) {
        case LinePattern::Dashed: return {4, 3};
        case LinePattern::Dotted: return {1, 2};
        case LinePattern::DashDotted: return {6, 2, 1, 2};
        case LinePattern::Solid: return {};
    }
    return {};
}

QPolygonF Polygon(std::span<const CanvasPoint> points) {
    QPolygonF polygon;
    polygon.reserve(static_cast<qsizetype>(points.size()));
    for (const CanvasPoint& point : points) polygon += Position(point);
    return polygon;
}

/// A line as its straight pieces, its gaps left out.
QList<QLineF> Pieces(std::span<const CanvasPoint> points, const LineStyle& style) {
    QList<QLineF> pieces;
    const QList<qreal> dashes = Dashes(style.Pattern);
    qsizetype dash = 0;  // lines and gaps in turn
    qreal left = dashes.isEmpty() ? 0 : dashes[0] * style.Width;
    for (std::size_t i = 1; i < points.size(); ++i) {
        const QLineF way(Position(points[i - 1]), Position(points[i]));
        const qreal length = way.length();
        qreal done = 0;
        while (!dashes.isEmpty() && length - done > left) {
            if (dash % 2 == 0) pieces += {way.pointAt(done / length), way.pointAt((done + left) / length)};
            done += left;
            dash = (dash + 1) % dashes.size();
            left = dashes[dash] * style.Width;
        }
        if (dash % 2 == 0 && length > 0) pieces += {way.pointAt(done / length), way.p2()};
        left -= length - done;
    }
    return pieces;
}

QPen Pen(const LineStyle& style) {
    QPen pen(Ink(style.Ink), style.Width);
    pen.setJoinStyle(Qt::RoundJoin);
    pen.setCapStyle(Qt::FlatCap);
    if (style.Pattern != LinePattern::Solid) pen.setDashPattern(Dashes(style.Pattern));
    return pen;
}

/// A text in one line, shaped once to be measured and drawn.
class TextLine {
public:
    TextLine(const QString& text, const QFont& font) : layout_(text, font) {
        layout_.setCacheEnabled(true);
        LayOut();
    }

    void CutOff(double width) {
        if (line_.naturalTextWidth() <= width) return;
        layout_.setText(QFontMetricsF(layout_.font()).elidedText(layout_.text(), Qt::ElideRight, width));
        LayOut();
    }

    void Draw(QPainter& painter, const QRectF& room, TextSide side) const {
        const double free = room.width() - line_.naturalTextWidth();
        const double before = side == TextSide::Left ? 0 : side == TextSide::Centre ? free / 2 : free;
        layout_.draw(&painter, {room.x() + before, room.center().y() - line_.height() / 2});
    }

private:
    void LayOut() {
        layout_.beginLayout();
        line_ = layout_.createLine();
        line_.setLineWidth(std::numeric_limits<int>::max());
        layout_.endLayout();
    }

    QTextLayout layout_;
    QTextLine line_;
};

}  // namespace

double FontMeasure::TextWidth(const std::string& text, const TextStyle& style) const {
    return WidthOf(text, EnlargedFont(style));
}

double FontMeasure::LineHeight(const TextStyle& style) const { return HeightOf(EnlargedFont(style)); }

const QFont& PainterCanvas::FontOf(const TextStyle& style) const {
    if (style.Size != fontStyle_.Size || style.IsBold != fontStyle_.IsBold) font_ = EnlargedFont(style);
    fontStyle_ = style;
    return font_;
}

double PainterCanvas::TextWidth(const std::string& text, const TextStyle& style) const {
    return WidthOf(text, FontOf(style));
}

double PainterCanvas::LineHeight(const TextStyle& style) const { return HeightOf(FontOf(style)); }

void PainterCanvas::DrawText(const CanvasBox& box, const std::string& text, const TextStyle& style) {
    if (text.empty()) return;
    const QRectF room(box.X * Enlarged, box.Y * Enlarged, box.Width * Enlarged, box.Height * Enlarged);
    TextLine line(ToQt(text), FontOf(style));
    // Half a point more, so that a box made by the text's own measure holds it.
    line.CutOff(room.width() + Enlarged / 2.0);
    const QTransform before = painter_.worldTransform();
    painter_.scale(1.0 / Enlarged, 1.0 / Enlarged);
    painter_.setPen(Ink(style.Ink));
    line.Draw(painter_, room, style.Side);
    painter_.setWorldTransform(before);
}

void PainterCanvas::DrawLine(CanvasPoint from, CanvasPoint to, const LineStyle& style) {
    painter_.setPen(Pen(style));
    painter_.drawLine(Position(from), Position(to));
}

void PainterCanvas::DrawPolyline(std::span<const CanvasPoint> points, const LineStyle& style) {
    if (style.IsQuick && painter_.paintEngine()->type() == QPaintEngine::Raster) {
        // On a screen of many pixels a thin line takes one of them, which is drawn several times faster than two.
        constexpr double Thin = 1;
        const bool isHair = style.Width <= Thin && painter_.device()->devicePixelRatioF() > 1;
        painter_.setPen(Pen({isHair ? 0 : style.Width, style.Ink}));
        painter_.drawLines(Pieces(points, style));
        return;
    }
    painter_.setPen(Pen(style));
    painter_.setBrush(Qt::NoBrush);
    painter_.drawPolyline(Polygon(points));
}

void PainterCanvas::DrawFrame(const CanvasBox& box, const LineStyle& style) {
    painter_.setPen(Pen(style));
    painter_.setBrush(Qt::NoBrush);
    painter_.drawRect(Rectangle(box));
}

void PainterCanvas::FillBox(const CanvasBox& box, Colour ink) { painter_.fillRect(Rectangle(box), Ink(ink)); }

void PainterCanvas::FillShape(std::span<const CanvasPoint> outline, Colour ink, double opacity) {
    QColor surface = Ink(ink);
    surface.setAlphaF(static_cast<float>(opacity));
    painter_.setPen(Qt::NoPen);
    painter_.setBrush(surface);
    painter_.drawPolygon(Polygon(outline));
}

void PainterCanvas::DrawDot(CanvasPoint centre, double diameter, Colour ink) {
    painter_.setPen(Qt::NoPen);
    painter_.setBrush(Ink(ink));
    painter_.drawEllipse(Position(centre), diameter / 2, diameter / 2);
}

void PainterCanvas::DrawPicture(const CanvasBox& box, const Pixels& picture, const CanvasBox& part) {
    // The image is only a view of the points.
    const QImage image(reinterpret_cast<const uchar*>(picture.Points.data()), picture.Width, picture.Height,
                       QImage::Format_ARGB32_Premultiplied);
    painter_.save();
    painter_.setRenderHint(QPainter::SmoothPixmapTransform);
    painter_.drawImage(Rectangle(box), image, Rectangle(part));
    painter_.restore();
}

void PainterCanvas::DrawInside(const CanvasBox& box, const std::function<void()>& draw) {
    painter_.save();
    painter_.setClipRect(Rectangle(box), Qt::IntersectClip);
    draw();
    painter_.restore();
}

}  // namespace vantor
