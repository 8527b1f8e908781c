#pragma once

#include <QColor>
#include <QImage>
#include <QPolygonF>
#include <QRectF>

namespace vantor {

/// Width of the trace in pixels.
inline constexpr double TraceWidth = 1.75;

/// The soft surface under a trace, down to the lower edge of `rect`, and with `drawsLine` the trace itself. `line`
/// goes from left to right in the coordinates of `rect`. Each column of device pixels is filled on its own: for
/// thousands of points that takes a hundredth of the time that painting a polygon does.
QImage TraceImage(const QPolygonF& line, const QRectF& rect, double pixelRatio, const QColor& colour, bool drawsLine);

}  // namespace vantor
