#pragma once

#include <filesystem>
#include <map>
#include <memory>

#include "core/ports/FileSystem.h"

namespace vantor {

/// The locks that one file system holds. A folder that it has locked is given out again at once.
class FolderLocks {
public:
    /// Waits for other programs; error 70 after some seconds. A folder that cannot be locked where it lies is as one
    /// that nobody has.
    std::shared_ptr<FolderLock> Take(const std::filesystem::path& folder);

private:
    std::map<std::filesystem::path, std::weak_ptr<FolderLock>> held_;
};

}  // namespace vantor
