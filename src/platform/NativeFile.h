#pragma once

#include <cstddef>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <string>

#include "core/Date.h"

namespace vantor {

// The few calls in which operating systems differ. Paths outside this folder are UTF-8 texts.

std::filesystem::path NativePath(const std::string& utf8);
std::string PortablePath(const std::filesystem::path& path);

/// What the system tells of a path, links followed.
struct NativeInfo {
    bool IsFolder = false;
    bool IsFile = false;  ///< an ordinary file, no pipe or device
    std::uint64_t Size = 0;
    std::time_t Modified = 0;
};
/// Nothing when the path does not exist.
std::optional<NativeInfo> InfoOfNative(const std::filesystem::path& path);

struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using NativeFile = std::unique_ptr<std::FILE, CloseFile>;

/// The run-time error of a system error number, naming the path: 53, 58, 61, 70, 76 or 75.
[[noreturn]] void ThrowFileError(int systemError, const std::filesystem::path& path);

NativeFile OpenNative(const std::filesystem::path& path, const char* mode);
void WriteNative(const NativeFile& file, std::span<const std::byte> bytes, const std::filesystem::path& path);
void SeekNative(const NativeFile& file, std::size_t offset, const std::filesystem::path& path);
/// Copies what is left of `source` to the end of `target`.
void CopyRest(const NativeFile& source, const NativeFile& target, const std::filesystem::path& path);

/// Hands a file's data to the disk without waiting, where the system can.
void StartFlush(const NativeFile& file);
/// Waits until a file's data, or a folder's names, are on the disk.
void FlushToDisk(const std::filesystem::path& path);
/// Renames over an existing file in one step.
void ReplaceFile(const std::filesystem::path& from, const std::filesystem::path& to);

/// A name that no other writer uses, hidden from listings by extension.
std::string TemporaryName();
bool IsWritableFolder(const std::filesystem::path& folder);
Date LocalDate(std::time_t time);

}  // namespace vantor
