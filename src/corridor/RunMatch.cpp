#include "corridor/RunMatch.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "analysis/DelayStatistics.h"
#include "core/Counted.h"
#include "core/Numeric.h"
#include "core/RunDirection.h"
#include "core/Text.h"

namespace vantor {
namespace {

/// Where the nodes of a run's samples lie.
struct Marks {
    std::vector<std::int32_t> Samples;
    std::vector<double> Feet;
};

Marks MarksOf(const RunRecord& run, const OneBased<std::int32_t>& distances) {
    Marks marks;
    for (std::int32_t i = 1; i <= run.SampleValues.LastIndex(); ++i) {
        if (!HasNode(run.SampleValues[i])) continue;
        marks.Samples.push_back(i);
        marks.Feet.push_back(distances[i]);
    }
    return marks;
}

/// The nodes' distances in the order driven, from the first one driven past.
std::vector<double> DistancesAlong(const Corridor& corridor, Way way) {
    std::vector<double> distances;
    if (corridor.Nodes.empty()) return distances;
    const double last = corridor.Nodes.back().DistanceFt;
    for (std::size_t i = 0; i < corridor.Nodes.size(); ++i) {
        const double feet = corridor.Nodes[NodeAlong(corridor, way, i)].DistanceFt;
        distances.push_back(way == Way::Forward ? feet : last - feet);
    }
    return distances;
}

/// The way that the notes of a run tell.
std::optional<Way> WayByNotes(const RunRecord& run, const Corridor& corridor) {
    const std::string direction = DirectionFromLog(run.Header.Notes);
    for (const Way way : BothWays)
        if (!direction.empty() && EqualIgnoringCase(direction, corridor.Of(way).Name)) return way;
    return std::nullopt;
}

/// Matches one run.
class RunMatcher {
public:
    RunMatcher(const RunRecord& run, const Corridor& corridor, const CorridorLine* line)
        : run_(run), corridor_(corridor), line_(line), distances_(RunningDistances(run)) {}

    RunMatch Match(std::optional<Way> along, std::span<const SetNode> set) {
        match_.Nodes.resize(corridor_.Nodes.size());
        if (!MatchPositions(along)) MatchMarksOf(along);
        TakeSetNodes(set);
        FillBetween();
        return std::move(match_);
    }

private:
    bool HasPositions() const {
        return std::ranges::any_of(run_.RunSamples,
                                   [](const RunSample& sample) { return PositionOf(sample).has_value(); });
    }

    bool MatchPositions(std::optional<Way> along) {
        if (line_ == nullptr || !HasPositions()) return false;
        std::vector<Pass> passes = FindPasses(run_, corridor_, *line_);
        if (along) {
            const std::size_t all = passes.size();
            std::erase_if(passes, [&](const Pass& pass) { return pass.Along != *along; });
            if (passes.empty() && all > 0) Remark("It drives the other way.");
        }
        match_.Along = along.value_or(Way::Forward);
        if (passes.empty()) {
            Remark("Its positions do not go along the corridor.");
            return true;
        }
        const auto known = [](const Pass& pass) { return KnownNodes(pass.Nodes); };
        Pass& pass = *std::ranges::max_element(passes, {}, known);
        if (passes.size() > 1)
            Remark("It drives along the corridor " + Counted(passes.size(), "time") +
                   "; the one past the most nodes is taken. Cut it into runs by importing its track.");
        match_.Along = pass.Along;
        match_.Nodes = std::move(pass.Nodes);
        return true;
    }

    void MatchMarksOf(std::optional<Way> along) {
        const Marks marks = MarksOf(run_, distances_);
        if (!along) along = WayByNotes(run_, corridor_);
        MarksMatched best = MatchMarks(DistancesAlong(corridor_, along.value_or(Way::Forward)), marks.Feet);
        match_.Along = along.value_or(Way::Forward);
        if (!along) {
            MarksMatched back = MatchMarks(DistancesAlong(corridor_, Way::Back), marks.Feet);
            if (back.Cost < best.Cost) {
                match_.Along = Way::Back;
                std::swap(best, back);
            }
            // Of a corridor that looks alike from both ends the marks cannot tell.
            if (back.Cost < 4 * best.Cost + LeftOutFt * LeftOutFt / 4)
                Remark("Its marks fit both ways: say which one it drives.");
        }
        TakeMarks(marks, best);
    }

    void TakeMarks(const Marks& marks, const MarksMatched& matched) {
        const std::vector<double> nodes = DistancesAlong(corridor_, match_.Along);
        std::vector<bool> isTaken(marks.Samples.size());
        double shift = 0;
        int taken = 0;
        for (std::size_t i = 0; i < nodes.size(); ++i) {
            const auto& mark = matched.MarkOf[i];
            if (!mark) continue;
            isTaken[*mark] = true;
            shift += marks.Feet[*mark] - nodes[i];
            ++taken;
        }
        if (taken > 0) shift /= taken;
        for (std::size_t i = 0; i < nodes.size(); ++i) {
            const auto& mark = matched.MarkOf[i];
            if (!mark) continue;
            const double residual = marks.Feet[*mark] - nodes[i] - shift;
            constexpr double FarOff = 150;
            if (std::fabs(residual) > FarOff)
                Remark("The mark at " + corridor_.Nodes[NodeAlong(corridor_, match_.Along, i)].Name + " lies " +
                       std::to_string(Round32(std::fabs(residual))) + " ft " + (residual > 0 ? "behind" : "before") +
                       " where the other marks put it.");
            match_.Nodes[NodeAlong(corridor_, match_.Along, i)] = {MatchSource::Mark, marks.Samples[*mark],
                                                                   marks.Feet[*mark], residual};
        }
        if (marks.Samples.empty()) Remark("It has no positions and no marks.");
        const auto left = static_cast<std::size_t>(std::ranges::count(isTaken, false));
        if (left > 0) Remark(Counted(left, "mark") + (left == 1 ? " belongs" : " belong") + " to no node.");
    }

