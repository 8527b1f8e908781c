#include "corridor/Passes.h"

#include <algorithm>
#include <cmath>

#include "analysis/CutRun.h"
#include "analysis/DelayStatistics.h"
#include "core/RunDecoding.h"
#include "core/RunTimeError.h"
#include "core/Text.h"

namespace vantor {
namespace {

/// A second of a run with a position.
struct Fix {
    std::int32_t Sample = 0;
    double Feet = 0;   ///< the run's own distance
    double Along = 0;  ///< of its foot on the line
    double Beside = 0;
    double Slack = 0;
};

/// Looks for passes among the fixes of a run.
class PassFinder {
public:
    PassFinder(const RunRecord& run, const Corridor& corridor, const CorridorLine& line)
        : corridor_(corridor), line_(line), distances_(RunningDistances(run)) {
        std::size_t near = 0;
        for (std::int32_t i = 1; i <= run.SampleValues.LastIndex() && i <= run.RunSamples.LastIndex(); ++i) {
            const auto position = PositionOf(run.RunSamples[i]);
            if (!position) continue;
            const CorridorLine::Foot foot = line.FootOf(*position, near);
            fixes_.push_back({i, static_cast<double>(distances_[i]), foot.Along, foot.Beside, foot.Slack});
        }
    }

    std::vector<Pass> Find() {
        std::vector<Pass> passes;
        for (std::size_t first = 0; first < fixes_.size();) {
            if (!IsOnLine(fixes_[first])) {
                ++first;
                continue;
            }
            const std::size_t last = EndOfStretch(first);
            AddPassesOf(first, last, passes);
            first = last + 1;
        }
        return passes;
    }

private:
    bool IsOnLine(const Fix& fix) const { return fix.Beside <= corridor_.Matching.ToleranceFt + fix.Slack; }

    /// The last fix on the line before the vehicle drives away from it.
    std::size_t EndOfStretch(std::size_t first) const {
        std::size_t last = first;
        for (std::size_t i = first + 1; i < fixes_.size(); ++i) {
            const double away = fixes_[i].Feet - fixes_[last].Feet;
            // Where positions are missing, so may be the speeds; else the way tells a detour.
            const bool isMissing = i == last + 1;
            if (!isMissing && away > DetourFt) return last;
            if (!IsOnLine(fixes_[i])) continue;
            if (isMissing ? !CouldDrive(fixes_[last], fixes_[i])
                          : std::fabs(std::fabs(fixes_[i].Along - fixes_[last].Along) - away) > TurnFt)
                return last;
            last = i;
        }
        return last;
    }

    static bool CouldDrive(const Fix& from, const Fix& to) {
        constexpr double FastestFeetASecond = 150;
        constexpr double Wandering = 200;
        return std::fabs(to.Along - from.Along) <= Wandering + FastestFeetASecond * (to.Sample - from.Sample);
    }

    /// Parts a stretch where the vehicle turns.
    void AddPassesOf(std::size_t first, std::size_t last, std::vector<Pass>& passes) const {
        std::size_t low = first;
        std::size_t high = first;
        std::size_t begin = first;
        int way = 0;
        for (std::size_t i = first; i <= last; ++i) {
            if (fixes_[i].Along < fixes_[low].Along) low = i;
            if (fixes_[i].Along > fixes_[high].Along) high = i;
            const bool hasRisen = fixes_[i].Along - fixes_[low].Along > TurnFt;
            const bool hasFallen = fixes_[high].Along - fixes_[i].Along > TurnFt;
            if (way <= 0 && hasRisen) {
                if (way < 0) AddPass(Way::Back, begin, low, passes);
                begin = low;
                way = 1;
                high = i;
            } else if (way >= 0 && hasFallen) {
                if (way > 0) AddPass(Way::Forward, begin, high, passes);
                begin = high;
                way = -1;
                low = i;
            }
        }
        if (way != 0) AddPass(way > 0 ? Way::Forward : Way::Back, begin, last, passes);
    }

