#pragma once

#include <span>
#include <string>
#include <vector>

#include "corridor/CorridorIntake.h"
#include "gpsobd/TrackInbox.h"

namespace vantor {

/// A pass along a corridor that a file gives, before anything is written.
struct CorridorTrack {
    InboxTrack Track;  ///< its direction is that of the way
    Way Along = Way::Forward;
    TrackSource Source;
};

struct CorridorTracks {
    std::vector<CorridorTrack> Passes;  ///< in the order driven
    std::vector<std::string> Remarks;   ///< each with the name of the file
};

/// Reads a file of any kind that has tracks and cuts it by the corridor, not by its segments and not where the vehicle
/// stands. Passes that the corridor has from the same file already are left out, which is a remark; so is why the file
/// gives none.
CorridorTracks ReadCorridorTracks(const LogSources& sources, const std::string& path, const Corridor& corridor,
                                  const AppSettings& settings, const Progress& progress = {});

/// Writes passes as runs into the Study Group `group` below `groupRoot`, which is made where it is missing, under the
/// next free names "Main St-NB-001", all or none, and takes them into the corridor, which is not written. False when it
/// was stopped.
bool TakePasses(FileSystem& files, Corridor& corridor, std::span<const CorridorTrack> passes,
                const std::string& groupRoot, const std::string& group, bool areBefore, const Progress& progress = {});

}  // namespace vantor
