#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "core/ports/FileSystem.h"

namespace vantor {

// Dumps that were cancelled lie for a week in a folder of their own below the field data folder, where no list of
// counter files finds them.

struct KeptDump {
    std::string Path;
    std::string Name;         ///< of its counter file, without extension
    Date At;                  ///< when the last of it arrived
    std::uint64_t Bytes = 0;  ///< at least 1
};

/// Takes the file of a cancelled dump out of the list of counter files and keeps it.
void KeepDump(FileSystem& files, const std::string& counterFile);
/// The dump that was cancelled last; nothing where none is kept.
std::optional<KeptDump> LastKeptDump(const FileSystem& files, const std::string& fieldDataFolder);
/// Makes a kept dump a counter file of the field data folder again and returns its name, which is a new one where its
/// own has been taken since.
std::string BringBack(FileSystem& files, const std::string& fieldDataFolder, const KeptDump& dump);
/// Deletes the dumps that were cancelled more than a week ago. Those that cannot be deleted now are another time.
void DeleteOldDumps(FileSystem& files, const std::string& fieldDataFolder, Date now);

/// "1 byte", "12345 bytes".
std::string CountOfBytes(std::uint64_t count);

}  // namespace vantor
