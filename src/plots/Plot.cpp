#include "plots/Plot.h"

namespace vantor {
namespace {

bool HasOwnFrame(const Plot& plot, const PlotWindow& window) {
    return plot.WholeFrame != nullptr && window == plot.Whole();
}

CanvasBox RoomOf(const Plot& plot, const CanvasBox& box, const PlotMap& map, const PlotWindow& window) {
    return HasOwnFrame(plot, window) ? plot.WholeFrame->Room(box, map) : map.Area();
}

}  // namespace

PlotMap MapOf(const TextMeasure& measure, const CanvasBox& box, const Plot& plot, const PlotLook& look,
              const PlotWindow& window) {
    if (HasOwnFrame(plot, window)) return plot.WholeFrame->MapOf(measure, box, look);
    return MapOf(measure, box, plot.Axes, look, window);
}

void DrawPlot(Canvas& canvas, const CanvasBox& box, const Plot& plot, const PlotLook& look, const PlotWindow& window) {
    const PlotMap map = MapOf(canvas, box, plot, look, window);
    if (HasOwnFrame(plot, window))
        plot.WholeFrame->Draw(canvas, box, look);
    else
        DrawAxes(canvas, box, plot.Axes, look, map);
    if (!plot.EmptyText.empty()) canvas.DrawText(map.Area(), plot.EmptyText, look.Text(TextSide::Centre));
    canvas.DrawInside(RoomOf(plot, box, map, window), [&] {
        for (const auto& part : plot.Parts) part->Draw(canvas, map, look);
    });
}

void DrawChosen(Canvas& canvas, const CanvasBox& box, const Plot& plot, const PlotLook& look, const PlotWindow& window,
                int item) {
    if (!plot.HasItem(item)) return;
    const PlotMap map = MapOf(canvas, box, plot, look, window);
    canvas.DrawInside(RoomOf(plot, box, map, window), [&] {
        for (const auto& part : plot.Parts) part->DrawChosen(canvas, map, look, item);
    });
}

PlotHit FindItem(const Plot& plot, const PlotMap& map, CanvasPoint place, double reach) {
    PlotSearch search(map, place, reach);
    for (const auto& part : plot.Parts) part->Search(search);
    return search.Found();
}

std::vector<std::byte> PlotPicture(const DocumentWriter& documents, const Plot& plot, const PlotWindow& window,
                                   PictureFormat format, CanvasSize size) {
    constexpr double Margin = 12;
    const CanvasBox box{Margin, Margin, size.Width - 2 * Margin, size.Height - 2 * Margin};
    return documents.Picture(
        size, [&](Canvas& canvas) { DrawPlot(canvas, box, plot, {}, window); }, format);
}

}  // namespace vantor
