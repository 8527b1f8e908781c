#include "platform/DiskWriteBatch.h"

#include <cerrno>
#include <unordered_map>
#include <vector>

#include "core/Paths.h"
#include "core/RunTimeError.h"
#include "core/Text.h"
#include "platform/FlushFiles.h"
#include "platform/NativeFile.h"

namespace vantor {
namespace {

namespace fs = std::filesystem;

/// Errors are those of FileSystem::Open.
OrdinaryFile OpenedForReading(const fs::path& path) {
    NativeFile file = OpenNative(path, "rb");
    const std::uint64_t size = InfoOfNative(file, path).Size;
    return {std::move(file), size};
}

class DiskFile : public InputFile {
public:
    explicit DiskFile(const fs::path& path) : DiskFile(PortablePath(path), OpenedForReading(path)) {}
    DiskFile(std::string path, OrdinaryFile file)
        : path_(std::move(path)), file_(std::move(file.File)), size_(file.Size) {
        // Readers ask for whole pieces: a buffer of the stream would only copy their ends once more.
        std::setvbuf(file_.get(), nullptr, _IONBF, 0);
    }
    std::size_t Read(std::span<std::byte> into) override {
        const std::size_t count = std::fread(into.data(), 1, into.size(), file_.get());
        if (count < into.size() && std::ferror(file_.get()) != 0) ThrowFileError(errno, NativePath(path_));
        return count;
    }
    std::uint64_t Size() const override { return size_; }

private:
    std::string path_;  ///< UTF-8
    NativeFile file_;
    std::uint64_t size_;
};

/// An error with the temporary file is one with the file that was to be written.
template <class Action>
auto NamingTarget(const fs::path& target, Action action) {
    try {
        return action();
    } catch (const RunTimeError& error) {
        throw RunTimeError(error.Number(), PortablePath(target));
    }
}

class DiskWriteBatch : public WriteBatch {
public:
    DiskWriteBatch(std::set<std::string>& cleanedFolders, FolderLocks& locks)
        : cleanedFolders_(cleanedFolders), locks_(locks) {}
    DiskWriteBatch(const DiskWriteBatch&) = delete;
    DiskWriteBatch& operator=(const DiskWriteBatch&) = delete;
    ~DiskWriteBatch() override { RemoveTemporaries(); }

    void Add(const std::string& path, std::span<const std::byte> bytes, const Expected& expected,
             OldTail tail) override {
        const fs::path target = FollowedLink(TargetOf(path));
        const fs::path folder = target.parent_path();
        if (cleanedFolders_.insert(PortablePath(folder)).second) RemoveLeftovers(folder);
        auto [temporary, file] = NamingTarget(target, [&] { return MakeTemporaryFile(folder); });
        std::error_code ignored;
        const fs::file_status old = fs::status(target, ignored);
        pending_.push_back({temporary.native(), target.native(), {}, expected});
        // A file is given whole: a buffer of the stream would only cut off its end.
        std::setvbuf(file.get(), nullptr, _IONBF, 0);
        WriteNative(file, bytes, target);
        if (tail == OldTail::Kept) AppendTail(file, target, bytes.size());
        if (fs::exists(old)) fs::permissions(temporary, old.permissions(), ignored);
        file.reset();
        early_.Add(pending_.back().Temporary);
    }

    bool Commit(const Progress& progress) override {
        constexpr double Flushed = 0.9;
        if (!FlushPending(progress.Part(0, Flushed))) {
            RemoveTemporaries();
            return false;
        }
        const auto locks = LockFolders();
        for (const Pending& file : pending_) CheckExpected(file);
        // One file alone is replaced in one step.
        if (pending_.size() > 1)
            for (Pending& file : pending_)
                if (file.Expects.File) KeepOld(file);
        const bool isDone = PlacePending(progress.Part(Flushed, 1));
        RemoveTemporaries();
        return isDone;
    }

private:
    /// As texts: a path holds each of its components once more, and a batch may write many thousand files.
    struct Pending {
        fs::path::string_type Temporary;
        fs::path::string_type Target;
        fs::path::string_type Old;  ///< a second name of the file replaced, or a copy; empty for a new file
        Expected Expects;
        bool IsPlaced = false;
    };

