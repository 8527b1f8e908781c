#pragma once

#include <cstddef>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

#include "corridor/FiguresFile.h"

namespace vantor {

/// The first place where two trees of figures differ, in the order of the first one.
struct FiguresDifference {
    std::string Place;     ///< "figures, NB, Oak St, control delay, mean"
    std::string Reported;  ///< as JSON; "nothing" where there is no such figure
    std::string Computed;
};
/// Numbers are the same within 1e-9 of their size. `compared` counts the values that were looked at.
std::optional<FiguresDifference> FirstDifference(const nlohmann::ordered_json& reported,
                                                 const nlohmann::ordered_json& computed, std::size_t& compared);

struct Verification {
    std::optional<FiguresDifference> Difference;  ///< nothing where all figures are the same
    std::vector<std::string> Causes;              ///< runs that are not what they were, a sentence each
    std::size_t Compared = 0;                     ///< values
    bool IsWhole = true;                          ///< false where it was stopped
};
/// Computes the figures of a file again from the runs in the Study Groups below `groupRoot`.
Verification VerifyFigures(const FiguresFile& figures, const FileSystem& files, const std::string& groupRoot,
                           const Progress& progress = {});

}  // namespace vantor