    void AddPass(Way way, std::size_t first, std::size_t last, std::vector<Pass>& passes) const {
        Pass pass;
        pass.Along = way;
        pass.Nodes.resize(corridor_.Nodes.size());
        for (std::size_t node = 0; node < corridor_.Nodes.size(); ++node)
            if (const auto& along = line_.Nodes()[node]) pass.Nodes[node] = PassageOf(*along, way, first, last);
        if (KnownNodes(pass.Nodes) < 2) return;
        const std::int32_t notBefore = passes.empty() ? 1 : passes.back().Last + 1;
        pass.First = std::max(FirstSample(pass, first), notBefore);
        pass.Last = LastSample(pass, last);
        passes.push_back(std::move(pass));
    }

    /// The last time that the vehicle comes over a place on the line: one that waits at it wanders over it before.
    NodePassage PassageOf(double along, Way way, std::size_t first, std::size_t last) const {
        const double sign = way == Way::Forward ? 1 : -1;
        for (std::size_t i = last; i > first; --i) {
            const Fix& before = fixes_[i - 1];
            const Fix& after = fixes_[i];
            if (!(sign * before.Along < sign * along && sign * along <= sign * after.Along)) continue;
            const double part = (along - before.Along) / (after.Along - before.Along);
            NodePassage passage;
            passage.Feet = before.Feet + part * (after.Feet - before.Feet);
            passage.Residual = before.Beside + part * (after.Beside - before.Beside);
            passage.Sample = SampleAt(passage.Feet, before.Sample + 1, after.Sample);
            constexpr std::int32_t LongestStep = 10;
            if (*passage.Residual > corridor_.Matching.ToleranceFt)
                passage.Source = MatchSource::None;
            else
                passage.Source =
                    after.Sample - before.Sample > LongestStep ? MatchSource::Distance : MatchSource::Position;
            return passage;
        }
        return {};
    }

    /// The first sample of some that goes as far.
    std::int32_t SampleAt(double feet, std::int32_t from, std::int32_t to) const {
        std::int32_t sample = from;
        while (sample < to && distances_[sample] < feet) ++sample;
        return sample;
    }

    std::int32_t FirstSample(const Pass& pass, std::size_t first) const {
        const auto outermost = Outermost(pass, true);
        const double feet =
            outermost.Feet - corridor_.Nodes[outermost.Node].Around.UpstreamFt - corridor_.Matching.LeadFt;
        const std::int32_t limit = outermost.IsEnd ? TurnBefore(pass.Along, first) : fixes_[first].Sample;
        std::int32_t sample = fixes_[first].Sample;
        while (sample > 1 && distances_[sample - 1] > feet) --sample;
        while (sample < outermost.Sample && distances_[sample] <= feet) ++sample;
        return std::clamp(sample, std::min(limit, outermost.Sample), outermost.Sample);
    }

    std::int32_t LastSample(const Pass& pass, std::size_t last) const {
        // The last sample of a run is none on which a boundary is found.
        constexpr std::int32_t Behind = 2;
        const auto outermost = Outermost(pass, false);
        const double feet = outermost.Feet + corridor_.Nodes[outermost.Node].Around.DownstreamFt + TailFt;
        const std::int32_t limit = outermost.IsEnd ? TurnAfter(pass.Along, last) : fixes_[last].Sample;
        std::int32_t sample = outermost.Sample;
        while (sample < distances_.LastIndex() && distances_[sample] < feet) ++sample;
        return std::min({sample + Behind, limit, distances_.LastIndex()});
    }

    struct End {
        std::size_t Node = 0;
        std::int32_t Sample = 0;
        double Feet = 0;
        bool IsEnd = false;  ///< of the corridor
    };
    /// The first or the last known node of a pass in the order driven.
    End Outermost(const Pass& pass, bool first) const {
        const std::size_t count = pass.Nodes.size();
        for (std::size_t i = 0; i < count; ++i) {
            const std::size_t node = NodeAlong(corridor_, pass.Along, first ? i : count - 1 - i);
            const NodePassage& passage = pass.Nodes[node];
            if (passage.IsKnown()) return {node, passage.Sample, passage.Feet, i == 0};
        }
        return {};
    }

