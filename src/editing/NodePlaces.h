#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "core/Position.h"
#include "core/Progress.h"
#include "core/RunRecords.h"
#include "core/StudyRecords.h"
#include "core/Units.h"
#include "core/ports/FileSystem.h"

namespace vantor {

/// Where a node is to be in all runs.
struct NodePlace {
    double Feet = 0;  ///< from the start of a run
    std::string Name;
    std::optional<Position> At;  ///< of the run that the place was taken from

    bool operator==(const NodePlace&) const = default;
};
/// The places of a run's nodes.
std::vector<NodePlace> PlacesOf(const RunRecord& run);

/// How far a run with positions may pass from a place that has one, feet: half a second's way at 60 mph and the errors
/// of two fixes.
inline constexpr double MostFeetAway = 150;

/// A run whose nodes are at those places, and at no other.
struct PlacedNodes {
    RunRecord Run;
    int ByPosition = 0;  ///< nodes that were set by position; the others by distance
    int ByDistance = 0;
    std::vector<std::string> OutOfReach;  ///< what became of the places without a node, each as a short text
};
/// Each place has its node where the run passes nearest to its position, behind the node before it; where the place or
/// the run has none, in the second that ends nearest to its distance. The names of the run's start and end stay.
PlacedNodes PlaceNodesAt(const RunRecord& run, const std::vector<NodePlace>& places, Units units);

/// What it comes to when a run gets its nodes.
struct NodesPreview {
    int Run = 0;  ///< of the study, from 1
    std::string Name;
    int Now = 0;
    int Then = 0;
    int ByPosition = 0;
    std::vector<std::string> OutOfReach;
    std::string Problem;  ///< why it cannot be; empty where it can
    bool IsSame = false;  ///< its nodes and their names are like that already
};
/// Nothing when it was stopped.
std::vector<NodesPreview> PreviewNodes(const Study& study, const std::vector<NodePlace>& places,
                                       const FileSystem& files, const std::string& folder, Units units,
                                       const Progress& progress = {});

/// Sets the nodes of those runs in their files, each file so far staying as a numbered backup; all or none. Returns how
/// many files were written; those that have their nodes already are left alone, and nothing is written when it was
/// stopped. The errors are those of reading and writing a run.
int SetNodesOfRuns(FileSystem& files, const std::string& folder, const std::vector<std::string>& runNames,
                   const std::vector<NodePlace>& places, Units units, const Progress& progress = {});

}  // namespace vantor
