#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "corridor/Corridor.h"

namespace vantor {

/// A run holds the names of 191 nodes, the last of them of its end, and two may be its own.
inline constexpr std::size_t MostNodes = 188;
inline constexpr std::size_t MostLinePoints = 20000;
inline constexpr std::size_t CorridorNameWidth = 64;  ///< characters of names of nodes, ways and periods

/// Why a corridor can be neither written nor read, as sentences with the place and the remedy; empty where it can. What
/// is read has none; what is edited is asked before it is kept.
std::string ProblemOf(const Corridor& corridor);

/// What keeps a corridor from having this name: it is that of its file. Empty where nothing does.
std::string CorridorNameProblem(std::string_view name);

}  // namespace vantor
