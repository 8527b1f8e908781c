#include "corridor/BandDrag.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "core/Numeric.h"
#include "statistics/DelayEvents.h"

namespace vantor {
namespace {

/// A border lies so far from its node at most.
constexpr double MostBandFt = 5280;

const Band& BandFor(const Corridor& corridor, const CorridorRun& run, std::size_t node) {
    const auto own = std::ranges::find(run.OwnBands, node, &OwnBand::Node);
    return own == run.OwnBands.end() ? corridor.Nodes[node].Around : own->Around;
}

/// The events of one run, as bands of the nodes that it passes.
std::vector<std::optional<Band>> ProposedFor(const MatchedRun& run, const Corridor& corridor, float speedFactor) {
    RunRecord flagged = run.Read->Run;
    FlagNodes(flagged, run.Match.Nodes, run.Match.Along, corridor);
    const RunEvents found = FindDelayEvents(flagged, speedFactor);
    std::vector<std::optional<Band>> bands(corridor.Nodes.size());
    std::size_t number = 0;
    for (std::size_t passed = 0; passed < corridor.Nodes.size(); ++passed) {
        const std::size_t node = NodeAlong(corridor, run.Match.Along, passed);
        const NodePassage& passage = run.Match.Nodes[node];
        if (!passage.IsKnown() || number >= found.EventOfNode.size()) continue;
        if (const auto event = found.EventOfNode[number]) {
            const std::int32_t feet = Round32(passage.Feet);
            bands[node] = Band{std::max(feet - found.Events[*event].OnsetDistance, 0),
                               std::max(found.Events[*event].EndDistance - feet, 0)};
        }
        ++number;
    }
    return bands;
}

}  // namespace

BandDrag::BandDrag(const Corridor& corridor, Way way, const CorridorRun& run) {
    const WayAxis axis(corridor, way);
    bands_ = axis.Bands(run);
    for (std::size_t node = 0; node < corridor.Nodes.size(); ++node) {
        nodes_.push_back(axis.PlaceOf(node));
        stored_.push_back(BandFor(corridor, run, node));
    }
    for (std::size_t passed = 0; passed < corridor.Nodes.size(); ++passed)
        for (const bool isEnd : {false, true}) borders_.push_back({NodeAlong(corridor, way, passed), isEnd});
}

double BandDrag::PlaceOf(const BandBorder& border) const {
    if (moved_ && grabbed_ == border) return *moved_;
    return border.IsEnd ? bands_[border.Node].To : bands_[border.Node].From;
}

std::optional<BandBorder> BandDrag::BorderAt(double place, double reach) const {
    std::optional<BandBorder> found;
    for (const BandBorder& border : borders_) {
        const double away = std::abs(PlaceOf(border) - place);
        if (away > reach || (found && std::abs(PlaceOf(*found) - place) <= away)) continue;
        found = border;
    }
    return found;
}

std::optional<std::size_t> BandDrag::NodeAt(double place, double reach) const {
    std::optional<std::size_t> found;
    for (std::size_t node = 0; node < nodes_.size(); ++node) {
        const bool isIn = place >= bands_[node].From && place <= bands_[node].To;
        const double away = std::abs(nodes_[node] - place);
        if ((isIn || away <= reach) && (!found || away < std::abs(nodes_[*found] - place))) found = node;
    }
    return found;
}

void BandDrag::Grab(std::optional<BandBorder> border) {
    moved_.reset();
    grabbed_ = border && border->Node < nodes_.size() ? border : std::nullopt;
}

bool BandDrag::GrabNext(bool forward) {
    const auto at = grabbed_ ? std::ranges::find(borders_, *grabbed_) : borders_.end();
    std::optional<BandBorder> next;
    if (forward && !borders_.empty())
        next = at == borders_.end()       ? std::optional(borders_.front())
               : at + 1 == borders_.end() ? std::nullopt
                                          : std::optional(*(at + 1));
    else if (at != borders_.end() && at != borders_.begin())
        next = *(at - 1);
    Grab(next);
    return next.has_value();
}

PlotRange BandDrag::LimitsOf(const BandBorder& border) const {
    const double node = nodes_[border.Node];
    PlotRange limits{node - MostBandFt, node + MostBandFt};
    for (const double other : nodes_) {
        if (other < node) limits.Low = std::max(limits.Low, other);
        if (other > node) limits.High = std::min(limits.High, other);
    }
    // A band has a length.
    if (border.IsEnd)
        limits.Low = node + (stored_[border.Node].UpstreamFt > 0 ? 0 : 1);
    else
        limits.High = node - (stored_[border.Node].DownstreamFt > 0 ? 0 : 1);
    return limits;
}

void BandDrag::MoveTo(double place) {
    if (!grabbed_) return;
    const PlotRange limits = LimitsOf(*grabbed_);
    const double node = nodes_[grabbed_->Node];
    // Whole feet from the node.
    const double feet = Round32(std::clamp(place, limits.Low, std::max(limits.High, limits.Low)) - node);
    moved_ = node + feet;
}

void BandDrag::MoveBy(int feet) {
    if (grabbed_) MoveTo(PlaceOf(*grabbed_) + feet);
}

void BandDrag::Cancel() { moved_.reset(); }

std::optional<Band> BandDrag::Moved() const {
    if (!grabbed_ || !moved_) return std::nullopt;
    Band band = stored_[grabbed_->Node];
    const std::int32_t feet = Round32(*moved_ - nodes_[grabbed_->Node]);
    (grabbed_->IsEnd ? band.DownstreamFt : band.UpstreamFt) = grabbed_->IsEnd ? feet : -feet;
    return band == stored_[grabbed_->Node] ? std::nullopt : std::optional(band);
}

std::optional<Band> BandDrag::Release() {
    const auto band = Moved();
    moved_.reset();
    return band;
}

std::string BandDrag::InWords(const Corridor& corridor, const BandBorder& border, const Units& units) const {
    const double feet = std::abs(PlaceOf(border) - nodes_[border.Node]);
    std::string text = corridor.Nodes[border.Node].Name + ": the band " + (border.IsEnd ? "ends " : "begins ") +
                       units.LengthText(feet) + (border.IsEnd ? " behind the node" : " before the node");
    if (bands_[border.Node].IsOwn) text += ", for this run alone";
    if (bands_[border.Node].IsCut && !(moved_ && grabbed_ == border)) text += "; cut where bands overlap";
    return text;
}

std::vector<BandProposal> ProposeBands(const Corridor& corridor, const std::vector<MatchedRun>& runs, Way way,
                                       float speedFactor) {
    std::vector<BandProposal> proposals(corridor.Nodes.size());
    for (std::size_t node = 0; node < proposals.size(); ++node) proposals[node].Node = node;
    for (std::size_t index = 0; index < runs.size(); ++index) {
        const MatchedRun& run = runs[index];
        if (!run.IsThere() || !corridor.Runs[run.Index].SetAside.empty()) continue;
        const auto bands = ProposedFor(run, corridor, speedFactor);
        for (std::size_t node = 0; node < proposals.size(); ++node) {
            BandProposal& proposal = proposals[node];
            if (run.Match.Along == way && run.Match.Nodes[node].IsKnown())
                proposal.Runs.push_back({index, bands[node]});
            if (!bands[node]) continue;
            if (!proposal.Common) proposal.Common = *bands[node];
            proposal.Common->UpstreamFt = std::max(proposal.Common->UpstreamFt, bands[node]->UpstreamFt);
            proposal.Common->DownstreamFt = std::max(proposal.Common->DownstreamFt, bands[node]->DownstreamFt);
        }
    }
    return proposals;
}

}  // namespace vantor
