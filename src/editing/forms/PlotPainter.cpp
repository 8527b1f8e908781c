#include "editing/forms/PlotPainter.h"

#include "core/forms/Theme.h"
#include "editing/VisibleTrace.h"
#include "editing/forms/TraceImage.h"

namespace vantor {

ProfileColours::ProfileColours(const QPalette& palette)
    : Background(palette.color(QPalette::Base)),
      Text(palette.color(QPalette::Text)),
      DimText(IsDark(palette) ? QColor(0xa8, 0xad, 0xb3) : QColor(0x5c, 0x63, 0x6b)),
      Grid(IsDark(palette) ? QColor(0x33, 0x37, 0x3c) : QColor(0xe6, 0xe8, 0xec)),
      Trace(IsDark(palette) ? QColor(0x4f, 0xd1, 0xc5) : QColor(0x0b, 0x7a, 0x75)),
      Node(0x8a, 0x90, 0x98),
      Key(IsDark(palette) ? QColor(0xf4, 0x8f, 0xc0) : QColor(0xa8, 0x1b, 0x5c)),
      Boundary(IsDark(palette) ? QColor(0x6c, 0xa8, 0xff) : QColor(0x1d, 0x4e, 0xd8)),
      IdealSpeed(IsDark(palette) ? QColor(0xf5, 0xb0, 0x41) : QColor(0xb4, 0x53, 0x09)) {}

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