    /// Where the vehicle has turned round before a pass; sample 1 where it has not.
    std::int32_t TurnBefore(Way way, std::size_t first) const {
        const double sign = way == Way::Forward ? 1 : -1;
        std::size_t farthest = first;
        for (std::size_t i = first; i-- > 0;) {
            if (sign * fixes_[i].Along < sign * fixes_[farthest].Along) farthest = i;
            if (sign * (fixes_[i].Along - fixes_[farthest].Along) > TurnFt) return fixes_[farthest].Sample;
        }
        return 1;
    }

    std::int32_t TurnAfter(Way way, std::size_t last) const {
        const double sign = way == Way::Forward ? 1 : -1;
        std::size_t farthest = last;
        for (std::size_t i = last; i < fixes_.size(); ++i) {
            if (sign * fixes_[i].Along > sign * fixes_[farthest].Along) farthest = i;
            if (sign * (fixes_[farthest].Along - fixes_[i].Along) > TurnFt) return fixes_[farthest].Sample;
        }
        return distances_.LastIndex();
    }

    const Corridor& corridor_;
    const CorridorLine& line_;
    OneBased<std::int32_t> distances_;
    std::vector<Fix> fixes_;
};

}  // namespace

const char* WordOf(MatchSource source) {
    switch (source) {
        case MatchSource::Position: return "position";
        case MatchSource::Mark: return "mark";
        case MatchSource::Distance: return "distance";
        case MatchSource::User: return "user";
        case MatchSource::None: break;
    }
    return "none";
}

std::size_t KnownNodes(const std::vector<NodePassage>& nodes) {
    return static_cast<std::size_t>(std::ranges::count_if(nodes, &NodePassage::IsKnown));
}

std::vector<Pass> FindPasses(const RunRecord& run, const Corridor& corridor, const CorridorLine& line) {
    return PassFinder(run, corridor, line).Find();
}

void FlagNodes(RunRecord& run, const std::vector<NodePassage>& nodes, Way along, const Corridor& corridor) {
    for (std::int16_t& value : run.SampleValues) value = static_cast<std::int16_t>(value & ~NodeFlag);
    for (std::string& name : run.Header.SectionName) name.clear();
    constexpr std::size_t Width = 32;
    int number = 0;
    for (std::size_t passed = 0; passed < nodes.size(); ++passed) {
        const std::size_t node = NodeAlong(corridor, along, passed);
        if (!nodes[node].IsKnown() || number >= run.Header.SectionName.LastIndex) continue;
        std::int16_t& value = run.SampleValues[nodes[node].Sample];
        value = static_cast<std::int16_t>(value | NodeFlag);
        run.Header.SectionName[++number] = FirstCharacters(corridor.Nodes[node].Name, Width);
    }
    DecodeEditedRun(run);
}

RunRecord CutPass(const RunRecord& run, const Pass& pass, const Corridor& corridor) {
    RunRecord cut = CutRun(run, pass.First, pass.Last);
    std::vector<NodePassage> nodes = pass.Nodes;
    for (NodePassage& node : nodes)
        if (node.IsKnown()) node.Sample -= pass.First - 1;
    FlagNodes(cut, nodes, pass.Along, corridor);
    const bool isPrimary = cut.Header.NumberOfSections >= 3;
    cut.Header.HeaderWord1 = isPrimary ? -1 : 0;
    cut.Header.HeaderWord2 = isPrimary ? 0 : -1;
    const std::size_t others = cut.Header.Notes.find(';');
    cut.Header.Notes = std::string(DirectionNote) + corridor.Of(pass.Along).Name +
                       (others == std::string::npos ? std::string() : cut.Header.Notes.substr(others));
    return cut;
}

}  // namespace vantor
