#include "core/ports/FileSystem.h"

#include <algorithm>

#include "core/ContentHash.h"

namespace vantor {

std::vector<std::byte> ReadFirstBytes(const FileSystem& files, const std::string& path, std::uint64_t count) {
    const auto file = files.Open(path);
    std::vector<std::byte> bytes(static_cast<std::size_t>(std::min(count, file->Size())));
    bytes.resize(file->Read(bytes));
    return bytes;
}

std::vector<std::byte> ReadWholeFile(const FileSystem& files, const std::string& path) {
    const auto file = files.Open(path);
    std::vector<std::byte> bytes(static_cast<std::size_t>(file->Size()));
    bytes.resize(file->Read(bytes));
    return bytes;
}

FileStamp StampOf(std::span<const std::byte> bytes) { return {bytes.size(), ContentHash(bytes)}; }

Expected AsItStands(const FileSystem& files, const std::string& path) {
    const auto info = files.Find(path);
    return info && !info->IsFolder ? Expected::Unchanged(StampOf(ReadWholeFile(files, path))) : Expected::Nothing();
}

void WriteFile(FileSystem& files, const std::string& path, std::span<const std::byte> bytes, const Expected& expected,
               OldTail tail) {
    const auto batch = files.BeginWrites();
    batch->Add(path, bytes, expected, tail);
    batch->Commit();
}

}  // namespace vantor
