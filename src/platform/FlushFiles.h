#pragma once

#include <cstddef>
#include <filesystem>
#include <memory>
#include <vector>

#include "core/Progress.h"

namespace vantor {

struct FileToFlush {
    std::filesystem::path::string_type Path;
    std::filesystem::path::string_type Target;  ///< the file that errors name
};

/// Waits until all of these files are on the disk, and lets the disk write many of them in one go where the system can.
/// False when it was stopped.
bool FlushFiles(const std::vector<FileToFlush>& files, const Progress& progress);

/// Lets the disk begin to write the files of a large batch while further ones are made. Only a beginning: what counts
/// is FlushFiles.
class EarlyFlush {
public:
    EarlyFlush();
    ~EarlyFlush();
    EarlyFlush(const EarlyFlush&) = delete;
    EarlyFlush& operator=(const EarlyFlush&) = delete;

    /// A file that is written and closed.
    void Add(const std::filesystem::path::string_type& path);

private:
    struct Worker;
    std::size_t added_ = 0;
    std::unique_ptr<Worker> worker_;
};

}  // namespace vantor
