#include "plots/ProfilePlot.h"

#include <algorithm>
#include <cmath>
#include <span>

#include "plots/NamesInRow.h"
#include "plots/VisibleTrace.h"

namespace vantor {
namespace {

/// Lengths go with the text, so that a page is like a window.
double Hairline(const PlotLook& look) { return look.TextSize / 12; }
double Space(const PlotLook& look) { return look.TextSize / 3; }
double KeySize(const PlotLook& look) { return 0.75 * look.TextSize; }

double Line(const TextMeasure& measure, const PlotLook& look) { return measure.LineHeight(look.Text()); }
double TitleHeight(const TextMeasure& measure, const PlotLook& look) {
    return look.HasTitle ? measure.LineHeight(look.Title()) + Space(look) : 0;
}
/// Left of the area.
double NumberRoom(const TextMeasure& measure, const PlotLook& look) {
    return measure.TextWidth("0000", look.Dim()) + 2 * Space(look);
}

/// The rows of a profile around its area.
class SpeedFrame : public PlotFrame {
public:
    explicit SpeedFrame(ProfileAxes axes) : axes_(std::move(axes)) {}

    PlotMap MapOf(const TextMeasure& measure, const CanvasBox& box, const PlotLook& look) const override {
        return {ProfileAreaOf(measure, box, look), {axes_.Axes.Across.Whole, axes_.Axes.Up.Whole}};
    }

    void Draw(Canvas& canvas, const CanvasBox& box, const PlotLook& look) const override {
        const PlotMap map = MapOf(canvas, box, look);
        const CanvasBox& area = map.Area();
        if (look.HasTitle)
            canvas.DrawText({box.X, box.Y, box.Width, TitleHeight(canvas, look)}, axes_.Axes.Title, look.Title());
        DrawHead(canvas, {box.X, box.Y + TitleHeight(canvas, look), box.Width, Line(canvas, look)}, look, area);
        DrawSpeedGrid(canvas, axes_.Axes.Up, look, map, box.X);
        DrawScaleGrid(canvas, axes_.Axes.Across, look, map, box.X + box.Width + 4 * Space(look));
        const double line = Line(canvas, look);
        const CanvasBox row{area.X, area.Y + area.Height + line + 2 * Space(look), area.Width, line};
        canvas.DrawText(row, axes_.Axes.Across.Caption, look.Text(TextSide::Centre));
        canvas.DrawText(row, axes_.Unit, look.Dim(TextSide::Right));
    }

    /// A line on the edge of the area is not cut in half.
    CanvasBox Room(const CanvasBox& box, const PlotMap&) const override {
        constexpr double HalfLine = 2;
        return {box.X, box.Y, box.Width + HalfLine, box.Height};
    }

private:
    void DrawHead(Canvas& canvas, const CanvasBox& row, const PlotLook& look, const CanvasBox& area) const {
        const std::string& caption = axes_.Axes.Up.Caption;
        if (!look.HasLegend)
            return canvas.DrawText({row.X, row.Y, area.X - 2 * Space(look) - row.X, row.Height}, caption,
                                   look.Dim(TextSide::Right));
        canvas.DrawText(row, caption, look.Text());
        DrawLegend(canvas, row, look, canvas.TextWidth(caption, look.Text()));
    }

    /// At the right, where all of it has room beside the caption.
    void DrawLegend(Canvas& canvas, const CanvasBox& row, const PlotLook& look, double taken) const {
        const double between = 3 * Space(look);
        const auto room = [&](const PlotSample& sample) { return sample.NamedLength(canvas, look, Space(look)) + 1; };
        double left = row.X + row.Width + between;
        for (const PlotSample& sample : axes_.Axes.Legend) left -= room(sample) + between;
        if (left < row.X + taken + between) return;
        for (const PlotSample& sample : axes_.Axes.Legend) {
            sample.DrawNamed(canvas, {left, row.Y, room(sample), row.Height}, look, Space(look));
            left += room(sample) + between;
        }
    }

