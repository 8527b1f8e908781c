#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "core/RunRecords.h"
#include "plots/ProfileGeometry.h"

namespace vantor {

/// Nodes of a run that can have a name.
inline constexpr int MostNamedNodes = static_cast<int>(decltype(RunHeader::SectionName)::Count);
/// Characters that a run keeps of a node's name and of a key's label.
inline constexpr std::size_t NodeNameWidth = 32;

/// The grid of the nodes, as a field that a refusal is about.
inline constexpr const char* NodeGrid = "vaSectionNames";

/// Why nothing was done: the text to show, empty for a beep, and the control to go to, of the grid the distance in a
/// row, which count from 0.
struct Refusal {
    std::string Text;
    std::string Field = {};
    int Row = 0;
};

/// A node of a run, or one that is to become a node.
struct NodeRow {
    std::int32_t Sample = 0;  ///< that ends at the node; 0 for the start of the run and for an inserted row
    std::int32_t Feet = 0;    ///< from the start of the run, the distances of its samples added up
    std::string Name;
    bool IsInserted = false;
    std::string TypedDistance;  ///< of an inserted row, in the shown unit

    bool operator==(const NodeRow&) const = default;
};
/// The start of the run, its flagged samples and its end.
using NodeRows = std::vector<NodeRow>;

NodeRows RowsOf(const RunRecord& run);
/// Gives the rows their distances anew, after a change of the calibration.
void MeasureRows(const RunRecord& run, NodeRows& rows);

/// Nearest: the sample that ends nearest to a distance. Flagged: a node near it.
enum class NodeSearch { Nearest, Flagged };
/// Walks to the first sample whose running distance exceeds `feet`. Nearest: that sample or the one before it, that
/// sample where both are as near. Flagged: that sample, else the first node among its neighbours, + 1, - 1, + 2 and so
/// on up to 39 away. Nothing when no sample goes so far or there is no such node.
std::optional<std::int32_t> FindNodeSample(const RunRecord& run, double feet, NodeSearch search);

/// The names of the rows from bottom to top, distances as they were. Rows that can have no name keep none.
void ReverseNames(NodeRows& rows);
/// Inserts a row before row `active`. Refuses with a beep before the start of the run, and when there are as many nodes
/// as can have names.
std::optional<Refusal> InsertRow(NodeRows& rows, int active);
/// Deletes row `active` and clears its node flag; an inserted row has none. Refuses with a beep for the first and the
/// last row.
std::optional<Refusal> DeleteRow(RunRecord& run, NodeRows& rows, int active);

/// Flags the sample of every inserted row and puts the rows' names into the header, node by node. A refusal leaves the
/// run half done: give a copy.
std::optional<Refusal> PlaceNodes(RunRecord& run, const NodeRows& rows, Units units);

void ClearNode(RunRecord& run, std::int32_t sample);

}  // namespace vantor
