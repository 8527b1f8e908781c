#pragma once

#include "core/ports/DocumentWriter.h"
#include "editing/SensorView.h"
#include "plots/PlotParts.h"

namespace vantor {

/// What the legend of the sensor data explains; each has a shape of its own.
inline constexpr double SensorSymbolSize = 10;
PlotSample SensorActivePoint();
PlotSample SensorNode();
PlotSample SensorKey();

/// The plot area of a picture of that size, with the speeds on its left, the seconds below it and room for a symbol
/// above it.
PlotRectangle SensorAreaOf(const TextMeasure& measure, CanvasSize size, const PlotLook& look);

/// Draws the visible part of the run: grid, trace, nodes, keys and the active data point.
void DrawSensorData(Canvas& canvas, CanvasSize size, const SensorView& view, const PlotLook& look,
                    double columnsPerPixel);

}  // namespace vantor
