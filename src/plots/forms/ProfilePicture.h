#pragma once

#include <QPainter>
#include <QString>
#include <QWidget>

#include "plots/PlotParts.h"
#include "plots/SpeedProfile.h"

namespace vantor {

/// How plots look in the palette and the font of a widget.
PlotLook LookOf(const QWidget& widget);

/// The area of a profile that fills a widget of that size.
PlotRectangle PlotAreaOf(const QSizeF& size, const QWidget& widget);

/// Paints all that stays while a line is dragged: axes, grid, trace, nodes, keys, legend. The profile's area is that of
/// the widget.
void PaintProfile(QPainter& painter, const QWidget& widget, const SpeedProfile& profile);

/// Paints in the place of a profile why there is none.
void PaintInsteadOfProfile(QPainter& painter, const QWidget& widget, const QString& text);

}  // namespace vantor
