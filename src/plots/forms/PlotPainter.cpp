#include "plots/forms/PlotPainter.h"

#include "core/forms/Theme.h"
#include "plots/VisibleTrace.h"
#include "plots/forms/TraceImage.h"

namespace vantor {

ProfileColours::ProfileColours(const QPalette& palette) : ProfileColours(palette, ColoursOf(palette)) {}

ProfileColours::ProfileColours(const QPalette& palette, const Colours& colours)
    : Background(palette.color(QPalette::Base)),
      Text(palette.color(QPalette::Text)),
      DimText(Ink(colours.DimText)),
      Grid(Ink(colours.Grid)),
      Trace(Ink(colours.Trace)),
      Node(Ink(colours.Node)),
      Key(Ink(colours.Key)),
      Boundary(Ink(colours.Boundary)),
      IdealSpeed(Ink(colours.IdealSpeed)) {}

PlotPainter::PlotPainter(QPainter& painter, const QSizeF& size, const ProfileGeometry& geometry,
                         const ProfileColours& colours)
    : painter_(painter),
      size_(size),
      geometry_(geometry),
      area_(geometry.Rectangle()),
      colours_(colours),
      metrics_(painter.font()) {}

void PlotPainter::Text(const QRectF& rect, int flags, const QString& text, const QColor& colour) {
    painter_.setPen(colour);
    painter_.drawText(rect, flags | Qt::TextDontClip, text);
}

void PlotPainter::PaintUpright(double x, const QColor& colour) {
    painter_.fillRect(QRectF(std::floor(x), area_.Top, 1, area_.Baseline - area_.Top), colour);
}

void PlotPainter::PaintBackground() { painter_.fillRect(QRectF(QPointF(0, 0), size_), colours_.Background); }

void PlotPainter::PaintSpeedGrid() {
    const double height = metrics_.height();
    for (int speed = 0; speed <= geometry_.Speeds().Maximum; speed += geometry_.Speeds().GridStep) {
        const double y = std::floor(geometry_.YOf(geometry_.Units().MphOfSpeed(speed)));
        painter_.fillRect(QRectF(area_.Left, y, area_.Right - area_.Left, 1),
                          speed == 0 ? colours_.DimText : colours_.Grid);
        Text({0, y - height / 2, area_.Left - 2 * PlotSpace, height}, Qt::AlignRight | Qt::AlignVCenter,
             QString::number(speed), colours_.DimText);
    }
}

QPolygonF PlotPainter::PaintTrace(const ProfileTrace& trace) {
    const double pixelRatio = painter_.device()->devicePixelRatioF();
    const VisibleTrace visible = VisibleTraceOf(trace, geometry_, pixelRatio);
    QPolygonF line;
    line.reserve(static_cast<qsizetype>(visible.Points.size()));
    for (const TracePoint& point : visible.Points) line << QPointF(point.X, geometry_.YOf(point.Speed));
    painter_.drawImage(Area().topLeft(), TraceImage(line, Area(), pixelRatio, colours_.Trace, visible.IsDense));
    return visible.IsDense ? QPolygonF() : line;
}

}  // namespace vantor