    ProfileAxes axes_;
};

}  // namespace

CanvasBox ProfileAreaOf(const TextMeasure& measure, const CanvasBox& box, const PlotLook& look) {
    const double line = Line(measure, look);
    const double space = Space(look);
    const double left = std::floor(box.X + NumberRoom(measure, look));
    const double head = TitleHeight(measure, look) + (look.HasLegend ? line + space : 0);
    const double top = std::floor(box.Y + head + line + ProfileLines::LabelRow(measure, look));
    return {left, top, std::max(std::floor(box.X + box.Width) - left, 1.0),
            std::max(std::floor(box.Y + box.Height - 2 * line - 2 * space) - top, 1.0)};
}

PlotAxis SpeedsUp(const SpeedAxis& speeds, const Units& units) {
    PlotAxis axis{.Caption = std::string("Speed (") + units.SpeedLabel() + ")",
                  .Whole = {0, units.MphOfSpeed(speeds.Maximum)}};
    for (int speed = 0; speed <= speeds.Maximum; speed += speeds.GridStep)
        axis.Names.push_back({units.MphOfSpeed(speed), std::to_string(speed)});
    return axis;
}

PlotAxis ScaleAcross(const ProfileGeometry& geometry) {
    const double end = geometry.Offset() + geometry.Visible();
    PlotAxis axis{.Caption = geometry.Axis() == BoundaryAxis::Time ? "Time (s)" : "Distance",
                  .Whole = {geometry.Offset(), end}};
    const int step = geometry.ScaleStep();
    for (int line = static_cast<int>(std::ceil(geometry.Offset() / step)); line * step <= end; ++line)
        axis.Names.push_back({static_cast<double>(line * step), std::to_string(line * step)});
    return axis;
}

void DrawSpeedGrid(Canvas& canvas, const PlotAxis& axis, const PlotLook& look, const PlotMap& map, double left) {
    const CanvasBox& area = map.Area();
    const double line = Line(canvas, look);
    for (const AxisTick& tick : axis.Names) {
        const double y = map.YOf(tick.Value);
        canvas.DrawLine({area.X, y}, {area.X + area.Width, y},
                        {Hairline(look), tick.Value == 0 ? look.Inks.DimText : look.Inks.Grid});
        canvas.DrawText({left, y - line / 2, area.X - 2 * Space(look) - left, line}, tick.Text,
                        look.Dim(TextSide::Right));
    }
}

void DrawScaleGrid(Canvas& canvas, const PlotAxis& axis, const PlotLook& look, const PlotMap& map, double right) {
    const CanvasBox& area = map.Area();
    const TextStyle style = look.Dim(TextSide::Centre);
    const double bottom = area.Y + area.Height;
    const double least =
        axis.Names.empty()
            ? (canvas.TextWidth(AxisText(axis.Values, axis.Whole.High, 1), style) + 4 * Space(look)) / area.Width
            : 0;
    double labelled = 0;
    for (const AxisTick& tick : AxisTicks(axis, axis.Whole, least * axis.Whole.Span())) {
        const double x = map.XOf(tick.Value);
        canvas.DrawLine({x, area.Y}, {x, bottom}, {Hairline(look), look.Inks.Grid});
        const double width = canvas.TextWidth(tick.Text, style);
        const double left = std::min(x - width / 2, right - width);
        if (left < labelled) continue;
        labelled = left + width + 2 * Space(look);
        canvas.DrawText({left, bottom + Space(look), width, Line(canvas, look)}, tick.Text, style);
    }
}

void SpeedTrace::Draw(Canvas& canvas, const PlotMap& map, const PlotLook& look) const {
    std::vector<CanvasPoint> line;
    line.reserve(Points.size());
    for (const PlotPoint& point : Points) line.push_back(map.Of(point));
    canvas.DrawSurface(map.Area(), line, {1.75 * Hairline(look), look.Inks.Trace}, Opacity);
}

SpeedTrace VisibleSpeeds(const ProfileTrace& trace, const ProfileGeometry& geometry, double columnsPerPixel) {
    const std::vector<TracePoint> visible = VisibleTraceOf(trace, geometry, columnsPerPixel);
    SpeedTrace speeds;
    speeds.Points.reserve(visible.size());
    const double first = geometry.AxisValueAt(0);
    const double perPixel = geometry.AxisValueAt(1) - first;
    for (const TracePoint& point : visible)
        speeds.Points.push_back({first + point.X * perPixel, static_cast<double>(point.Speed)});
    return speeds;
}

void ProfileNodes::Draw(Canvas& canvas, const PlotMap& map, const PlotLook& look) const {
    const CanvasBox& area = map.Area();
    const TextStyle style = look.Text(TextSide::Centre);
    const double row = ProfileLines::LabelRow(canvas, look);
    const double line = Line(canvas, look);
    const double nearest = 3 * Hairline(look);
    double before = area.X - nearest;
    std::vector<RowName> names;
    std::vector<const AxisTick*> named;
    for (const AxisTick& node : Nodes) {
        const double x = map.XOf(node.Value);
        if (x < area.X || x > area.X + area.Width + 1 || x - before < nearest) continue;
        before = x;
        canvas.DrawLine({x, area.Y - row}, {x, area.Y + area.Height}, {Hairline(look), look.Inks.Node});
        if (node.Text.empty()) continue;
        const double width = canvas.TextWidth(node.Text, style) + 1;
        names.push_back({x, width, std::min(width, 4 * look.TextSize)});
        named.push_back(&node);
    }
    // Without a legend, the caption of the speeds stands left of the names.
    const double left = area.X - (look.HasLegend ? NumberRoom(canvas, look) : 0);
    const auto rooms = PlaceInRow(names, {left, area.X + area.Width}, 2 * Space(look), Crowded::LeavesOut);
    for (std::size_t i = 0; i < rooms.size(); ++i)
        if (rooms[i].Span() > 0)
            canvas.DrawText({rooms[i].Low, area.Y - row - line, rooms[i].Span(), line}, named[i]->Text, style);
}

void ProfileKeys::Draw(Canvas& canvas, const PlotMap& map, const PlotLook& look) const {
    const CanvasBox& area = map.Area();
    const double size = KeySize(look);
    const double space = Space(look);
    const double line = Line(canvas, look);
    const double bottom = area.Y + area.Height;
    const TextStyle style{look.TextSize, false, look.Inks.Key, TextSide::Centre};
    double before = area.X - size - 1;
    double labelled = 0;
    for (const AxisTick& key : Keys) {
        const double x = map.XOf(key.Value);
        if (x < area.X || x > area.X + area.Width + 1 || x - before < size + 1) continue;
        before = x;
        DrawMarker(canvas, {x, bottom - size / 2}, PlotMarker::Triangle, size, look.Inks.Key, look.Inks);
        if (key.Text.empty() || x - space < labelled) continue;
        const double left = x + 1.5 * space;
        const double width = canvas.TextWidth(key.Text, style) + 1;
        if (left + width > area.X + area.Width) continue;
        labelled = left + width + space;
        const double top = bottom - line - size;
        const std::array veil = {CanvasPoint{left - 2, top}, CanvasPoint{left + width + 2, top},
                                 CanvasPoint{left + width + 2, top + line}, CanvasPoint{left - 2, top + line}};
        canvas.FillShape(veil, look.Inks.Base, 0.75);
        canvas.DrawText({left, top, width, line}, key.Text, style);
    }
}

void ProfileLinesPart::Draw(Canvas& canvas, const PlotMap& map, const PlotLook& look) const {
    const CanvasBox& area = map.Area();
    ProfileLinePlaces places = Lines;
    for (auto& line : std::span(places).first(2))
        if (line) line->Place = std::clamp(map.XOf(line->Place), area.X, area.X + area.Width);
    if (places.back()) places.back()->Place = std::max(map.YOf(places.back()->Place), area.Y);
    ProfileLines(canvas, look, area, places).Draw(canvas, look);
}

std::vector<PlotSample> ProfileLegend(bool hasNodes, bool hasKeys) {
    std::vector<PlotSample> legend = {{.Caption = "Speed", .Ink = &Colours::Trace, .Width = 2}};
    if (hasNodes) legend.push_back({.Caption = "Node", .Ink = &Colours::Node, .Width = 1});
    if (hasKeys)
        legend.push_back(
            {.Caption = "Key", .Ink = &Colours::Key, .Width = 0, .Marker = PlotMarker::Triangle, .MarkerSize = 9});
    legend.push_back({.Caption = "Boundary", .Ink = &Colours::Boundary, .Width = 2});
    legend.push_back({.Caption = "Ideal speed", .Ink = &Colours::IdealSpeed, .Width = 2});
    return legend;
}

Plot EmptyProfilePlot(ProfileAxes axes) {
    Plot plot;
    plot.Axes = axes.Axes;
    plot.WholeFrame = std::make_shared<SpeedFrame>(std::move(axes));
    return plot;
}

Plot ProfilePlot(const SpeedProfile& profile, double columnsPerPixel) {
    const ProfileGeometry& geometry = profile.Geometry();
    ProfileNodes nodes;
    ProfileKeys keys;
    for (const ProfileMark& mark : profile.Trace().Marks()) {
        const double place = profile.Trace().PlaceOf(geometry.Axis(), mark.Sample);
        (mark.IsNode ? nodes.Nodes : keys.Keys).push_back({geometry.AxisValueOf(place), mark.Label});
    }
    PlotAxes axes{"", ScaleAcross(geometry), SpeedsUp(geometry.Speeds(), geometry.Units()),
                  ProfileLegend(!nodes.Nodes.empty(), !keys.Keys.empty())};
    Plot plot = EmptyProfilePlot({std::move(axes), geometry.AxisUnit()});
    plot.Add(VisibleSpeeds(profile.Trace(), geometry, columnsPerPixel));
    plot.Add(std::move(nodes));
    // Last, so that no node's line runs through their labels.
    plot.Add(std::move(keys));
    return plot;
}

}  // namespace vantor
