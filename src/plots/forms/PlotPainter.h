#pragma once

#include <QColor>
#include <QFontMetricsF>
#include <QPainter>
#include <QPalette>
#include <QPolygonF>
#include <cmath>

#include "analysis/ProfileTrace.h"
#include "core/Colours.h"
#include "plots/ProfileGeometry.h"

namespace vantor {

/// Pixels between a text and what is beside it.
inline constexpr double PlotSpace = 4;

/// The colours of a run's pictures, for a light or a dark palette.
struct ProfileColours {
    explicit ProfileColours(const QPalette& palette);

    QColor Background;
    QColor Text;
    QColor DimText;
    QColor Grid;
    QColor Trace;
    QColor Node;
    QColor Key;
    QColor Boundary;
    QColor IdealSpeed;

private:
    ProfileColours(const QPalette& palette, const Colours& colours);
};

/// What the pictures of a run's speeds share: background, grid and trace.
class PlotPainter {
protected:
    PlotPainter(QPainter& painter, const QSizeF& size, const ProfileGeometry& geometry, const ProfileColours& colours);

    QRectF Area() const { return {QPointF(area_.Left, area_.Top), QPointF(area_.Right, area_.Baseline)}; }
    void Text(const QRectF& rect, int flags, const QString& text, const QColor& colour);
    /// A line over the height of the plot area, one pixel wide.
    void PaintUpright(double x, const QColor& colour);
    void PaintBackground();
    /// The lines of the speeds and their numbers on the left.
    void PaintSpeedGrid();
    /// The upright lines of the grid; calls `label(x, number)` for each, from left to right.
    template <class Label>
    void PaintUprightGrid(Label label) {
        const int step = geometry_.ScaleStep();
        const int first = static_cast<int>(std::ceil(geometry_.Offset() / step));
        for (int line = first; line * step <= geometry_.Offset() + geometry_.Visible(); ++line) {
            const double x = std::floor(geometry_.XOf(line * step));
            PaintUpright(x, colours_.Grid);
            label(x, line * step);
        }
    }
    /// The surface under the trace and, where the samples are dense, the trace itself. Returns the points of a trace
    /// that is still to be drawn.
    QPolygonF PaintTrace(const ProfileTrace& trace);

    QPainter& painter_;
    QSizeF size_;
    const ProfileGeometry& geometry_;
    const PlotRectangle& area_;
    const ProfileColours& colours_;
    QFontMetricsF metrics_;
};

}  // namespace vantor
