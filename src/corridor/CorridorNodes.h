#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/Position.h"
#include "core/RunRecords.h"
#include "core/ports/FileSystem.h"
#include "corridor/Corridor.h"

namespace vantor {

/// Nodes that a corridor can be made of, in the order of their source.
struct FoundNodes {
    std::vector<CorridorNode> Nodes;
    std::vector<Position> Alignment;
    std::vector<std::string> Remarks;  ///< what is to be known of them, sentences
};

/// Nodes of a file by what it holds: GeoJSON or CSV. Error 13 with the reason, the line and the remedy.
FoundNodes ReadNodes(const FileSystem& files, const std::string& path);

/// A line a node, with or without a head: name, latitude and longitude in degrees or a distance in feet, and the
/// control and the speed limit where they are there. Its delimiter is a comma, semicolon, tab or bar; numbers may have
/// a decimal comma where it is no comma.
FoundNodes NodesFromCsv(std::span<const std::byte> file, const std::string& path);

/// The points of GeoJSON; the first line is the alignment.
FoundNodes NodesFromGeoJson(std::span<const std::byte> file, const std::string& path);

/// The nodes that are flagged in a run which drove that way, with its names; the way that it drove between the first
/// and the last is the alignment, where it has positions.
FoundNodes NodesFromRun(const RunRecord& run, Way along);

/// Gives a corridor these nodes and their line, which is turned where it was drawn against their order, and measures
/// them.
void PutNodes(Corridor& corridor, FoundNodes nodes);

/// One of NodeControlWords, letter case ignored.
std::optional<NodeControl> ControlOfText(std::string_view text);

}  // namespace vantor