    /// In one order for all programs, so that no two wait for each other.
    std::vector<std::shared_ptr<FolderLock>> LockFolders() {
        std::set<fs::path> folders;
        for (const Pending& file : pending_) folders.insert(fs::path(file.Target).parent_path());
        std::vector<std::shared_ptr<FolderLock>> locks;
        locks.reserve(folders.size());
        for (const fs::path& folder : folders) locks.push_back(locks_.Take(folder));
        return locks;
    }

    /// That a new file has no other in its way shows when it is placed.
    static void CheckExpected(const Pending& file) {
        if (!file.Expects.File) return;
        const fs::path target = file.Target;
        const auto info = InfoOfNative(target);
        if (!info || !info->IsFile || info->Size != file.Expects.File->Size) ThrowChanged(target);
        DiskFile there(target);
        std::vector<std::byte> bytes(static_cast<std::size_t>(there.Size()));
        bytes.resize(there.Read(bytes));
        if (StampOf(bytes) != *file.Expects.File) ThrowChanged(target);
    }

    [[noreturn]] static void ThrowChanged(const fs::path& target) {
        throw RunTimeError(ErrorNumber::PathFileAccessError,
                           PortablePath(target) +
                               "\nAnother program has changed the file since it was read, so it is not written over. "
                               "Read it again and repeat what you did.");
    }

    bool FlushPending(const Progress& progress) const {
        std::vector<FileToFlush> files;
        for (const Pending& file : pending_) files.push_back({file.Temporary, file.Target});
        return FlushFiles(files, progress);
    }

    bool PlacePending(const Progress& progress) {
        std::set<fs::path> folders;
        std::uint64_t placed = 0;
        bool goesOn = true;
        try {
            for (Pending& file : pending_) {
                goesOn = progress(placed++, pending_.size());
                if (!goesOn) break;
                if (file.Expects.File)
                    RenameOver(file.Temporary, file.Target);
                else
                    RenameToNew(file.Temporary, file.Target);
                file.IsPlaced = true;
                folders.insert(fs::path(file.Target).parent_path());
            }
        } catch (const RunTimeError&) {
            TakeBack();
            FlushFolders(folders);
            throw;
        }
        if (!goesOn) TakeBack();
        FlushFolders(folders);
        return goesOn;
    }

    /// Under its own name the old file stays until the new one takes its place: whenever the program is killed, there
    /// is one of the two.
    static void KeepOld(Pending& file) {
        const fs::path folder = fs::path(file.Target).parent_path();
        std::error_code failure;
        fs::path old;
        do {
            old = folder / TemporaryName();
            fs::create_hard_link(file.Target, old, failure);
        } while (failure == std::errc::file_exists);
        if (failure == std::errc::no_such_file_or_directory) return;
        file.Old = old.native();
        if (!failure) return;
        // Not every file system knows second names, and not every user may give them.
        if (!fs::copy_file(file.Target, old, failure)) ThrowFileError(failure, file.Target);
        NamingTarget(file.Target, [&] { FlushToDisk(old); });
    }

    void RemoveTemporaries() {
        std::error_code ignored;
        for (const Pending& file : pending_) {
            if (!file.IsPlaced) fs::remove(file.Temporary, ignored);
            if (!file.Old.empty()) fs::remove(file.Old, ignored);
        }
        pending_.clear();
    }

    static void FlushFolders(const std::set<fs::path>& folders) {
        for (const fs::path& folder : folders) FlushFolder(folder);
    }

