#include "corridor/CorridorLine.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace vantor {
namespace {

constexpr double EndFeet = 2640;

struct PlanePoint {
    double East = 0;
    double North = 0;
};

double LongitudeFrom(const Position& from, const Position& to) {
    return std::remainder(to.Longitude - from.Longitude, 360.0);
}

/// Feet to a degree north; and to a degree east at a latitude.
double FeetNorth() { return FeetBetween({0, 0}, {1, 0}); }
double FeetEastAt(double latitude) { return FeetNorth() * std::cos(latitude * std::numbers::pi / 180); }

/// The place `feet` behind `to`, in the direction from `from`.
Position Beyond(const Position& from, const Position& to, double feet) {
    const double part = feet / FeetBetween(from, to);
    Position beyond{to.Latitude + (to.Latitude - from.Latitude) * part, to.Longitude + LongitudeFrom(from, to) * part};
    beyond.Longitude = std::remainder(beyond.Longitude, 360.0);
    return beyond;
}

std::vector<Position> PointsOf(const Corridor& corridor) {
    std::vector<Position> points;
    const auto add = [&points](const Position& point) {
        if (points.empty() || FeetBetween(points.back(), point) > 1) points.push_back(point);
    };
    if (corridor.Alignment.size() > 1)
        for (const Position& point : corridor.Alignment) add(point);
    else
        for (const CorridorNode& node : corridor.Nodes)
            if (node.At) add(*node.At);
    return points;
}

}  // namespace

CorridorLine::CorridorLine(const std::vector<Position>& points, bool isStraight) : isStraight_(isStraight) {
    std::vector<Position> line = points;
    line.insert(line.begin(), Beyond(points[1], points[0], EndFeet));
    line.push_back(Beyond(points[points.size() - 2], points.back(), EndFeet));
    double along = -FeetBetween(line[0], line[1]);
    for (std::size_t i = 0; i + 1 < line.size(); ++i) {
        Piece piece;
        piece.From = line[i];
        piece.Along = along;
        piece.Length = FeetBetween(line[i], line[i + 1]);
        piece.FeetEast = FeetEastAt((line[i].Latitude + line[i + 1].Latitude) / 2);
        piece.East = LongitudeFrom(line[i], line[i + 1]) * piece.FeetEast;
        piece.North = (line[i + 1].Latitude - line[i].Latitude) * FeetNorth();
        pieces_.push_back(piece);
        along += piece.Length;
    }
}

std::optional<CorridorLine> CorridorLine::Of(const Corridor& corridor) {
    const std::vector<Position> points = PointsOf(corridor);
    if (points.size() < 2) return std::nullopt;
    CorridorLine line(points, corridor.Alignment.size() < 2);
    std::optional<double> first;
    for (const CorridorNode& node : corridor.Nodes) {
        if (node.At && !first) first = line.FootOf(*node.At).Along;
        line.nodes_.push_back(node.At ? std::optional(line.FootOf(*node.At).Along - *first) : std::nullopt);
    }
    for (Piece& piece : line.pieces_) piece.Along -= first.value_or(0);
    return line;
}

CorridorLine::Foot CorridorLine::FootOn(std::size_t index, const Position& position) const {
    static const double feetNorth = FeetNorth();
    const Piece& piece = pieces_[index];
    const PlanePoint at{LongitudeFrom(piece.From, position) * piece.FeetEast,
                        (position.Latitude - piece.From.Latitude) * feetNorth};
    const double square = piece.East * piece.East + piece.North * piece.North;
    const double part = std::clamp((at.East * piece.East + at.North * piece.North) / square, 0.0, 1.0);
    constexpr double SlackOfWay = 0.05;
    constexpr double MostSlack = 100;
    const double slack = std::min(SlackOfWay * std::min(part, 1 - part) * piece.Length, MostSlack);
    return {piece.Along + part * piece.Length, std::hypot(at.East - part * piece.East, at.North - part * piece.North),
            isStraight_ ? slack : 0};
}

CorridorLine::Foot CorridorLine::FootOf(const Position& position, std::size_t& near) const {
    // Beside the last foot; a point that is not on the line there may be so elsewhere.
    constexpr double Near = 100;
    near = std::min(near, pieces_.size() - 1);
    Foot nearest = FootOn(near, position);
    for (bool isNearer = true; isNearer;) {
        isNearer = false;
        for (const std::size_t beside : {near + 1, near - 1}) {
            if (beside >= pieces_.size()) continue;
            const Foot foot = FootOn(beside, position);
            if (foot.Beside >= nearest.Beside) continue;
            nearest = foot;
            near = beside;
            isNearer = true;
            break;
        }
    }
    if (nearest.Beside <= Near) return nearest;
    for (std::size_t i = 0; i < pieces_.size(); ++i)
        if (const Foot foot = FootOn(i, position); foot.Beside < nearest.Beside) {
            nearest = foot;
            near = i;
        }
    return nearest;
}

CorridorLine::Foot CorridorLine::FootOf(const Position& position) const {
    Foot nearest{0, std::numeric_limits<double>::infinity(), 0};
    for (std::size_t i = 0; i < pieces_.size(); ++i)
        if (const Foot foot = FootOn(i, position); foot.Beside < nearest.Beside) nearest = foot;
    return nearest;
}

void MeasureNodes(Corridor& corridor) {
    const auto line = CorridorLine::Of(corridor);
    if (!line) return;
    const std::vector<std::optional<double>>& along = line->Nodes();
    std::vector<double> old;
    for (const CorridorNode& node : corridor.Nodes) old.push_back(node.DistanceFt);
    std::optional<std::size_t> before;
    for (std::size_t node = 0; node < along.size(); ++node) {
        if (!along[node]) continue;
        corridor.Nodes[node].DistanceFt = *along[node];
        for (std::size_t between = before.value_or(node) + 1; before && between < node; ++between) {
            const double whole = old[node] - old[*before];
            const double part = whole > 0 ? (old[between] - old[*before]) / whole : 0;
            corridor.Nodes[between].DistanceFt = *along[*before] + part * (*along[node] - *along[*before]);
        }
        before = node;
    }
}

}  // namespace vantor
