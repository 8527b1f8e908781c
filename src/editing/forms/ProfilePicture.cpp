#include "editing/forms/ProfilePicture.h"

#include <algorithm>
#include <cmath>

#include "core/forms/Named.h"
#include "core/forms/Theme.h"
#include "editing/VisibleTrace.h"
#include "editing/forms/TraceImage.h"

namespace vantor {
namespace {

constexpr double Edge = 10;
constexpr double Space = 4;
constexpr double KeySize = 9;

QRectF RectOf(const PlotRectangle& area) { return {QPointF(area.Left, area.Top), QPointF(area.Right, area.Baseline)}; }

/// Lines of one pixel stand on pixel centres.
double Crisp(double pixel) { return std::floor(pixel) + 0.5; }

class Picture {
public:
    Picture(QPainter& painter, const QSizeF& size, const SpeedProfile& profile, const ProfileLabels& labels,
            const ProfileColours& colours)
        : painter_(painter),
          size_(size),
          profile_(profile),
          geometry_(profile.Geometry()),
          area_(geometry_.Rectangle()),
          labels_(labels),
          colours_(colours),
          metrics_(painter.font()) {}

    void Paint() {
        painter_.fillRect(QRectF(QPointF(0, 0), size_), colours_.Background);
        PaintSpeedAxis();
        PaintHorizontalAxis();
        painter_.save();
        painter_.setClipRect(RectOf(area_).adjusted(0, 0, 1, 1));
        PaintTrace();
        painter_.restore();
        PaintMarks();
        PaintLegend();
    }

private:
    void Text(const QRectF& rect, int flags, const QString& text, const QColor& colour) {
        painter_.setPen(colour);
        painter_.drawText(rect, flags | Qt::TextDontClip, text);
    }

    void PaintSpeedAxis() {
        const double height = metrics_.height();
        for (int speed = 0; speed <= geometry_.Speeds().Maximum; speed += geometry_.Speeds().GridStep) {
            const double y = std::floor(geometry_.YOf(geometry_.Units().MphOfSpeed(speed)));
            painter_.fillRect(QRectF(area_.Left, y, area_.Right - area_.Left, 1),
                              speed == 0 ? colours_.DimText : colours_.Grid);
            Text({0, y - height / 2, area_.Left - 2 * Space, height}, Qt::AlignRight | Qt::AlignVCenter,
                 QString::number(speed), colours_.DimText);
        }
        Text({Edge, Edge / 2, area_.Left, height}, Qt::AlignLeft | Qt::AlignVCenter,
             QStringLiteral("Speed (%1)").arg(labels_.SpeedUnit), colours_.Text);
    }

    void PaintHorizontalAxis() {
        const double height = metrics_.height();
        const int step = geometry_.ScaleStep();
        double labelled = 0;
        const int first = static_cast<int>(std::ceil(geometry_.Offset() / step));
        for (int line = first; line * step <= geometry_.Offset() + geometry_.Visible(); ++line) {
            const double x = std::floor(geometry_.XOf(line * step));
            painter_.fillRect(QRectF(x, area_.Top, 1, area_.Baseline - area_.Top), colours_.Grid);
            const QString text = QString::number(line * step);
            const double width = metrics_.horizontalAdvance(text);
            const double left = std::min(x - width / 2, size_.width() - width - Space);
            if (left < labelled) continue;
            labelled = left + width + 2 * Space;
            Text({left, area_.Baseline + Space, width, height}, Qt::AlignCenter, text, colours_.DimText);
        }
        const bool inTime = geometry_.Axis() == BoundaryAxis::Time;
        const QRectF row(area_.Left, area_.Baseline + height + 2 * Space, area_.Right - area_.Left, height);
        Text(row, Qt::AlignCenter, inTime ? QStringLiteral("Time (s)") : QStringLiteral("Distance"), colours_.Text);
        Text(row, Qt::AlignRight | Qt::AlignVCenter, AxisUnit(geometry_), colours_.DimText);
    }

