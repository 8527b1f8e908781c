#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/FileStamp.h"
#include "core/ports/FileSystem.h"
#include "corridor/Corridor.h"

namespace vantor {

/// The file of a corridor in the folder that holds the Study Groups.
std::string CorridorPath(const std::string& root, std::string_view name);
/// The names of the corridors there, in the order of the listing; none where the folder cannot be read.
std::vector<std::string> ListCorridors(const FileSystem& files, const std::string& root);

struct StoredCorridor {
    vantor::Corridor Corridor;
    FileStamp Stamp;  ///< of what was read
};
/// Its name is that of the file. Error 53 for a missing file, 13 for one that is no corridor.
StoredCorridor LoadCorridor(const FileSystem& files, const std::string& path);

struct SavedCorridor {
    FileStamp Stamp;
    std::string Backup;  ///< the path of what another program had written there meanwhile; empty for none
};
/// Adds the writing of the file to a batch, which is to be committed under a lock of its folder. Errors as of
/// SaveCorridor. Nothing is added where the file is so already.
SavedCorridor AddCorridor(WriteBatch& batch, FileSystem& files, const std::string& path, const Corridor& corridor,
                          Expected expected);
/// All or nothing. Error 58 where a new file is expected and one is there; error 13 for a corridor with a ProblemOf.
SavedCorridor SaveCorridor(FileSystem& files, const std::string& path, const Corridor& corridor, Expected expected);

}  // namespace vantor
