#pragma once

#include <span>
#include <string>
#include <vector>

#include "core/ports/FileSystem.h"

namespace vantor {

/// The name under which the file at `path` is kept when another takes its place: path + ".bak", then ".bak2", ".bak3"
/// and so on, one above the highest that is there. A backup is never replaced.
std::string FreeBackupPath(const FileSystem& files, const std::string& path);

struct KeptFile {
    std::string Backup;  ///< path
    Expected Original;   ///< the file that the backup is a copy of: what may take its place may replace no other
};

/// Adds a copy of the file as it stands under its FreeBackupPath. Error 53 when the file is missing.
KeptFile AddBackup(WriteBatch& batch, const FileSystem& files, const std::string& path);

/// Writes a file whole. One that is there already is kept as a backup, unless it holds these bytes: then it is left
/// alone. False when it was stopped: nothing is written then.
bool WriteKeepingOld(FileSystem& files, const std::string& path, std::span<const std::byte> bytes,
                     const Progress& progress = {});

/// The backups of the file at `path` that exist, the newest number first; of "A.rd2" also the older form "A.bak", last.
std::vector<std::string> BackupsOf(const FileSystem& files, const std::string& path);

}  // namespace vantor
