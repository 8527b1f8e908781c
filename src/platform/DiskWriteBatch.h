#pragma once

#include <filesystem>
#include <memory>
#include <set>
#include <string>

#include "core/ports/FileSystem.h"
#include "platform/FolderLocks.h"

namespace vantor {

/// The stored path that a name means: the exact one, else the first whose components match without letter case.
/// Components that do not exist stay as they are written.
std::filesystem::path ResolvedPath(const std::string& path);

/// The errors are those of FileSystem::Open.
std::unique_ptr<InputFile> OpenOnDisk(const std::filesystem::path& path);
/// The ordinary file of exactly that name; nothing where there is none or it cannot be opened.
std::unique_ptr<InputFile> OpenExact(const std::string& path);

/// A batch on the disk. Both must outlive it: the folders that it need not clean of what killed programs left, and the
/// locks that the file system holds.
std::unique_ptr<WriteBatch> BeginDiskWrites(std::set<std::string>& cleanedFolders, FolderLocks& locks);

}  // namespace vantor
