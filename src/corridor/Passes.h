#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "core/RunRecords.h"
#include "corridor/Corridor.h"
#include "corridor/CorridorLine.h"

namespace vantor {

/// How it is known where a run passes a node.
enum class MatchSource {
    None,      ///< it is not
    Position,  ///< by the positions of the run
    Mark,      ///< a node that the observer marked
    Distance,  ///< between two nodes that are known, by the distances of the corridor
    User,
};
/// "position", "mark", "distance", "user", "none".
const char* WordOf(MatchSource source);

/// Where a run passes a node.
struct NodePassage {
    MatchSource Source = MatchSource::None;
    std::int32_t Sample = 0;         ///< the second that ends at or behind it, from 1; 0 for none
    double Feet = 0;                 ///< of the run's own distances; means nothing for none
    std::optional<double> Residual;  ///< feet: beside the line, or from where a mark should lie by the other ones

    bool IsKnown() const { return Source != MatchSource::None; }
};

std::size_t KnownNodes(const std::vector<NodePassage>& nodes);

/// A piece of a run that drives along a corridor one way, with what its outermost bands need before and behind.
struct Pass {
    Way Along = Way::Forward;
    std::int32_t First = 0;  ///< sample, from 1
    std::int32_t Last = 0;
    std::vector<NodePassage> Nodes;  ///< by the corridor's nodes; samples of the run that it was found in
};

/// The passes of a run by its positions, in the order driven: each goes past two nodes or more. A turn back, or more
/// than DetourFt driven away from the line, ends one.
std::vector<Pass> FindPasses(const RunRecord& run, const Corridor& corridor, const CorridorLine& line);

inline constexpr double DetourFt = 300;
/// Going back so far is a turn; less is the wandering of a receiver.
inline constexpr double TurnFt = 150;
/// Farther behind the last band than bands are moved to see what hangs on them.
inline constexpr double TailFt = 120;

/// The pass as a run of its own: its nodes flagged and named, all other flags cleared. Error 9 for samples that the run
/// does not have.
RunRecord CutPass(const RunRecord& run, const Pass& pass, const Corridor& corridor);

/// The run with these of its samples as nodes and no others, by the corridor's names in the order driven.
void FlagNodes(RunRecord& run, const std::vector<NodePassage>& nodes, Way along, const Corridor& corridor);

}  // namespace vantor
