#include "corridor/WayAxis.h"

#include <optional>

#include "corridor/NodeDelays.h"

namespace vantor {

double WayAxis::PlaceOf(std::size_t node) const {
    const double feet = corridor_.Nodes[node].DistanceFt;
    return way_ == Way::Forward ? feet - corridor_.Nodes.front().DistanceFt : corridor_.Nodes.back().DistanceFt - feet;
}

std::vector<PlacedBand> WayAxis::Bands(const CorridorRun& run) const {
    RunMatch onAxis{way_, {}, {}};
    for (std::size_t node = 0; node < corridor_.Nodes.size(); ++node)
        onAxis.Nodes.push_back({MatchSource::User, 0, PlaceOf(node), {}});
    std::vector<PlacedBand> bands;
    for (const auto& band : BandsOf(corridor_, run, onAxis))
        bands.push_back(
            {static_cast<double>(band->StartFt), static_cast<double>(band->EndFt), band->IsOwn, band->IsCut});
    return bands;
}

PlotRange WayAxis::Bounds() const {
    const auto bands = Bands();
    if (bands.empty()) return {};
    return {bands[NodeAlong(corridor_, way_, 0)].From, bands[NodeAlong(corridor_, way_, bands.size() - 1)].To};
}

AlignedRun WayAxis::Align(const MatchedRun& run) const {
    struct Knot {
        double Own, OnAxis;
    };
    std::vector<Knot> knots;
    for (std::size_t passed = 0; passed < corridor_.Nodes.size(); ++passed) {
        const std::size_t node = NodeAlong(corridor_, way_, passed);
        const NodePassage& passage = run.Match.Nodes[node];
        if (passage.IsKnown() && (knots.empty() || passage.Feet > knots.back().Own))
            knots.push_back({passage.Feet, PlaceOf(node)});
    }
    AlignedRun aligned{{&run.Measured, &run.Trace}, {}};
    aligned.At.reserve(run.Trace.Distances.size());
    std::size_t next = 0;  // the first knot not behind the place
    for (const double feet : run.Trace.Distances) {
        while (next < knots.size() && knots[next].Own < feet) ++next;
        const Knot& near = next == 0 ? knots.front() : knots[next - 1];
        double factor = 1;
        if (next > 0 && next < knots.size()) factor = (knots[next].OnAxis - near.OnAxis) / (knots[next].Own - near.Own);
        aligned.At.push_back(near.OnAxis + (feet - near.Own) * factor);
    }
    return aligned;
}

}  // namespace vantor
