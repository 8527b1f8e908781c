#pragma once

#include <span>
#include <string>
#include <vector>

#include "corridor/CorridorIntake.h"
#include "gpsobd/TrackInbox.h"

namespace vantor {

/// What a pass along a corridor is, beside a run.
struct PassFacts {
    Way Along = Way::Forward;
    std::size_t Nodes = 0;  ///< that it passes
    TrackSource Source;
};

/// A pass that a file gives, before anything is written.
struct CorridorTrack {
    InboxTrack Track;  ///< its direction is that of the way; its number is that of the pass in the file
    PassFacts Pass;
};

struct CorridorTracks {
    std::vector<CorridorTrack> Passes;  ///< in the order driven
    std::vector<std::string> Remarks;   ///< each with the name of the file
    std::size_t Known = 0;              ///< passes left out, for the corridor has them
    bool HasColumns = false;            ///< whose meaning can be chosen
};

/// Reads a file of any kind that has tracks and cuts it by the corridor, not by its segments and not where the vehicle
/// stands. Passes that the corridor has from the same file already are left out, which is a remark; so is why the file
/// gives none.
CorridorTracks ReadCorridorTracks(const LogSources& sources, const std::string& path, const Corridor& corridor,
                                  const AppSettings& settings, const Progress& progress = {});

/// The beginning of the names of a corridor's runs, which leaves room for way and number.
std::string RunBaseNameOf(const Corridor& corridor);

/// A pass that is taken, as which run.
struct TakenPass {
    TakenTrack Run;
    PassFacts Pass;
};
/// All passes, for the Study Group `group` below `groupRoot` under the next free names there, "Main St-NB-001". They
/// must outlive what is returned.
std::vector<TakenPass> NamePasses(const FileSystem& files, const Corridor& corridor,
                                  std::span<const CorridorTrack> passes, const std::string& groupRoot,
                                  const std::string& group);
/// Writes passes as runs into the Study Groups beside the file of a corridor, and takes them into that file as it
/// stands now; all of it or nothing. False when it was stopped.
bool TakePassesIntoFile(FileSystem& files, const std::string& path, std::span<const TakenPass> passes, bool areBefore,
                        const Progress& progress = {});

}  // namespace vantor
