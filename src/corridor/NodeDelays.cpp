#include "corridor/NodeDelays.h"

#include <algorithm>

#include "analysis/DelayStatistics.h"
#include "core/Numeric.h"

namespace vantor {
namespace {

const OwnBand* OwnBandAt(const CorridorRun& run, std::size_t node) {
    const auto own = std::ranges::find(run.OwnBands, node, &OwnBand::Node);
    return own == run.OwnBands.end() ? nullptr : &*own;
}

void PartBands(PassedBand& first, PassedBand& second, std::int32_t firstNode, std::int32_t secondNode) {
    if (first.EndFt <= second.StartFt || (first.IsOwn && second.IsOwn)) return;
    const std::int32_t middle = first.IsOwn    ? first.EndFt
                                : second.IsOwn ? second.StartFt
                                               : second.StartFt + (first.EndFt - second.StartFt) / 2;
    const std::int32_t border = std::clamp(middle, firstNode, secondNode);
    if (!first.IsOwn) {
        first.EndFt = border;
        first.IsCut = true;
    }
    if (!second.IsOwn) {
        second.StartFt = border;
        second.IsCut = true;
    }
}

/// Computes the delays of one run at its nodes.
class DelayMaker {
public:
    DelayMaker(const RunReading& run, const Corridor& corridor, const CorridorRun& as, const RunMatch& match,
               const AppSettings& settings)
        : run_(run),
          settings_(settings),
          name_(as.Name),
          idealSpeed_(corridor.Of(match.Along).IdealSpeedMph.value_or(0)),
          distances_(RunningDistances(run.Run)) {}

    NodeDelay DelayAt(const std::optional<PassedBand>& band) const {
        NodeDelay delay;
        StudyRunEntry entry;
        entry.EntryRunName = name_;
        if (!band)
            delay.Problem = "The run does not pass this node.";
        else
            Compute(*band, entry, delay);
        delay.Row = MakeRunListRow(entry, FactsOf(run_, entry, settings_), settings_);
        return delay;
    }

private:
    void Compute(const PassedBand& band, StudyRunEntry& entry, NodeDelay& delay) const {
        delay.Measured = band;
        StudyRunEntry computed = EntryFor(band, {});
        delay.Problem = Uncovered(computed);
        if (!delay.Problem.empty()) return;
        try {
            ComputeAlong(computed);
        } catch (const RunTimeError& error) {
            delay.Problem = error.what();
            return;
        }
        entry = computed;
        delay.Shifted[0] = entry.ControlDelay;
        for (std::size_t i = 1; i < BandShifts.size(); ++i) delay.Shifted[i] = DelayShifted(band, BandShifts[i]);
    }

    StudyRunEntry EntryFor(const PassedBand& band, const BandShift& shift) const {
        StudyRunEntry entry;
        entry.EntryRunName = name_;
        entry.CDStartDist = band.StartFt - shift.OutwardFt;
        entry.CDEndDist = band.EndFt + shift.OutwardFt;
        entry.IdealSpeedUser = idealSpeed_ == 0 ? 0 : idealSpeed_ + shift.FasterMph;
        return entry;
    }

    std::optional<std::int32_t> DelayShifted(const PassedBand& band, const BandShift& shift) const {
        if (idealSpeed_ == 0 && shift.FasterMph != 0) return std::nullopt;
        StudyRunEntry entry = EntryFor(band, shift);
        if (entry.CDStartDist >= entry.CDEndDist || !Uncovered(entry).empty()) return std::nullopt;
        try {
            ComputeAlong(entry);
            return entry.ControlDelay;
        } catch (const RunTimeError&) {
            return std::nullopt;
        }
    }

    void ComputeAlong(StudyRunEntry& entry) const {
        PlotState plot{BoundaryAxis::Distance, SampleAt(entry.CDStartDist), SampleAt(entry.CDEndDist)};
        ComputeRunDelay(run_.Run, settings_, plot, entry);
    }

    /// As PlacedBoundaries has it.
    std::int32_t SampleAt(std::int32_t feet) const {
        const auto reached = std::lower_bound(distances_.begin(), distances_.end(), feet);
        return std::min(static_cast<std::int32_t>(reached - distances_.begin()) + 1, distances_.LastIndex());
    }

    /// Why a computation would not find the boundaries.
    std::string Uncovered(const StudyRunEntry& entry) const {
        if (entry.CDStartDist < 1) return "Not covered: the run begins inside the band.";
        if (distances_.LastIndex() < 2) return "Not covered: the run is too short.";
        const FoundBoundaries found = FindBoundaries(run_.Run, {}, entry, settings_);
        if (!found.Start || !found.End) return "Not covered: the run ends inside the band.";
        return {};
    }

    const RunReading& run_;
    const AppSettings& settings_;
    const std::string& name_;
    int idealSpeed_;
    OneBased<std::int32_t> distances_;
};

}  // namespace

std::vector<std::optional<PassedBand>> BandsOf(const Corridor& corridor, const CorridorRun& run,
                                               const RunMatch& match) {
    std::vector<std::optional<PassedBand>> bands(corridor.Nodes.size());
    std::optional<std::size_t> before;
    for (std::size_t passed = 0; passed < bands.size(); ++passed) {
        const std::size_t node = NodeAlong(corridor, match.Along, passed);
        if (!match.Nodes[node].IsKnown()) continue;
        const OwnBand* const own = OwnBandAt(run, node);
        const Band& around = own != nullptr ? own->Around : corridor.Nodes[node].Around;
        const std::int32_t feet = Round32(match.Nodes[node].Feet);
        bands[node] = PassedBand{feet - around.UpstreamFt, feet + around.DownstreamFt, own != nullptr};
        if (before && !corridor.BandsMayOverlap)
            PartBands(*bands[*before], *bands[node], Round32(match.Nodes[*before].Feet), feet);
        before = node;
    }
    return bands;
}

std::vector<NodeDelay> DelaysOf(const RunReading& run, const Corridor& corridor, const CorridorRun& as,
                                const RunMatch& match, const AppSettings& settings) {
    const DelayMaker maker(run, corridor, as, match, settings);
    std::vector<NodeDelay> delays;
    for (const auto& band : BandsOf(corridor, as, match)) delays.push_back(maker.DelayAt(band));
    return delays;
}

}  // namespace vantor
