#include "core/ports/FileSystem.h"

#include <algorithm>

namespace vantor {

std::vector<std::byte> ReadFirstBytes(const FileSystem& files, const std::string& path, std::uint64_t count) {
    const auto file = files.Open(path);
    std::vector<std::byte> bytes(static_cast<std::size_t>(std::min(count, file->Size())));
    bytes.resize(file->Read(bytes));
    return bytes;
}

void WriteFile(FileSystem& files, const std::string& path, std::span<const std::byte> bytes, OldTail tail) {
    const auto batch = files.BeginWrites();
    batch->Add(path, bytes, tail);
    batch->Commit();
}

}  // namespace vantor
