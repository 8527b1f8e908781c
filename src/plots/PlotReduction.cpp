#include "plots/PlotReduction.h"

#include <cmath>

namespace vantor {
namespace {

double Cross(CanvasPoint one, CanvasPoint other) { return one.X * other.Y - one.Y * other.X; }

/// The directions in which a straight way from one point still passes all that follow it within the tolerance.
class Sector {
public:
    Sector(CanvasPoint from, double tolerance) : from_(from), tolerance_(tolerance) {}

    /// Takes the next point in; false, and nothing changed, where one way no longer passes all.
    bool Take(CanvasPoint to) {
        const CanvasPoint way = {to.X - from_.X, to.Y - from_.Y};
        const double length = std::sqrt(way.X * way.X + way.Y * way.Y);
        if (length < longest_ - tolerance_) return false;
        if (isOpen_ && length <= tolerance_) return true;
        if (!isOpen_ && (Cross(low_, way) < 0 || Cross(way, high_) < 0)) return false;
        const CanvasPoint aside = {-way.Y / length * tolerance_, way.X / length * tolerance_};
        const CanvasPoint low = {way.X - aside.X, way.Y - aside.Y};
        const CanvasPoint high = {way.X + aside.X, way.Y + aside.Y};
        if (isOpen_ || Cross(low_, low) > 0) low_ = low;
        if (isOpen_ || Cross(high, high_) > 0) high_ = high;
        isOpen_ = false;
        longest_ = std::max(longest_, length);
        return true;
    }

private:
    CanvasPoint from_;
    double tolerance_;
    double longest_ = 0;
    bool isOpen_ = true;
    CanvasPoint low_;
    CanvasPoint high_;
};

}  // namespace

std::vector<CanvasPoint> ReducedLine(std::span<const PlotPoint> points, const PlotMap& map, double tolerance) {
    const PlotRange seen = map.Window().Across;
    const auto before = [](const PlotPoint& point, double value) { return point.X < value; };
    const auto begin = std::lower_bound(points.begin(), points.end(), seen.Low, before);
    auto first = begin == points.begin() ? begin : begin - 1;
    auto last = std::lower_bound(begin, points.end(), seen.High, before);
    if (last != points.end()) ++last;

    std::vector<CanvasPoint> line;
    if (first == last) return line;
    line.push_back(map.Of(*first));
    Sector sector(line.back(), tolerance);
    CanvasPoint waiting = line.back();
    for (++first; first != last; ++first) {
        const CanvasPoint point = map.Of(*first);
        if (!sector.Take(point)) {
            line.push_back(waiting);
            sector = Sector(waiting, tolerance);
            sector.Take(point);
        }
        waiting = point;
    }
    line.push_back(waiting);
    return line;
}

}  // namespace vantor
