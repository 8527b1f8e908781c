#pragma once

#include "editing/SensorView.h"
#include "plots/forms/PlotPainter.h"

namespace vantor {

/// What the legend of the sensor data explains; each has a shape of its own.
enum class SensorSymbol { ActivePoint, Node, Key };

inline constexpr double SensorSymbolSize = 10;

void PaintSymbol(QPainter& painter, SensorSymbol symbol, QPointF middle, const ProfileColours& colours);

/// The plot area of a widget, with the speeds on its left, the seconds below it and room for a symbol above it.
PlotRectangle SensorAreaOf(const QSizeF& size, const QFontMetricsF& metrics);

/// Paints the visible part of the run: grid, trace, nodes, keys and the active data point.
void PaintSensorData(QPainter& painter, const QSizeF& size, const SensorView& view, const ProfileColours& colours);

}  // namespace vantor
