#include "plots/forms/ProfilePicture.h"

#include <algorithm>
#include <cmath>

#include "core/forms/Named.h"
#include "plots/forms/TraceImage.h"

namespace vantor {
namespace {

constexpr double Edge = 10;
constexpr double KeySize = 9;

/// Lines of one pixel stand on pixel centres.
double Crisp(double pixel) { return std::floor(pixel) + 0.5; }

class Picture : PlotPainter {
public:
    Picture(QPainter& painter, const QSizeF& size, const SpeedProfile& profile, const ProfileLabels& labels,
            const ProfileColours& colours)
        : PlotPainter(painter, size, profile.Geometry(), colours), profile_(profile), labels_(labels) {}

    void Paint() {
        PaintBackground();
        PaintSpeedAxis();
        PaintHorizontalAxis();
        painter_.save();
        painter_.setClipRect(Area().adjusted(0, 0, 1, 1));
        PaintLine(PaintTrace(profile_.Trace()));
        painter_.restore();
        PaintMarks();
        PaintLegend();
    }

private:
    void PaintSpeedAxis() {
        PaintSpeedGrid();
        Text({Edge, Edge / 2, area_.Left, metrics_.height()}, Qt::AlignLeft | Qt::AlignVCenter,
             QStringLiteral("Speed (%1)").arg(labels_.SpeedUnit), colours_.Text);
    }

    void PaintHorizontalAxis() {
        const double height = metrics_.height();
        double labelled = 0;
        PaintUprightGrid([&](double x, int number) {
            const QString text = QString::number(number);
            const double width = metrics_.horizontalAdvance(text);
            const double left = std::min(x - width / 2, size_.width() - width - PlotSpace);
            if (left < labelled) return;
            labelled = left + width + 2 * PlotSpace;
            Text({left, area_.Baseline + PlotSpace, width, height}, Qt::AlignCenter, text, colours_.DimText);
        });
        const bool inTime = geometry_.Axis() == BoundaryAxis::Time;
        const QRectF row(area_.Left, area_.Baseline + height + 2 * PlotSpace, area_.Right - area_.Left, height);
        Text(row, Qt::AlignCenter, inTime ? QStringLiteral("Time (s)") : QStringLiteral("Distance"), colours_.Text);
        Text(row, Qt::AlignRight | Qt::AlignVCenter, AxisUnit(geometry_), colours_.DimText);
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
        const double left = std::min(x - width / 2, size_.width() - width - PlotSpace);
        if (left < end) return;
        end = left + width + 2 * PlotSpace;
        Text({left, area_.Top - LabelRowHeight(metrics_) - metrics_.height(), width, metrics_.height()},
             Qt::AlignCenter, name, colours_.Text);
    }

    void PaintKeyLabel(double x, const QString& label, double& end) {
        if (x - PlotSpace < end) return;
        const double left = x + 1.5 * PlotSpace;
        const double width = metrics_.horizontalAdvance(label);
        if (left + width > area_.Right) return;
        end = left + width + PlotSpace;
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
        if (!HasRoomForLegend()) return;
        double right = size_.width() - Edge;
        PaintLegendLine(right, QStringLiteral("Ideal speed"), QPen(colours_.IdealSpeed, 2));
        PaintLegendLine(right, QStringLiteral("Boundary"), QPen(colours_.Boundary, 2));
        if (hasKeys) PaintKey(PaintLegendText(right, QStringLiteral("Key")) - 8, LegendMiddle() + 4);
        if (hasKeys) right -= 16 + 3 * PlotSpace;
        if (hasNodes) PaintLegendLine(right, QStringLiteral("Node"), QPen(colours_.Node, 1));
        PaintLegendLine(right, QStringLiteral("Speed"), QPen(colours_.Trace, 2));
    }

    /// Beside the title of the speeds.
    bool HasRoomForLegend() const {
        constexpr int Entries = 5;
        constexpr double Sign = 22 + 4 * PlotSpace;
        const double texts = metrics_.horizontalAdvance(QStringLiteral("Ideal speedBoundaryKeyNodeSpeed Speed (MPH)"));
        return texts + Entries * Sign + 2 * Edge < size_.width();
    }

    double LegendMiddle() const { return Crisp(Edge / 2 + metrics_.height() / 2); }

    /// Moves `right` to the left of the text and returns it.
    double PaintLegendText(double& right, const QString& text) {
        const double width = metrics_.horizontalAdvance(text);
        right -= width;
        Text({right, Edge / 2, width, metrics_.height()}, Qt::AlignCenter, text, colours_.Text);
        return right -= PlotSpace;
    }

    void PaintLegendLine(double& right, const QString& text, const QPen& pen) {
        constexpr double Length = 22;
        PaintLegendText(right, text);
        painter_.setPen(pen);
        painter_.drawLine(QPointF(right - Length, LegendMiddle()), QPointF(right, LegendMiddle()));
        right -= Length + 3 * PlotSpace;
    }

    const SpeedProfile& profile_;
    const ProfileLabels& labels_;
};

}  // namespace

double LabelRowHeight(const QFontMetricsF& metrics) { return metrics.height() + 4 * PlotSpace; }

PlotRectangle PlotAreaOf(const QSizeF& size, const QFontMetricsF& metrics) {
    const double legend = Edge / 2 + metrics.height() + PlotSpace;
    return {std::floor(Edge + metrics.horizontalAdvance(QStringLiteral("0000")) + 2 * PlotSpace),
            std::floor(legend + LabelRowHeight(metrics) + metrics.height() + PlotSpace),
            std::floor(size.width() - 2 * Edge), std::floor(size.height() - 2 * metrics.height() - 3 * PlotSpace)};
}

void PaintProfile(QPainter& painter, const QSizeF& size, const SpeedProfile& profile, const ProfileLabels& labels,
                  const ProfileColours& colours) {
    Picture(painter, size, profile, labels, colours).Paint();
}

void PaintInsteadOfProfile(QPainter& painter, const QRect& place, const QString& text, const ProfileColours& colours) {
    painter.fillRect(place, colours.Background);
    painter.setPen(colours.DimText);
    painter.drawText(place.adjusted(24, 24, -24, -24), Qt::AlignCenter | Qt::TextWordWrap, text);
}

}  // namespace vantor
