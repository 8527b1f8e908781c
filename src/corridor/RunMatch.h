#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "corridor/Passes.h"

namespace vantor {

/// Where a run of a corridor passes its nodes.
struct RunMatch {
    Way Along = Way::Forward;
    std::vector<NodePassage> Nodes;    ///< by the corridor's nodes
    std::vector<std::string> Remarks;  ///< what is to be known of it, sentences
};

/// By positions where the run has them, else by its marks; what the user has set holds against both; nodes between two
/// known ones by their distances. `along` nothing: the way that fits.
RunMatch MatchRun(const RunRecord& run, const Corridor& corridor, const CorridorLine* line, std::optional<Way> along,
                  std::span<const SetNode> set = {});

/// For each node the index of the mark that belongs to it, or nothing: both in the order driven, feet from wherever
/// each counts. The sum of the squared differences of their distances is the least, where a node or a mark that is left
/// out costs as much as LeftOutFt of difference.
struct MarksMatched {
    std::vector<std::optional<std::size_t>> MarkOf;  ///< by node
    double Cost = 0;                                 ///< square feet
};
MarksMatched MatchMarks(std::span<const double> nodes, std::span<const double> marks);
inline constexpr double LeftOutFt = 200;

}  // namespace vantor
