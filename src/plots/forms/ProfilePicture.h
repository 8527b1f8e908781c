#pragma once

#include "plots/SpeedProfile.h"
#include "plots/forms/PlotPainter.h"
#include "plots/forms/ProfileWords.h"

namespace vantor {

/// The plot area of a widget, its rows for legend, node names and line labels above it and those of the axis below.
PlotRectangle PlotAreaOf(const QSizeF& size, const QFontMetricsF& metrics);
/// Height of the row right above the plot area, in which the labels of the boundary lines stand.
double LabelRowHeight(const QFontMetricsF& metrics);

/// Paints all that stays while a line is dragged: axes, grid, trace, nodes, keys, legend.
void PaintProfile(QPainter& painter, const QSizeF& size, const SpeedProfile& profile, const ProfileLabels& labels,
                  const ProfileColours& colours);

/// Paints in the place of a profile why there is none.
void PaintInsteadOfProfile(QPainter& painter, const QRect& place, const QString& text, const ProfileColours& colours);

}  // namespace vantor