    void PaintTrace() {
        const double pixelRatio = painter_.device()->devicePixelRatioF();
        const VisibleTrace visible = VisibleTraceOf(profile_.Trace(), geometry_, pixelRatio);
        QPolygonF line;
        line.reserve(static_cast<qsizetype>(visible.Points.size()));
        for (const TracePoint& point : visible.Points) line << QPointF(point.X, geometry_.YOf(point.Speed));

        const QRectF rect = RectOf(area_);
        painter_.drawImage(rect.topLeft(), TraceImage(line, rect, pixelRatio, colours_.Trace, visible.IsDense));
        if (!visible.IsDense) PaintLine(line);
    }

    void PaintLine(const QPolygonF& line) {
        // The time for one antialiased line grows with the square of its points.
        constexpr qsizetype PointsAtATime = 8;
        painter_.setRenderHint(QPainter::Antialiasing);
        painter_.setPen(QPen(colours_.Trace, TraceWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        for (qsizetype i = 0; i + 1 < line.size(); i += PointsAtATime)
            painter_.drawPolyline(line.data() + i, static_cast<int>(std::min(PointsAtATime + 1, line.size() - i)));
        painter_.setRenderHint(QPainter::Antialiasing, false);
    }

    void PaintMarks() {
        // Keys come last, so that no node's line runs through their labels.
        PaintMarksThat(true);
        PaintMarksThat(false);
    }

    void PaintMarksThat(bool areNodes) {
        const double nearest = areNodes ? 3 : KeySize + 1;
        double before = -nearest;
        double labelsEnd = 0;
        for (const ProfileMark& mark : profile_.Trace().Marks()) {
            if (mark.IsNode != areNodes) continue;
            const double place = profile_.Trace().PlaceOf(geometry_.Axis(), mark.Sample);
            const double x = geometry_.XOf(geometry_.AxisValueOf(place));
            if (x < area_.Left || x > area_.Right + 1 || x - before < nearest) continue;
            before = x;
            areNodes ? PaintNode(x) : PaintKey(x, area_.Baseline);
            if (mark.Label.empty()) continue;
            areNodes ? PaintNodeName(x, ToQt(mark.Label), labelsEnd) : PaintKeyLabel(x, ToQt(mark.Label), labelsEnd);
        }
    }

    void PaintNode(double x) {
        const double top = area_.Top - LabelRowHeight(metrics_);
        painter_.fillRect(QRectF(std::floor(x), top, 1, area_.Baseline - top), colours_.Node);
    }

    void PaintKey(double x, double y) {
        painter_.setRenderHint(QPainter::Antialiasing);
        painter_.setPen(Qt::NoPen);
        painter_.setBrush(colours_.Key);
        painter_.drawPolygon(QPolygonF{{x, y - KeySize}, {x + KeySize / 2, y}, {x - KeySize / 2, y}});
        painter_.setRenderHint(QPainter::Antialiasing, false);
    }

    /// `end` is where the label before it ends; one that would run into it is left out.
    void PaintNodeName(double x, const QString& name, double& end) {
        if (x < end) return;
        const double width = metrics_.horizontalAdvance(name);
        const double left = std::min(x - width / 2, size_.width() - width - Space);
        if (left < end) return;
        end = left + width + 2 * Space;
        Text({left, area_.Top - LabelRowHeight(metrics_) - metrics_.height(), width, metrics_.height()},
             Qt::AlignCenter, name, colours_.Text);
    }

    void PaintKeyLabel(double x, const QString& label, double& end) {
        if (x - Space < end) return;
        const double left = x + 1.5 * Space;
        const double width = metrics_.horizontalAdvance(label);
        if (left + width > area_.Right) return;
        end = left + width + Space;
        const QRectF rect(left, area_.Baseline - metrics_.height() - KeySize, width, metrics_.height());
        QColor veil = colours_.Background;
        veil.setAlphaF(0.75F);
        painter_.fillRect(rect.adjusted(-2, 0, 2, 0), veil);
        Text(rect, Qt::AlignCenter, label, colours_.Key);
    }

    void PaintLegend() {
        const auto& marks = profile_.Trace().Marks();
        const auto isNode = [](const ProfileMark& mark) { return mark.IsNode; };
        const bool hasNodes = std::any_of(marks.begin(), marks.end(), isNode);
        const bool hasKeys = !std::all_of(marks.begin(), marks.end(), isNode);
        double right = size_.width() - Edge;
        PaintLegendLine(right, QStringLiteral("Ideal speed"), QPen(colours_.IdealSpeed, 2));
        PaintLegendLine(right, QStringLiteral("Boundary"), QPen(colours_.Boundary, 2));
        if (hasKeys) PaintKey(PaintLegendText(right, QStringLiteral("Key")) - 8, LegendMiddle() + 4);
        if (hasKeys) right -= 16 + 3 * Space;
        if (hasNodes) PaintLegendLine(right, QStringLiteral("Node"), QPen(colours_.Node, 1));
        PaintLegendLine(right, QStringLiteral("Speed"), QPen(colours_.Trace, 2));
    }

    double LegendMiddle() const { return Crisp(Edge / 2 + metrics_.height() / 2); }

    /// Moves `right` to the left of the text and returns it.
    double PaintLegendText(double& right, const QString& text) {
        const double width = metrics_.horizontalAdvance(text);
        right -= width;
        Text({right, Edge / 2, width, metrics_.height()}, Qt::AlignCenter, text, colours_.Text);
        return right -= Space;
    }

    void PaintLegendLine(double& right, const QString& text, const QPen& pen) {
        constexpr double Length = 22;
        PaintLegendText(right, text);
        painter_.setPen(pen);
        painter_.drawLine(QPointF(right - Length, LegendMiddle()), QPointF(right, LegendMiddle()));
        right -= Length + 3 * Space;
    }

    QPainter& painter_;
    QSizeF size_;
    const SpeedProfile& profile_;
    const ProfileGeometry& geometry_;
    const PlotRectangle& area_;
    const ProfileLabels& labels_;
    const ProfileColours& colours_;
    QFontMetricsF metrics_;
};

}  // namespace

ProfileColours::ProfileColours(const QPalette& palette)
    : Background(palette.color(QPalette::Base)),
      Text(palette.color(QPalette::Text)),
      DimText(IsDark(palette) ? QColor(0xa8, 0xad, 0xb3) : QColor(0x5c, 0x63, 0x6b)),
      Grid(IsDark(palette) ? QColor(0x33, 0x37, 0x3c) : QColor(0xe6, 0xe8, 0xec)),
      Trace(IsDark(palette) ? QColor(0x4f, 0xd1, 0xc5) : QColor(0x0b, 0x7a, 0x75)),
      Node(IsDark(palette) ? QColor(0x8a, 0x90, 0x98) : QColor(0x8a, 0x90, 0x98)),
      Key(IsDark(palette) ? QColor(0xf4, 0x8f, 0xc0) : QColor(0xa8, 0x1b, 0x5c)),
      Boundary(IsDark(palette) ? QColor(0x6c, 0xa8, 0xff) : QColor(0x1d, 0x4e, 0xd8)),
      IdealSpeed(IsDark(palette) ? QColor(0xf5, 0xb0, 0x41) : QColor(0xb4, 0x53, 0x09)) {}

double LabelRowHeight(const QFontMetricsF& metrics) { return metrics.height() + 4 * Space; }

PlotRectangle PlotAreaOf(const QSizeF& size, const QFontMetricsF& metrics) {
    const double legend = Edge / 2 + metrics.height() + Space;
    return {std::floor(Edge + metrics.horizontalAdvance(QStringLiteral("0000")) + 2 * Space),
            std::floor(legend + LabelRowHeight(metrics) + metrics.height() + Space),
            std::floor(size.width() - 2 * Edge), std::floor(size.height() - 2 * metrics.height() - 3 * Space)};
}

void PaintProfile(QPainter& painter, const QSizeF& size, const SpeedProfile& profile, const ProfileLabels& labels,
                  const ProfileColours& colours) {
    Picture(painter, size, profile, labels, colours).Paint();
}

}  // namespace vantor
