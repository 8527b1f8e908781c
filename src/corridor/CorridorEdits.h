#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "core/Position.h"
#include "corridor/Corridor.h"
#include "corridor/CorridorNodes.h"

namespace vantor {

// Changes of a corridor's nodes. What its runs hold by node goes along with them.

/// Puts a node in front of the one at that place, from 0, or at the end. Distances are measured anew.
void InsertNode(Corridor& corridor, std::size_t at, CorridorNode node);
/// Puts a node without a name of its own where the line passes it; its place among the nodes.
std::size_t InsertNodeAt(Corridor& corridor, const Position& position);
void RemoveNode(Corridor& corridor, std::size_t node);
/// Exchanges a node with the next one. Of nodes without positions the distances stay where they are.
void SwapNodes(Corridor& corridor, std::size_t first);

/// Other nodes in place of all; what the runs hold of a node stays with one of the same name.
void ReplaceNodes(Corridor& corridor, FoundNodes nodes);

/// Distances along the line, from the first node, whatever was set.
void Remeasure(Corridor& corridor);
/// True where it follows from positions, so that it cannot be set.
bool HasMeasuredDistance(const Corridor& corridor, std::size_t node);

/// A band of a run's own; nothing: the corridor's.
void SetOwnBand(CorridorRun& run, std::size_t node, const std::optional<Band>& band);
std::optional<Band> OwnBandOf(const CorridorRun& run, std::size_t node);
/// The second at which a run passes a node, 0 for one that it does not; nothing: as it is matched.
void SetPassage(CorridorRun& run, std::size_t node, std::optional<std::int32_t> sample);

/// Takes runs out, given by their indexes.
void RemoveRuns(Corridor& corridor, const std::vector<std::size_t>& runs);

}  // namespace vantor
