#include "plots/PlotMap.h"

#include "core/Numeric.h"

namespace vantor {
namespace {

constexpr double MostZoom = 500;

/// A range of that span as near to `low` as `whole` lets it.
PlotRange Within(const PlotRange& whole, double low, double span) {
    const double shown = std::min(span, whole.Span());
    const double first = std::clamp(low, whole.Low, std::max(whole.High - shown, whole.Low));
    return {first, first + shown};
}

PlotRange Zoomed(const PlotRange& shown, const PlotRange& whole, double about, double factor) {
    const double span = std::clamp(shown.Span() / factor, whole.Span() / MostZoom, whole.Span());
    if (span == whole.Span()) return whole;
    return Within(whole, about - (about - shown.Low) / shown.Span() * span, span);
}

}  // namespace

PlotWindow ZoomedWindow(const PlotWindow& shown, const PlotWindow& whole, PlotPoint about, double factor, bool up) {
    return {Zoomed(shown.Across, whole.Across, about.X, factor),
            up ? Zoomed(shown.Up, whole.Up, about.Y, factor) : shown.Up};
}

PlotWindow MovedWindow(const PlotWindow& shown, const PlotWindow& whole, double across, double up) {
    return {Within(whole.Across, shown.Across.Low + across, shown.Across.Span()),
            Within(whole.Up, shown.Up.Low + up, shown.Up.Span())};
}

PlotMap::PlotMap(const CanvasBox& area, const PlotWindow& window)
    : area_(area),
      across_(area.Width / std::max(window.Across.Span(), 1e-12)),
      up_(area.Height / std::max(window.Up.Span(), 1e-12)) {
    origin_ = {area.X - window.Across.Low * across_, area.Y + area.Height + window.Up.Low * up_};
}

PlotMap PlotMap::OnWholeUnits(const CanvasBox& area, CanvasPoint origin, float across, float up) {
    PlotMap map;
    map.area_ = area;
    map.origin_ = origin;
    map.across_ = static_cast<double>(across);
    map.up_ = static_cast<double>(up);
    map.isWhole_ = true;
    return map;
}

double PlotMap::WholeUnit(double place) { return Round16(place); }

PlotPoint PlotMap::ValueAt(CanvasPoint place) const {
    return {across_ > 0 ? (place.X - origin_.X) / across_ : 0, up_ > 0 ? (origin_.Y - place.Y) / up_ : 0};
}

PlotWindow PlotMap::Window() const {
    const PlotPoint low = ValueAt({area_.X, area_.Y + area_.Height});
    const PlotPoint high = ValueAt({area_.X + area_.Width, area_.Y});
    return {{low.X, high.X}, {low.Y, high.Y}};
}

}  // namespace vantor
