#pragma once

#include <string>
#include <string_view>

#include "core/Progress.h"
#include "core/ports/FileSystem.h"
#include "tracks/TrackPoint.h"

namespace vantor {

// GPX 1.0 and 1.1. Elements are known by their names without prefix, whatever their namespace. Speeds are metres a
// second; they and courses stand in the point or anywhere in its extensions.

/// True for a text that opens an element "gpx".
bool LooksLikeGpx(std::string_view head, std::string_view name);

/// The points of all tracks and segments; those of routes are counted and waypoints listed. A point whose position is
/// impossible is broken, one whose receiver had no fix is void. A file that is damaged further on is read up to there
/// (TrackSummary::Damage). Error 13 for a file that is no GPX, and for one with entities of its own, markup that is
/// nested more than 64 deep or of which a piece is longer than 1 MB.
TrackSummary ReadGpx(const FileSystem& files, const std::string& path, const TrackSink& sink,
                     const Progress& progress = {});

/// The same of what another program writes; `path` is what its messages name.
TrackSummary ReadGpx(InputFile& file, const std::string& path, const TrackSink& sink, const Progress& progress = {});

}  // namespace vantor
