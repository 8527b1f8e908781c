#pragma once

#include <cstddef>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <system_error>

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
    std::time_t Changed = 0;  ///< its contents or, where the system tells of it, its names
};
/// Nothing when the path does not exist; an error when the system cannot tell.
std::optional<NativeInfo> InfoOfNative(const std::filesystem::path& path);

struct CloseFile {
    void operator()(std::FILE* file) const { std::fclose(file); }
};
using NativeFile = std::unique_ptr<std::FILE, CloseFile>;

/// The run-time error of a system error number, naming the path: 53, 58, 61, 70, 76 or 75. `remedy` follows on a line
/// of its own.
[[noreturn]] void ThrowFileError(int systemError, const std::filesystem::path& path, const std::string& remedy = {});
[[noreturn]] void ThrowFileError(std::error_code failure, const std::filesystem::path& path,
                                 const std::string& remedy = {});

/// Of a name in a listing: where the system cannot tell, something that is neither file nor folder, so that it does not
/// hide the others. Who reads it gets the error.
std::optional<NativeInfo> InfoOfListed(const std::filesystem::path& path);
NativeFile OpenNative(const std::filesystem::path& path, const char* mode);
/// An ordinary file, no folder, pipe or device, and its bytes.
struct OrdinaryFile {
    NativeFile File;
    std::uint64_t Size = 0;
};
/// The one of that UTF-8 path, open for reading; no file where there is none or it cannot be opened.
OrdinaryFile OpenOrdinary(const std::string& path);
/// Of a file that is open.
NativeInfo InfoOfNative(const NativeFile& file, const std::filesystem::path& path);
/// Gives the names in a folder, in no order, as UTF-8, until `goesOn` is false of one.
std::error_code ForEachName(const std::filesystem::path& folder,
                            const std::function<bool(const std::string& name)>& goesOn);
void WriteNative(const NativeFile& file, std::span<const std::byte> bytes, const std::filesystem::path& path);
void SeekNative(const NativeFile& file, std::size_t offset, const std::filesystem::path& path);
/// Copies what is left of `source` to the end of `target`.
void CopyRest(const NativeFile& source, const NativeFile& target, const std::filesystem::path& path);

/// Waits until a file's data are on the disk.
void FlushToDisk(const std::filesystem::path& path);
/// Waits until a folder's names are on the disk, as far as the system can. No error: the names are as the program was
/// told, only a power failure may bring the old ones back.
void FlushFolder(const std::filesystem::path& folder);
/// Renames over an existing file in one step.
void RenameOver(const std::filesystem::path& from, const std::filesystem::path& to);
std::error_code RenamedOver(const std::filesystem::path& from, const std::filesystem::path& to);
/// Renames to a name that no file has: in one step where the system can. Error 58, `file_exists`, when one has it.
void RenameToNew(const std::filesystem::path& from, const std::filesystem::path& to);
std::error_code RenamedToNew(const std::filesystem::path& from, const std::filesystem::path& to);

/// A name for a file or folder that is there for a moment, hidden from listings by extension. It tells the computer and
/// the process; one like it may be left over from an earlier process of the same number.
std::string TemporaryName();
/// A new file open for writing.
struct TemporaryFile {
    std::filesystem::path Path;
    NativeFile File;
};
TemporaryFile MakeTemporaryFile(const std::filesystem::path& folder);
/// Removes the temporary files and folders of programs that were killed: those of this computer whose process does not
/// live any more, and those of others that are a day old, for a program that runs there may still be at work on them.
/// Errors are left for a later time.
void RemoveLeftovers(const std::filesystem::path& folder);
/// The same in the folder where the system keeps what is there for a moment.
void RemoveExportFolders();

/// The file of the running program.
std::filesystem::path ExecutablePath();
bool IsWritableFolder(const std::filesystem::path& folder);
Date LocalDate(std::time_t time);

}  // namespace vantor
