#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/Date.h"
#include "core/FileStamp.h"
#include "core/Progress.h"

namespace vantor {

#ifdef _WIN32
inline constexpr char PathSeparator = '\\';
#else
inline constexpr char PathSeparator = '/';
#endif

/// What a directory listing tells of one name.
struct FileInfo {
    std::string Name;  ///< as the file system stores it, without folder
    bool IsFolder = false;
    bool IsHidden = false;
    std::uint64_t Size = 0;  ///< bytes
    Date Modified;           ///< local time
};

/// A file open for reading, from its start.
class InputFile {
public:
    virtual ~InputFile() = default;
    /// Fills `into` as far as the file goes; less than its size only at the end of the file.
    virtual std::size_t Read(std::span<std::byte> into) = 0;
    virtual std::uint64_t Size() const = 0;
};

/// What a write expects to find under its path. There is no default: every write says it.
struct Expected {
    std::optional<FileStamp> File;  ///< nothing: no file is there

    /// A new file. One that has appeared meanwhile is error 58.
    static Expected Nothing() { return {}; }
    /// The file as it was read. One that was changed or taken away since is error 75.
    static Expected Unchanged(const FileStamp& stamp) { return {stamp}; }
};

/// What becomes of the bytes of an older, longer file behind those that are written.
enum class OldTail { Dropped, Kept };

/// Files that are written whole and appear together: each goes to a temporary neighbour, all are flushed to the
/// disk, then renamed over the old ones. A batch that is not committed leaves every old file as it was.
class WriteBatch {
public:
    virtual ~WriteBatch() = default;
    virtual void Add(const std::string& path, std::span<const std::byte> bytes, const Expected& expected,
                     OldTail tail = OldTail::Dropped) = 0;
    /// Once, as the last call. Under a lock of the folders it looks whether each file is what its write expects, then
    /// renames. All or nothing: an error leaves every old file and no new one. Only where the program is
    /// killed in the midst of it, or the disk refuses to take back what was renamed, are some files new and others old;
    /// each is whole even then.
    void Commit() { Commit(Progress()); }
    /// As Commit, and tells its progress. False when it was stopped: every old file is there and no new one then.
    virtual bool Commit(const Progress& progress) = 0;
};

/// A file and the name it gets.
struct FileMove {
    std::string From;
    std::string To;
};

/// A new file that grows in place. What is appended stands in the file at once, for other programs, too; an append that
/// fails may have left a part of its bytes.
class GrowingFile {
public:
    /// Closes the file as it is.
    virtual ~GrowingFile() = default;
    virtual void Append(std::span<const std::byte> bytes) = 0;
    /// Returns when all of the file is on the disk. Nothing can be appended afterwards.
    virtual void Close() = 0;
};

/// A folder that no other Vantor writes to for as long as this lives.
class FolderLock {
public:
    virtual ~FolderLock() = default;
};

/// The disk. Paths are UTF-8; look-ups ignore letter case, an exact match wins over one in another case; new files
/// get exactly the name asked for. Failures are RunTimeErrors that name the path: 53 or 76 missing, 58 exists,
/// 61 disk full, 70 permission denied, 75 anything else. Finding, listing and opening may be called by several threads
/// at once.
class FileSystem {
public:
    virtual ~FileSystem() = default;

    /// Nothing when no file or folder of that name exists. A final separator is ignored.
    virtual std::optional<FileInfo> Find(const std::string& path) const = 0;
    /// The entries of a folder by name, letter case ignored. Error 76 when there is no such folder.
    std::vector<FileInfo> List(const std::string& folder) const { return List(folder, {}); }
    /// Those whose names end in the extension (".rd2"), letter case ignored; the disk is asked about no other.
    virtual std::vector<FileInfo> List(const std::string& folder, std::string_view extension) const = 0;

    virtual std::unique_ptr<InputFile> Open(const std::string& path) const = 0;
    virtual std::unique_ptr<WriteBatch> BeginWrites() = 0;
    /// Error 58 when the file exists.
    virtual std::unique_ptr<GrowingFile> Create(const std::string& path) = 0;

    /// Locks a folder for a reading, a change and a writing that belong together; this file system's own writes go on.
    /// Waits for another program that has it; error 70 after some seconds. A lock ends with its program. It is advice
    /// that other programs need not take, and some file systems know none: what is written is compared all the same.
    virtual std::shared_ptr<FolderLock> Lock(const std::string& folder) = 0;

    /// Gives a file another name, also in another folder or on another disk. Error 58 when `to` exists. After any error
    /// the file is where it was.
    virtual void Rename(const std::string& from, const std::string& to) = 0;
    /// Renames one file after the other as Rename does, all or none, and flushes once. False when it was stopped. After
    /// an error or a stop every file is where it was; only where the program is killed, or the disk refuses to take a
    /// name back, some files have their new names.
    virtual bool RenameAll(const std::vector<FileMove>& moves, const Progress& progress) = 0;
    virtual void Delete(const std::string& path) = 0;  ///< of a file, or of a folder that holds nothing
    /// Makes the folder and those above it; nothing when it exists.
    virtual void CreateFolder(const std::string& path) = 0;

    /// The current working directory, without a final separator.
    virtual std::string CurrentFolder() const = 0;
    /// Where the settings file lies, with a final separator.
    virtual std::string SettingsFolder() const = 0;
    /// The path of a file that comes with the program: in the program folder, beside the executable, or where an
    /// installation keeps such files. Its place in the program folder where it is missing.
    virtual std::string ProgramFile(const std::string& name) const = 0;
};

/// The first `count` bytes of a file, fewer when it is shorter.
std::vector<std::byte> ReadFirstBytes(const FileSystem& files, const std::string& path, std::uint64_t count);

std::vector<std::byte> ReadWholeFile(const FileSystem& files, const std::string& path);

/// To replace what stands under a path at this moment, whatever it is: for files that the user or the command has just
/// named to be replaced, and for those of which the last writer is right.
Expected AsItStands(const FileSystem& files, const std::string& path);

/// Writes one file whole.
void WriteFile(FileSystem& files, const std::string& path, std::span<const std::byte> bytes, const Expected& expected,
               OldTail tail = OldTail::Dropped);

}  // namespace vantor