    void TakeSetNodes(std::span<const SetNode> set) {
        for (const SetNode& node : set) {
            if (node.Node >= match_.Nodes.size()) continue;
            NodePassage& passage = match_.Nodes[node.Node];
            passage = {};
            isSet_.resize(match_.Nodes.size());
            isSet_[node.Node] = true;
            if (node.Sample < 1 || node.Sample > distances_.LastIndex()) continue;
            passage = {MatchSource::User, node.Sample, static_cast<double>(distances_[node.Sample]), {}};
        }
    }

    /// Nodes between two known ones that nothing else tells of.
    void FillBetween() {
        std::optional<std::size_t> before;
        for (std::size_t i = 0; i < match_.Nodes.size(); ++i) {
            const std::size_t node = NodeAlong(corridor_, match_.Along, i);
            if (!match_.Nodes[node].IsKnown()) continue;
            if (before)
                for (std::size_t between = *before + 1; between < i; ++between) FillNode(*before, between, i);
            before = i;
        }
    }

    void FillNode(std::size_t before, std::size_t between, std::size_t after) {
        const auto at = [&](std::size_t i) -> std::size_t { return NodeAlong(corridor_, match_.Along, i); };
        NodePassage& passage = match_.Nodes[at(between)];
        // A node that the positions miss, or the user has taken out, is not passed.
        if (passage.Residual || (!isSet_.empty() && isSet_[at(between)])) return;
        const NodePassage& from = match_.Nodes[at(before)];
        const NodePassage& to = match_.Nodes[at(after)];
        const double whole = corridor_.Nodes[at(after)].DistanceFt - corridor_.Nodes[at(before)].DistanceFt;
        const double part = (corridor_.Nodes[at(between)].DistanceFt - corridor_.Nodes[at(before)].DistanceFt) / whole;
        passage.Source = MatchSource::Distance;
        passage.Feet = from.Feet + part * (to.Feet - from.Feet);
        passage.Sample = from.Sample + 1;
        while (passage.Sample < to.Sample && distances_[passage.Sample] < passage.Feet) ++passage.Sample;
    }

    void Remark(std::string remark) { match_.Remarks.push_back(std::move(remark)); }

    const RunRecord& run_;
    const Corridor& corridor_;
    const CorridorLine* line_;
    OneBased<std::int32_t> distances_;
    RunMatch match_;
    std::vector<bool> isSet_;
};

}  // namespace

RunMatch MatchRun(const RunRecord& run, const Corridor& corridor, const CorridorLine* line, std::optional<Way> along,
                  std::span<const SetNode> set) {
    return RunMatcher(run, corridor, line).Match(along, set);
}

MarksMatched MatchMarks(std::span<const double> nodes, std::span<const double> marks) {
    constexpr double LeftOut = LeftOutFt * LeftOutFt;
    const std::size_t width = marks.size();
    struct Cell {
        double Cost = 0;
        std::optional<std::size_t> NodeBefore;
        std::size_t MarkBefore = 0;
    };
    // The least cost of all up to a node and the mark that is matched with it.
    std::vector<Cell> cells(nodes.size() * width);
    const auto leftOut = [](std::size_t count) { return LeftOut * static_cast<double>(count); };
    MarksMatched best{std::vector<std::optional<std::size_t>>(nodes.size()), leftOut(nodes.size() + width)};
    std::optional<std::size_t> last;
    for (std::size_t node = 0; node < nodes.size(); ++node)
        for (std::size_t mark = 0; mark < width; ++mark) {
            Cell& cell = cells[node * width + mark];
            cell.Cost = leftOut(node + mark);
            for (std::size_t from = 0; from < node; ++from)
                for (std::size_t fromMark = 0; fromMark < mark; ++fromMark) {
                    const double difference = (marks[mark] - marks[fromMark]) - (nodes[node] - nodes[from]);
                    const double cost = cells[from * width + fromMark].Cost + difference * difference +
                                        leftOut((node - from - 1) + (mark - fromMark - 1));
                    if (cost < cell.Cost) cell = {cost, from, fromMark};
                }
            const double whole = cell.Cost + leftOut((nodes.size() - node - 1) + (width - mark - 1));
            if (whole < best.Cost) {
                best.Cost = whole;
                last = node * width + mark;
            }
        }
    while (last) {
        const Cell& cell = cells[*last];
        best.MarkOf[*last / width] = *last % width;
        if (!cell.NodeBefore) break;
        last = *cell.NodeBefore * width + cell.MarkBefore;
    }
    return best;
}

}  // namespace vantor
