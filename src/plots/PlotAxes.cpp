#include "plots/PlotAxes.h"

#include <array>
#include <cmath>

#include "core/Axis.h"
#include "core/Numeric.h"

namespace vantor {
namespace {

constexpr std::array ClockSteps = {1, 2, 5, 10, 15, 30, 60, 120, 300, 600, 900, 1800, 3600, 7200, 10800, 21600, 86400};

double Space(const PlotLook& look) { return look.TextSize / 2; }

bool HasTitle(const PlotAxes& axes, const PlotLook& look) { return look.HasTitle && !axes.Title.empty(); }

double StepOf(const PlotAxis& axis, double least) {
    if (axis.Values == AxisValues::Numbers) {
        const double step = RoundFraction(least);
        return axis.IsWhole ? std::max(step, 1.0) : step;
    }
    for (const int step : ClockSteps)
        if (step >= least) return step;
    return ClockSteps.back();
}

std::string TwoDigits(std::int64_t value) { return (value < 10 ? "0" : "") + std::to_string(value); }

/// The rows of a legend, each as long as there is room for.
struct LegendPlace {
    std::vector<CanvasBox> Samples;
    int Rows = 0;
};

LegendPlace PlaceLegend(const TextMeasure& measure, const std::vector<PlotSample>& legend, const PlotLook& look,
                        const CanvasBox& box) {
    LegendPlace placed;
    if (!look.HasLegend || legend.empty()) return placed;
    const double line = measure.LineHeight(look.Text());
    const double space = Space(look);
    double x = box.X + space;
    placed.Rows = 1;
    for (const PlotSample& sample : legend) {
        const double width = sample.NamedLength(measure, look, space);
        if (x > box.X + space && x + width > box.X + box.Width - space) {
            x = box.X + space;
            ++placed.Rows;
        }
        placed.Samples.push_back({x, box.Y + (placed.Rows - 1) * line, width, line});
        x += width + 3 * space;
    }
    return placed;
}

/// The rows above the area: title, legend, caption of the upright axis.
struct Head {
    double Title = 0;
    double Legend = 0;
    double Caption = 0;
    double Bottom = 0;
    LegendPlace Samples;
};

Head HeadOf(const TextMeasure& measure, const CanvasBox& box, const PlotAxes& axes, const PlotLook& look) {
    Head head;
    const double line = measure.LineHeight(look.Text());
    head.Title = box.Y + Space(look);
    head.Legend = head.Title + (HasTitle(axes, look) ? measure.LineHeight(look.Title()) + Space(look) : 0);
    head.Samples = PlaceLegend(measure, axes.Legend, look, {box.X, head.Legend, box.Width, 0});
    head.Caption = head.Legend + head.Samples.Rows * line + (head.Samples.Rows > 0 ? Space(look) : 0);
    head.Bottom = head.Caption + line + line / 2;
    return head;
}

double LeastUp(const TextMeasure& measure, const PlotLook& look, const PlotWindow& window, double height) {
    return 2 * measure.LineHeight(look.Text()) * window.Up.Span() / std::max(height, 1.0);
}

double WidestTick(const TextMeasure& measure, const std::vector<AxisTick>& ticks, const PlotLook& look) {
    double widest = 0;
    for (const AxisTick& tick : ticks) widest = std::max(widest, measure.TextWidth(tick.Text, look.Text()));
    return widest;
}

void DrawHead(Canvas& canvas, const CanvasBox& box, const PlotAxes& axes, const PlotLook& look) {
    const double line = canvas.LineHeight(look.Text());
    const double space = Space(look);
    const Head head = HeadOf(canvas, box, axes, look);
    if (HasTitle(axes, look))
        canvas.DrawText({box.X + space, head.Title, box.Width - 2 * space, canvas.LineHeight(look.Title())}, axes.Title,
                        look.Title());
    for (std::size_t i = 0; i < head.Samples.Samples.size(); ++i)
        axes.Legend[i].DrawNamed(canvas, head.Samples.Samples[i], look, space);
    canvas.DrawText({box.X + space, head.Caption, box.Width - 2 * space, line}, axes.Up.Caption, look.Text());
}

void DrawUp(Canvas& canvas, const CanvasBox& box, const PlotAxis& axis, const PlotLook& look, const PlotMap& map) {
    const CanvasBox& area = map.Area();
    const PlotWindow window = map.Window();
    const double line = canvas.LineHeight(look.Text());
    for (const AxisTick& tick : AxisTicks(axis, window.Up, LeastUp(canvas, look, window, area.Height))) {
        const double y = map.YOf(tick.Value);
        canvas.DrawLine({area.X, y}, {area.X + area.Width, y}, {1, look.Inks.Grid});
        canvas.DrawText({box.X, y - line / 2, area.X - Space(look) - box.X, line}, tick.Text,
                        look.Dim(TextSide::Right));
    }
}

/// The values below the area, as many as have room, and the room of each.
std::pair<std::vector<AxisTick>, double> TicksAcross(const TextMeasure& measure, const PlotAxis& axis,
                                                     const PlotLook& look, const PlotMap& map) {
    const PlotRange range = map.Window().Across;
    const double scale = map.Area().Width / range.Span();
    double room = 0;
    std::vector<AxisTick> ticks = AxisTicks(axis, range, range.Span() / 4);
    for (int pass = 0; pass < 2; ++pass) {  // closer values may be longer ones
        room = WidestTick(measure, ticks, look) + 4 * Space(look);
        ticks = AxisTicks(axis, range, room / scale);
    }
    if (axis.Names.empty()) return {ticks, room};
    room = map.Area().Width;
    for (std::size_t i = 1; i < ticks.size(); ++i)
        room = std::min(room, (ticks[i].Value - ticks[i - 1].Value) * scale - Space(look));
    return {ticks, room};
}

void DrawAcross(Canvas& canvas, const CanvasBox& box, const PlotAxis& axis, const PlotLook& look, const PlotMap& map) {
    const CanvasBox& area = map.Area();
    const double line = canvas.LineHeight(look.Text());
    const double bottom = area.Y + area.Height;
    const double row = bottom + std::max(Space(look), line / 2 + 1);  // below the lowest value of the other axis
    const auto& [ticks, room] = TicksAcross(canvas, axis, look, map);
    for (const AxisTick& tick : ticks) {
        const double x = map.XOf(tick.Value);
        const double width = std::min(canvas.TextWidth(tick.Text, look.Dim(TextSide::Centre)) + 1, room);
        const double left = std::clamp(x - width / 2, box.X, std::max(box.X + box.Width - width, box.X));
        canvas.DrawLine({x, area.Y}, {x, bottom}, {1, look.Inks.Grid});
        canvas.DrawText({left, row, width, line}, tick.Text, look.Dim(TextSide::Centre));
    }
    canvas.DrawText({area.X, row + line, area.Width, line}, axis.Caption, look.Dim(TextSide::Right));
}

}  // namespace

std::string AxisText(AxisValues values, double value, double step) {
    if (values == AxisValues::Numbers) {
        int decimals = 0;
        for (double part = step; decimals < 6 && part - std::floor(part + 1e-9) > 1e-6; part *= 10) ++decimals;
        return FixedDecimals(value, decimals);
    }
    const auto seconds = static_cast<std::int64_t>(std::floor(std::abs(value) + 0.5));
    const std::string sign = value < 0 && seconds > 0 ? "-" : "";
    if (values == AxisValues::Minutes) return sign + std::to_string(seconds / 60) + ":" + TwoDigits(seconds % 60);
    const std::string minute = sign + TwoDigits(seconds / 3600 % 24) + ":" + TwoDigits(seconds / 60 % 60);
    return step < 60 ? minute + ":" + TwoDigits(seconds % 60) : minute;
}

std::vector<AxisTick> AxisTicks(const PlotAxis& axis, const PlotRange& range, double least) {
    std::vector<AxisTick> ticks;
    for (const AxisTick& name : axis.Names)
        if (name.Value >= range.Low && name.Value <= range.High) ticks.push_back(name);
    if (!axis.Names.empty()) return ticks;
    constexpr int Most = 1000;
    const double step = StepOf(axis, std::max(least, range.Span() / Most));
    for (double number = std::ceil(range.Low / step - 1e-9); number * step <= range.High + step * 1e-9; ++number) {
        const double value = number == 0 ? 0 : number * step;  // never -0
        ticks.push_back({value, AxisText(axis.Values, value, step)});
    }
    return ticks;
}

PlotMap MapOf(const TextMeasure& measure, const CanvasBox& box, const PlotAxes& axes, const PlotLook& look,
              const PlotWindow& window) {
    const double space = Space(look);
    const double line = measure.LineHeight(look.Text());
    const double top = HeadOf(measure, box, axes, look).Bottom;
    const double height = std::max(box.Y + box.Height - 2 * line - 2 * space - top, 1.0);
    const auto ticks = AxisTicks(axes.Up, window.Up, LeastUp(measure, look, window, height));
    const double left = box.X + WidestTick(measure, ticks, look) + 2 * space;
    const double right = std::max(box.X + box.Width - 4 * space, left + 1);
    return {{std::ceil(left), std::ceil(top), std::floor(right) - std::ceil(left), std::floor(height)}, window};
}

void DrawAxes(Canvas& canvas, const CanvasBox& box, const PlotAxes& axes, const PlotLook& look, const PlotMap& map) {
    canvas.FillBox(box, look.Inks.Base);
    DrawHead(canvas, box, axes, look);
    DrawUp(canvas, box, axes.Up, look, map);
    DrawAcross(canvas, box, axes.Across, look, map);
    canvas.DrawFrame(map.Area(), {1, look.Inks.DimText});
}

}  // namespace vantor
