#include "editing/forms/SensorPicture.h"

#include <algorithm>
#include <cmath>

#include "editing/VisibleTrace.h"
#include "editing/forms/TraceImage.h"

namespace vantor {
namespace {

constexpr double Space = 4;
/// Single data points get a dot when they are so many pixels apart.
constexpr double FarApart = 7;

class Picture {
public:
    Picture(QPainter& painter, const QSizeF& size, const SensorView& view, const ProfileColours& colours)
        : painter_(painter),
          size_(size),
          view_(view),
          geometry_(view.Geometry()),
          area_(geometry_.Rectangle()),
          colours_(colours),
          metrics_(painter.font()) {}

    void Paint() {
        painter_.fillRect(QRectF(QPointF(0, 0), size_), colours_.Background);
        PaintSpeedAxis();
        PaintTimeAxis();
        if (view_.PointCount() == 0) return;
        PaintTrace();
        PaintMarks();
        PaintActivePoint();
    }

private:
    double XOf(std::int32_t point) const { return geometry_.XOf(point); }
    double YOf(std::int32_t point) const { return geometry_.YOf(view_.Trace().SpeedOf(point)); }
    bool IsVisible(double x) const { return x >= area_.Left - 1 && x <= area_.Right + 1; }
    QRectF Rect() const { return {QPointF(area_.Left, area_.Top), QPointF(area_.Right, area_.Baseline)}; }

    void PaintNumber(const QRectF& rect, int flags, int number) {
        painter_.setPen(colours_.DimText);
        painter_.drawText(rect, flags | Qt::TextDontClip, QString::number(number));
    }

    void PaintSpeedAxis() {
        const double height = metrics_.height();
        for (int speed = 0; speed <= geometry_.Speeds().Maximum; speed += geometry_.Speeds().GridStep) {
            const double y = std::floor(geometry_.YOf(geometry_.Units().MphOfSpeed(speed)));
            painter_.fillRect(QRectF(area_.Left, y, area_.Right - area_.Left, 1),
                              speed == 0 ? colours_.DimText : colours_.Grid);
            PaintNumber({0, y - height / 2, area_.Left - 2 * Space, height}, Qt::AlignRight | Qt::AlignVCenter, speed);
        }
    }

    void PaintTimeAxis() {
        const int step = geometry_.ScaleStep();
        const int first = static_cast<int>(std::ceil(geometry_.Offset() / step));
        for (int line = first; line * step <= geometry_.Offset() + geometry_.Visible(); ++line) {
            const double x = std::floor(geometry_.XOf(line * step));
            painter_.fillRect(QRectF(x, area_.Top, 1, area_.Baseline - area_.Top), colours_.Grid);
            PaintNumber({x, area_.Baseline + Space, 0, metrics_.height()}, Qt::AlignHCenter, line * step);
        }
    }

    void PaintTrace() {
        const double pixelRatio = painter_.device()->devicePixelRatioF();
        const VisibleTrace visible = VisibleTraceOf(view_.Trace(), geometry_, pixelRatio);
        QPolygonF line;
        line.reserve(static_cast<qsizetype>(visible.Points.size()));
        for (const TracePoint& point : visible.Points) line << QPointF(point.X, geometry_.YOf(point.Speed));
        painter_.drawImage(Rect().topLeft(), TraceImage(line, Rect(), pixelRatio, colours_.Trace, visible.IsDense));
        if (!visible.IsDense) PaintSingleLines(line);
    }

    void PaintSingleLines(const QPolygonF& line) {
        painter_.save();
        painter_.setClipRect(Rect().adjusted(0, -Space, 0, Space));
        painter_.setRenderHint(QPainter::Antialiasing);
        painter_.setPen(QPen(colours_.Trace, TraceWidth, Qt::SolidLine, Qt::RoundCap));
        for (qsizetype i = 0; i + 1 < line.size(); ++i) painter_.drawLine(line[i], line[i + 1]);
        painter_.setPen(QPen(colours_.Trace, 2.5 * TraceWidth, Qt::SolidLine, Qt::RoundCap));
        if (geometry_.XOf(1) - geometry_.XOf(0) >= FarApart || line.size() == 1) painter_.drawPoints(line);
        painter_.restore();
    }

    void PaintMarks() {
        const auto& marks = view_.Trace().Marks();
        PaintMarks(marks, true);
        PaintMarks(marks, false);
    }

    void PaintMarks(const std::vector<ProfileMark>& marks, bool areNodes) {
        // Where they stand closer together than this, more of them would only cover each other.
        constexpr double Nearest = 3;
        double before = -Nearest;
        for (const ProfileMark& mark : marks) {
            const double x = XOf(mark.Sample);
            if (mark.IsNode != areNodes || !IsVisible(x) || x - before < Nearest) continue;
            before = x;
            if (!areNodes) {
                PaintSymbol(painter_, SensorSymbol::Key, {x, area_.Baseline - SensorSymbolSize / 2}, colours_);
                continue;
            }
            painter_.fillRect(QRectF(std::floor(x), area_.Top, 1, area_.Baseline - area_.Top), colours_.Node);
            PaintSymbol(painter_, SensorSymbol::Node, {std::floor(x) + 0.5, area_.Top}, colours_);
        }
    }

    void PaintActivePoint() {
        const double x = XOf(view_.ActivePoint());
        if (!IsVisible(x)) return;
        QColor faint = colours_.Boundary;
        faint.setAlphaF(0.5F);
        painter_.fillRect(QRectF(std::floor(x), area_.Top, 1, area_.Baseline - area_.Top), faint);
        PaintSymbol(painter_, SensorSymbol::ActivePoint, {x, YOf(view_.ActivePoint())}, colours_);
    }

    QPainter& painter_;
    QSizeF size_;
    const SensorView& view_;
    const ProfileGeometry& geometry_;
    const PlotRectangle& area_;
    const ProfileColours& colours_;
    QFontMetricsF metrics_;
};

}  // namespace

void PaintSymbol(QPainter& painter, SensorSymbol symbol, QPointF middle, const ProfileColours& colours) {
    constexpr double Half = SensorSymbolSize / 2;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(middle);
    painter.setPen(Qt::NoPen);
    switch (symbol) {
        case SensorSymbol::ActivePoint:
            painter.setPen(QPen(colours.Boundary, 2.5));
            painter.setBrush(colours.Background);
            painter.drawEllipse(QPointF(0, 0), Half - 1, Half - 1);
            break;
        case SensorSymbol::Node:
            painter.setBrush(colours.Node);
            painter.drawPolygon(QPolygonF{{0, -Half}, {Half, 0}, {0, Half}, {-Half, 0}});
            break;
        case SensorSymbol::Key:
            painter.setBrush(colours.Key);
            painter.drawPolygon(QPolygonF{{0, -Half}, {Half, Half}, {-Half, Half}});
            break;
    }
    painter.restore();
}

PlotRectangle SensorAreaOf(const QSizeF& size, const QFontMetricsF& metrics) {
    const double numbers = metrics.horizontalAdvance(QStringLiteral("0000"));
    return {std::floor(numbers + 4 * Space), std::floor(SensorSymbolSize / 2 + 2 * Space),
            std::floor(size.width() - numbers), std::floor(size.height() - metrics.height() - 2 * Space)};
}

void PaintSensorData(QPainter& painter, const QSizeF& size, const SensorView& view, const ProfileColours& colours) {
    Picture(painter, size, view, colours).Paint();
}

}  // namespace vantor
