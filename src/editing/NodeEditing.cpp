#include "editing/NodeEditing.h"

#include <algorithm>
#include <iterator>

#include "analysis/DelayStatistics.h"
#include "core/Numeric.h"
#include "core/Text.h"

namespace vantor {
namespace {

std::optional<std::int32_t> FlaggedNear(const RunRecord& run, std::int32_t sample) {
    constexpr std::int32_t FarthestProbe = 39;
    const std::int32_t last = run.SampleValues.LastIndex();
    for (std::int32_t away = 0; away <= FarthestProbe; ++away)
        for (const std::int32_t probe : {std::min(sample + away, last), std::max(sample - away, 1)})
            if (HasNode(run.SampleValues[probe])) return probe;
    return std::nullopt;
}

/// Where the next row whose distance is known lies.
std::int32_t FeetAfter(const NodeRows& rows, std::size_t row) {
    while (rows[row].IsInserted) ++row;
    return rows[row].Feet;
}

class NodePlacer {
public:
    NodePlacer(RunRecord& run, const NodeRows& rows, Units units) : run_(run), rows_(rows), units_(units) {}

    std::optional<Refusal> Place() {
        double previous = 0;
        for (std::size_t row = 0; row < rows_.size(); ++row) {
            if (!rows_[row].IsInserted) {
                previous = rows_[row].Feet;
                continue;
            }
            if (auto refusal = PlaceRow(row, previous)) return refusal;
        }
        return std::nullopt;
    }

private:
    /// Flags the row's sample and moves `previous` on to it.
    std::optional<Refusal> PlaceRow(std::size_t row, double& previous) {
        const double next = FeetAfter(rows_, row);
        const auto typed = NumberOfText(rows_[row].TypedDistance);
        const double feet = typed ? units_.FeetOfLength(*typed) : 0;
        if (!typed || feet <= previous || feet >= next)
            return RefusalAt(row, "the distance of an inserted node must be a number between " + Shown(previous) +
                                      " and " + Shown(next) + ",\nthe distances of the nodes beside it.");
        const auto sample = FindNodeSample(run_, feet, NodeSearch::Nearest);
        if (!sample || HasNode(run_.SampleValues[*sample]) || *sample == run_.SampleValues.LastIndex())
            return RefusalAt(row, "the run has no data point of its own at this distance; the nearest one is a node " +
                                      std::string("already.\nA data point is one second of the run."));
        run_.SampleValues[*sample] = static_cast<std::int16_t>(run_.SampleValues[*sample] | NodeFlag);
        previous = feet;
        return std::nullopt;
    }

    Refusal RefusalAt(std::size_t row, const std::string& reason) const {
        return {"Row " + std::to_string(row + 1) + ": " + reason + "\n\nType another distance or delete the row.",
                NodeGrid, static_cast<int>(row)};
    }

    std::string Shown(double feet) const { return units_.LengthText(feet); }

    RunRecord& run_;
    const NodeRows& rows_;
    Units units_;
};

}  // namespace

NodeRows RowsOf(const RunRecord& run) {
    const std::int32_t last = run.SampleValues.LastIndex();
    NodeRows rows(1);
    for (std::int32_t i = 1; i <= last; ++i)
        if (HasNode(run.SampleValues[i])) rows.emplace_back().Sample = i;
    rows.emplace_back().Sample = last;
    const int named = std::min(static_cast<int>(rows.size()), MostNamedNodes);
    for (int node = 0; node < named; ++node)
        rows[static_cast<std::size_t>(node)].Name = TrimRight(run.Header.SectionName[node]);
    MeasureRows(run, rows);
    return rows;
}

void MeasureRows(const RunRecord& run, NodeRows& rows) {
    const OneBased<std::int32_t> distances = RunningDistances(run);
    for (NodeRow& row : rows) row.Feet = row.Sample == 0 ? 0 : distances[row.Sample];
}

std::optional<std::int32_t> FindNodeSample(const RunRecord& run, double feet, NodeSearch search) {
    const OneBased<std::int32_t> distances = RunningDistances(run);
    const auto goesBeyond = [feet](std::int32_t distance) { return distance > feet; };
    const auto found = std::find_if(distances.begin(), distances.end(), goesBeyond);
    if (found == distances.end()) return std::nullopt;
    const auto sample = static_cast<std::int32_t>(found - distances.begin()) + 1;
    if (search == NodeSearch::Flagged) return FlaggedNear(run, sample);
    return sample == 1 || *found - feet <= feet - distances[sample - 1] ? sample : sample - 1;
}

void ReverseNames(NodeRows& rows) {
    const std::size_t named = std::min(rows.size(), static_cast<std::size_t>(MostNamedNodes));
    for (std::size_t top = 0; top < named / 2; ++top) std::swap(rows[top].Name, rows[named - 1 - top].Name);
}

std::optional<Refusal> InsertRow(NodeRows& rows, int active) {
    const int count = static_cast<int>(rows.size());
    if (active < 1 || active >= count || count >= MostNamedNodes) return Refusal{};
    NodeRow row;
    row.IsInserted = true;
    rows.insert(rows.begin() + active, row);
    return std::nullopt;
}

std::optional<Refusal> DeleteRow(RunRecord& run, NodeRows& rows, int active) {
    if (active < 1 || active >= static_cast<int>(rows.size()) - 1) return Refusal{};
    const NodeRow row = rows[static_cast<std::size_t>(active)];
    if (!row.IsInserted) {
        const auto found = FindNodeSample(run, row.Feet, NodeSearch::Flagged);
        if (!found) return Refusal{"Could not find section node. Call Technical Support for help."};
        if (!HasNode(run.SampleValues[row.Sample]))
            return Refusal{"Cannot find a node marker to delete near this distance. Call for help."};
        // Of two nodes a moment apart the search may meet the other one first: the highlighted one is meant.
        ClearNode(run, row.Sample);
    }
    rows.erase(rows.begin() + active);
    return std::nullopt;
}

std::optional<Refusal> PlaceNodes(RunRecord& run, const NodeRows& rows, Units units) {
    if (auto refusal = NodePlacer(run, rows, units).Place()) return refusal;
    const int nodes = std::min(static_cast<int>(rows.size()), MostNamedNodes);
    for (int node = 0; node < nodes; ++node) run.Header.SectionName[node] = rows[static_cast<std::size_t>(node)].Name;
    return std::nullopt;
}

void ClearNode(RunRecord& run, std::int32_t sample) {
    run.SampleValues[sample] = static_cast<std::int16_t>(run.SampleValues[sample] & ~NodeFlag);
}

}  // namespace vantor
