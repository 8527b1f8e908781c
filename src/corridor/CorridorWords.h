#pragma once

#include <string>
#include <vector>

#include "corridor/CorridorResults.h"

namespace vantor {

// What several tables say of the same.

/// "Oak St to Elm Ave".
inline std::string SectionName(const Corridor& corridor, const SectionFigures& section) {
    return corridor.Nodes[section.From].Name + " to " + corridor.Nodes[section.To].Name;
}

/// Why there is no delay, its warnings, and what is special about its band.
inline std::vector<std::string> RemarksOf(const NodeDelay& delay) {
    std::vector<std::string> remarks = delay.Row.Warnings;
    if (!delay.HasFigure()) remarks.insert(remarks.begin(), delay.Problem);
    if (delay.Measured.IsOwn) remarks.emplace_back("its own band");
    if (delay.Measured.IsCut) remarks.emplace_back("band cut at its neighbour's");
    return remarks;
}

}  // namespace vantor
