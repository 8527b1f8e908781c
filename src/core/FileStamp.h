#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace vantor {

/// What a file held when it was read or written: enough to tell that it has changed since, by whatever program and on
/// whatever disk.
struct FileStamp {
    std::uint64_t Size = 0;  ///< bytes
    std::uint64_t Hash = 0;  ///< ContentHash of all of them

    bool operator==(const FileStamp&) const = default;
};
FileStamp StampOf(std::span<const std::byte> bytes);

}  // namespace vantor
