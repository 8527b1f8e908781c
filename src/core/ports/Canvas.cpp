#include "core/ports/Canvas.h"

#include <vector>

namespace vantor {

void Canvas::DrawSurface(const CanvasBox& area, std::span<const CanvasPoint> line, const LineStyle& style,
                         double opacity) {
    if (line.empty()) return;
    DrawInside(area, [&] {
        if (opacity > 0) {
            const double bottom = area.Y + area.Height;
            std::vector<CanvasPoint> outline(line.begin(), line.end());
            outline.insert(outline.end(), {{line.back().X, bottom}, {line.front().X, bottom}});
            FillShape(outline, style.Ink, opacity);
        }
        DrawPolyline(line, style);
    });
}

}  // namespace vantor
