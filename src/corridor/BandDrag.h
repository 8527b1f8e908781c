#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "core/Units.h"
#include "corridor/WayAxis.h"

namespace vantor {

/// One end of a node's band, as the way is driven.
struct BandBorder {
    std::size_t Node = 0;  ///< as the corridor counts them
    bool IsEnd = false;

    bool operator==(const BandBorder&) const = default;
};

/// Moves the borders of the bands that a plot along a way shows: those of all runs, or those of one run alone.
class BandDrag {
public:
    BandDrag() = default;
    /// `run` has its own bands: that of the run alone, or an empty one.
    BandDrag(const Corridor& corridor, Way way, const CorridorRun& run);

    /// In the order of the road.
    const std::vector<BandBorder>& Borders() const { return borders_; }
    /// Feet on the axis of the way, as it stands or is being moved.
    double PlaceOf(const BandBorder& border) const;
    double NodePlace(std::size_t node) const { return nodes_[node]; }
    /// The nearest border within reach, feet.
    std::optional<BandBorder> BorderAt(double place, double reach) const;
    /// The node in whose band a place lies, or that is not farther than `reach`.
    std::optional<std::size_t> NodeAt(double place, double reach) const;

    /// The one that is being moved or would be moved by keys.
    const std::optional<BandBorder>& Grabbed() const { return grabbed_; }
    void Grab(std::optional<BandBorder> border);
    /// The next border, or the one before; false and none where there is no more.
    bool GrabNext(bool forward);
    /// To whole feet; a border does not pass its node, nor the nodes beside it.
    void MoveTo(double place);
    void MoveBy(int feet);
    /// Puts back what was moved and not let go.
    void Cancel();
    /// The band as it was moved; nothing where it is as it was.
    std::optional<Band> Release();
    /// The band that is being moved.
    std::optional<Band> Moved() const;

    /// "Elm Ave: the band begins 600 ft before the node".
    std::string InWords(const Corridor& corridor, const BandBorder& border, const Units& units) const;

private:
    Band BandOf(std::size_t node) const;
    PlotRange LimitsOf(const BandBorder& border) const;

    std::vector<double> nodes_;      ///< by node, feet on the axis
    std::vector<PlacedBand> bands_;  ///< likewise, as drawn
    std::vector<Band> stored_;       ///< likewise, as the corridor has them
    std::vector<BandBorder> borders_;
    std::optional<BandBorder> grabbed_;
    std::optional<double> moved_;  ///< where the grabbed border is now
};

/// Bands by where runs slow down and gain their speed again. Nothing is set by it.
struct BandProposal {
    struct Own {
        std::size_t Run = 0;         ///< in the matched runs
        std::optional<Band> Around;  ///< nothing for a run that passes without delay
    };
    std::size_t Node = 0;
    /// From the earliest onset to the latest end, measured from the node, of the runs of both ways: a band holds for
    /// both. Nothing where no run is delayed.
    std::optional<Band> Common;
    std::vector<Own> Runs;  ///< of the way, those that pass the node
};
/// By the corridor's nodes; of the runs that take part and are not set aside.
std::vector<BandProposal> ProposeBands(const Corridor& corridor, const std::vector<MatchedRun>& runs, Way way,
                                       float speedFactor);

}  // namespace vantor
