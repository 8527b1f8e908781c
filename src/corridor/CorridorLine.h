#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "core/Position.h"
#include "corridor/Corridor.h"

namespace vantor {

/// The line of a corridor on the earth: its alignment, or straight from node to node, with straight ends half a mile
/// beyond. Lengths along it are great circles from point to point; a place between two points is found on the plane
/// about the middle of them, which errs by less than 0.01 % for pieces up to 5 miles.
class CorridorLine {
public:
    /// Where a position lies on the line.
    struct Foot {
        double Along = 0;   ///< feet from the first node; below 0 before it
        double Beside = 0;  ///< feet from the line
        /// Feet by which a street may leave the line here: one that is drawn straight from node to node knows nothing
        /// of the bends between them.
        double Slack = 0;
    };

    /// Nothing where fewer than two nodes have a position.
    static std::optional<CorridorLine> Of(const Corridor& corridor);

    /// The nearest place on the line. `near` is the piece where the search begins, and becomes the one found: points of
    /// a way lie in the order of the line, so that the next foot is found beside the last one.
    Foot FootOf(const Position& position, std::size_t& near) const;
    Foot FootOf(const Position& position) const;

    /// Feet from the first node, by node; nothing for one without a position.
    const std::vector<std::optional<double>>& Nodes() const { return nodes_; }

private:
    struct Piece {
        Position From;
        double Along = 0;            ///< of its beginning, feet from that of the line
        double Length = 0;           ///< feet
        double East = 0, North = 0;  ///< of its end from its beginning on the plane, feet
        double FeetEast = 0;         ///< to a degree of longitude
    };
    CorridorLine(const std::vector<Position>& points, bool isStraight);
    Foot FootOn(std::size_t piece, const Position& position) const;

    bool isStraight_;  ///< from node to node
    std::vector<Piece> pieces_;
    std::vector<std::optional<double>> nodes_;
};

/// The distances of nodes with positions along the line of the corridor; nodes without one lie between those beside
/// them as their distances did. Does nothing where fewer than two have a position.
void MeasureNodes(Corridor& corridor);

}  // namespace vantor
