#include "plots/forms/ProfilePicture.h"

#include <QFontInfo>

#include "core/forms/Theme.h"
#include "core/forms/WindowCanvas.h"
#include "plots/ProfilePlot.h"

namespace vantor {
namespace {

CanvasBox BoxOf(const QSizeF& size) {
    constexpr double Edge = 10;
    return {Edge, Edge / 2, size.width() - 3 * Edge, size.height() - Edge};
}

}  // namespace

PlotLook LookOf(const QWidget& widget) {
    return {.Inks = ColoursOf(widget.palette()),
            .TextSize = static_cast<double>(QFontInfo(widget.font()).pixelSize()),
            .HasTitle = false};
}

PlotRectangle PlotAreaOf(const QSizeF& size, const QWidget& widget) {
    const CanvasBox area = ProfileAreaOf(FontMeasure(), BoxOf(size), LookOf(widget));
    return {area.X, area.Y, area.X + area.Width, area.Y + area.Height};
}

void PaintProfile(QPainter& painter, const QWidget& widget, const SpeedProfile& profile) {
    const PlotLook look = LookOf(widget);
    painter.fillRect(widget.rect(), Ink(look.Inks.Base));
    const Plot plot = ProfilePlot(profile, painter.device()->devicePixelRatioF());
    WindowCanvas canvas(painter);
    DrawPlot(canvas, BoxOf(widget.size()), plot, look, plot.Whole());
}

void PaintInsteadOfProfile(QPainter& painter, const QWidget& widget, const QString& text) {
    const Colours& colours = ColoursOf(widget.palette());
    painter.fillRect(widget.rect(), Ink(colours.Base));
    painter.setPen(Ink(colours.DimText));
    painter.drawText(widget.rect().adjusted(24, 24, -24, -24), Qt::AlignCenter | Qt::TextWordWrap, text);
}

}  // namespace vantor