    /// Brings the old files back. What the disk refuses stays new: there is nothing else to do about it.
    void TakeBack() {
        std::error_code ignored;
        for (auto file = pending_.rbegin(); file != pending_.rend(); ++file) {
            if (!file->IsPlaced) continue;
            if (file->Old.empty())
                fs::remove(file->Target, ignored);
            else
                fs::rename(file->Old, file->Target, ignored);
        }
    }

    /// As Resolved, but each folder is listed only once: a batch may write thousands of new files into it.
    fs::path TargetOf(const std::string& path) {
        const fs::path wanted = NativePath(path);
        std::error_code ignored;
        if (fs::exists(fs::symlink_status(wanted, ignored))) return wanted;
        const auto [known, isNew] = folders_.try_emplace(PortablePath(wanted.parent_path()));
        Folder& folder = known->second;
        if (isNew) folder = ListedFolder(ResolvedPath(known->first));
        const std::string name = PortablePath(wanted.filename());
        return folder.Path / NativePath(folder.Names.try_emplace(FoldCase(name), name).first->second);
    }

    struct Folder {
        fs::path Path;
        std::unordered_map<std::string, std::string> Names;  ///< by their folded form
    };

    static Folder ListedFolder(const fs::path& path) {
        Folder folder{path, {}};
        std::error_code failure;
        for (fs::directory_iterator entry(path.empty() ? fs::path(".") : path, failure), end; !failure && entry != end;
             entry.increment(failure)) {
            const std::string name = PortablePath(entry->path().filename());
            folder.Names.emplace(FoldCase(name), name);
        }
        // A folder that may be written to but not read has the names that are given.
        const bool isUnknown = failure == std::errc::no_such_file_or_directory ||
                               failure == std::errc::not_a_directory || failure == std::errc::permission_denied;
        if (failure && !isUnknown) ThrowFileError(failure, path);
        return folder;
    }

    static fs::path FollowedLink(const fs::path& path) {
        std::error_code failure;
        const fs::path target = fs::is_symlink(path, failure) ? fs::canonical(path, failure) : path;
        return failure ? path : target;
    }

    static void AppendTail(const NativeFile& file, const fs::path& old, std::size_t offset) {
        const auto info = InfoOfNative(old);
        if (!info || info->Size <= offset) return;
        const NativeFile source = OpenNative(old, "rb");
        SeekNative(source, offset, old);
        CopyRest(source, file, old);
    }

    std::set<std::string>& cleanedFolders_;
    FolderLocks& locks_;
    std::vector<Pending> pending_;
    EarlyFlush early_;
    std::unordered_map<std::string, Folder> folders_;
};

}  // namespace

fs::path ResolvedPath(const std::string& path) {
    std::string_view trimmed = path;
    while (trimmed.size() > 1 && trimmed.back() == PathSeparator) trimmed.remove_suffix(1);
    const fs::path wanted = NativePath(std::string(trimmed));
    std::error_code ignored;
    if (wanted.empty() || fs::exists(fs::symlink_status(wanted, ignored))) return wanted;
    const fs::path folder = ResolvedPath(PortablePath(wanted.parent_path()));
    const std::string folded = FoldCase(PortablePath(wanted.filename()));
    fs::path found = wanted.filename();
    ForEachName(folder.empty() ? fs::path(".") : folder, [&](const std::string& name) {
        if (FoldCase(name) != folded) return true;
        found = NativePath(name);
        return false;
    });
    return folder / found;
}

std::unique_ptr<InputFile> OpenOnDisk(const fs::path& path) { return std::make_unique<DiskFile>(path); }

std::unique_ptr<InputFile> OpenExact(const std::string& path) {
    OrdinaryFile file = OpenOrdinary(path);
    return file.File ? std::make_unique<DiskFile>(path, std::move(file)) : nullptr;
}

std::unique_ptr<WriteBatch> BeginDiskWrites(std::set<std::string>& cleanedFolders, FolderLocks& locks) {
    return std::make_unique<DiskWriteBatch>(cleanedFolders, locks);
}

}  // namespace vantor
