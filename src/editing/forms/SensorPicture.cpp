#include "editing/forms/SensorPicture.h"

#include <cmath>

#include "plots/forms/TraceImage.h"

namespace vantor {
namespace {

/// Single data points get a dot when they are so many pixels apart.
constexpr double FarApart = 7;

class Picture : PlotPainter {
public:
    Picture(QPainter& painter, const QSizeF& size, const SensorView& view, const ProfileColours& colours)
        : PlotPainter(painter, size, view.Geometry(), colours), view_(view) {}

    void Paint() {
        PaintBackground();
        PaintSpeedGrid();
        PaintUprightGrid([this](double x, int seconds) {
            Text({x, area_.Baseline + PlotSpace, 0, metrics_.height()}, Qt::AlignHCenter, QString::number(seconds),
                 colours_.DimText);
        });
        if (view_.PointCount() == 0) return;
        PaintSingleLines(PaintTrace(view_.Trace()));
        PaintMarks();
        PaintActivePoint();
    }

private:
    double XOf(std::int32_t point) const { return geometry_.XOf(point); }
    double YOf(std::int32_t point) const { return geometry_.YOf(view_.Trace().SpeedOf(point)); }
    bool IsVisible(double x) const { return x >= area_.Left - 1 && x <= area_.Right + 1; }

    void PaintSingleLines(const QPolygonF& line) {
        painter_.save();
        painter_.setClipRect(Area().adjusted(0, -PlotSpace, 0, PlotSpace));
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
            PaintUpright(x, colours_.Node);
            PaintSymbol(painter_, SensorSymbol::Node, {std::floor(x) + 0.5, area_.Top}, colours_);
        }
    }

    void PaintActivePoint() {
        const double x = XOf(view_.ActivePoint());
        if (!IsVisible(x)) return;
        QColor faint = colours_.Boundary;
        faint.setAlphaF(0.5F);
        PaintUpright(x, faint);
        PaintSymbol(painter_, SensorSymbol::ActivePoint, {x, YOf(view_.ActivePoint())}, colours_);
    }

    const SensorView& view_;
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
    return {std::floor(numbers + 4 * PlotSpace), std::floor(SensorSymbolSize / 2 + 2 * PlotSpace),
            std::floor(size.width() - numbers), std::floor(size.height() - metrics.height() - 2 * PlotSpace)};
}

void PaintSensorData(QPainter& painter, const QSizeF& size, const SensorView& view, const ProfileColours& colours) {
    Picture(painter, size, view, colours).Paint();
}

}  // namespace vantor
