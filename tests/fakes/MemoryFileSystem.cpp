#include "fakes/MemoryFileSystem.h"

#include <algorithm>
#include <cstring>
#include <fstream>
#include <iterator>

#include "core/Paths.h"
#include "core/Text.h"

namespace vantor {
namespace {

/// The form in which names are kept, the same on every system: "/" between components, none at the end.
std::string Stored(std::string path) {
    std::replace(path.begin(), path.end(), PathSeparator, '/');
    while (path.size() > 1 && path.back() == '/') path.pop_back();
    return path;
}

class MemoryFile : public InputFile {
public:
    explicit MemoryFile(std::vector<std::byte> bytes) : bytes_(std::move(bytes)) {}
    std::size_t Read(std::span<std::byte> into) override {
        const std::size_t count = std::min(into.size(), bytes_.size() - at_);
        std::copy_n(bytes_.begin() + static_cast<std::ptrdiff_t>(at_), count, into.begin());
        at_ += count;
        return count;
    }
    std::uint64_t Size() const override { return bytes_.size(); }

private:
    std::vector<std::byte> bytes_;
    std::size_t at_ = 0;
};

}  // namespace

std::string Native(std::string path) {
    std::replace(path.begin(), path.end(), '/', PathSeparator);
    return path;
}

class MemoryWriteBatch : public WriteBatch {
public:
    explicit MemoryWriteBatch(MemoryFileSystem& files) : files_(files) {}

    void Add(const std::string& path, std::span<const std::byte> bytes, const Expected& expected,
             OldTail tail) override {
        const std::string target = files_.Resolved(path);
        if (files_.folders_.count(Stored(FolderOf(target))) == 0) throw RunTimeError(ErrorNumber::PathNotFound, path);
        files_.CountChange(path);
        std::vector<std::byte> whole;
        if (const auto old = files_.files_.find(target); tail == OldTail::Kept && old != files_.files_.end())
            whole = old->second;
        whole.resize(std::max(whole.size(), bytes.size()));
        std::ranges::copy(bytes, whole.begin());
        pending_.push_back({target, std::move(whole), expected});
    }

    bool Commit(const Progress& progress) override {
        if (files_.BeforeCommit) files_.BeforeCommit();
        std::uint64_t done = 0;
        for (const Pending& file : pending_) {
            if (!progress(done++, pending_.size())) return false;
            files_.CountChange(file.Path);
            const auto& wanted = file.Expects.File;
            const auto there = files_.files_.find(file.Path);
            if (there == files_.files_.end() ? wanted.has_value() : wanted != StampOf(there->second))
                throw RunTimeError(wanted ? ErrorNumber::PathFileAccessError : ErrorNumber::FileAlreadyExists,
                                   file.Path);
        }
        for (Pending& file : pending_) files_.files_[file.Path] = std::move(file.Bytes);
        pending_.clear();
        return true;
    }

private:
    struct Pending {
        std::string Path;
        std::vector<std::byte> Bytes;
        Expected Expects;
    };
    MemoryFileSystem& files_;
    std::vector<Pending> pending_;
};

class MemoryGrowingFile : public GrowingFile {
public:
    MemoryGrowingFile(MemoryFileSystem& files, std::string path) : files_(files), path_(std::move(path)) {}

    void Append(std::span<const std::byte> bytes) override {
        std::vector<std::byte>& whole = files_.files_[path_];
        // A disk that fails may have taken a part.
        if (files_.changesUntilFault_ == 0) bytes = bytes.first(bytes.size() / 2);
        whole.insert(whole.end(), bytes.begin(), bytes.end());
        files_.CountChange(path_);
    }
    void Close() override { files_.CountChange(path_); }

private:
    MemoryFileSystem& files_;
    std::string path_;
};

MemoryFileSystem::MemoryFileSystem() : folders_{"/", "/start", "/program"} {}

std::string MemoryFileSystem::Resolved(const std::string& path) const {
    const std::string wanted = Stored(path);
    if (files_.count(wanted) != 0 || folders_.count(wanted) != 0 || wanted == "/" || wanted.empty()) return wanted;
    const std::string folder = Resolved(Stored(FolderOf(wanted)));
    const std::string inFolder = Stored(AsFolder(folder) + LastComponent(wanted));
    for (const auto& [known, bytes] : files_)
        if (EqualIgnoringCase(known, inFolder)) return known;
    for (const std::string& known : folders_)
        if (EqualIgnoringCase(known, inFolder)) return known;
    return inFolder;
}

void MemoryFileSystem::CountChange(const std::string& path) {
    if (!changesUntilFault_ || (*changesUntilFault_)-- > 0) return;
    changesUntilFault_.reset();
    throw RunTimeError(fault_, path);
}

std::optional<FileInfo> MemoryFileSystem::Find(const std::string& path) const {
    const std::string known = Resolved(path);
    FileInfo info;
    info.Name = LastComponent(known);
    info.IsHidden = info.Name.starts_with('.');
    info.IsFolder = folders_.contains(known);
    if (info.IsFolder) return info;
    const auto file = files_.find(known);
    if (file == files_.end() || path.ends_with('/') || path.ends_with(PathSeparator)) return std::nullopt;
    info.Size = file->second.size();
    if (const auto modified = Modified.find(known); modified != Modified.end()) info.Modified = modified->second;
    return info;
}

std::vector<FileInfo> MemoryFileSystem::List(const std::string& folder, std::string_view extension) const {
    const std::string known = Resolved(folder);
    if (!folders_.contains(known)) throw RunTimeError(ErrorNumber::PathNotFound, folder);
    std::vector<std::string> paths = AllFiles();
    paths.insert(paths.end(), folders_.begin(), folders_.end());
    std::vector<FileInfo> entries;
    for (const std::string& path : paths)
        if (path != "/" && Stored(FolderOf(path)) == known && FoldCase(path).ends_with(FoldCase(extension)))
            entries.push_back(*Find(path));
    std::ranges::sort(entries, {}, [](const FileInfo& info) { return FoldCase(info.Name); });
    return entries;
}

std::unique_ptr<InputFile> MemoryFileSystem::Open(const std::string& path) const {
    const auto file = files_.find(Resolved(path));
    if (file == files_.end())
        throw RunTimeError(Find(path) ? ErrorNumber::PathFileAccessError : ErrorNumber::FileNotFound, path);
    return std::make_unique<MemoryFile>(file->second);
}

std::unique_ptr<WriteBatch> MemoryFileSystem::BeginWrites() { return std::make_unique<MemoryWriteBatch>(*this); }

std::unique_ptr<GrowingFile> MemoryFileSystem::Create(const std::string& path) {
    const std::string known = Resolved(path);
    if (folders_.count(Stored(FolderOf(known))) == 0) throw RunTimeError(ErrorNumber::PathNotFound, path);
    if (Find(path)) throw RunTimeError(ErrorNumber::FileAlreadyExists, path);
    CountChange(path);
    files_[known];
    return std::make_unique<MemoryGrowingFile>(*this, known);
}

void MemoryFileSystem::Rename(const std::string& from, const std::string& to) {
    const std::string source = Resolved(from);
    if (files_.count(source) == 0) throw RunTimeError(ErrorNumber::FileNotFound, from);
    if (Find(to) && Resolved(to) != source) throw RunTimeError(ErrorNumber::FileAlreadyExists, to);
    CountChange(from);
    auto node = files_.extract(source);
    node.key() = Stored(AsFolder(Resolved(FolderOf(to))) + LastComponent(to));
    files_.insert(std::move(node));
}

bool MemoryFileSystem::RenameAll(const std::vector<FileMove>& moves, const Progress& progress) {
    const auto before = files_;
    std::uint64_t done = 0;
    try {
        for (const FileMove& move : moves) {
            if (!progress(done++, moves.size())) {
                files_ = before;
                return false;
            }
            Rename(move.From, move.To);
        }
    } catch (const RunTimeError&) {
        files_ = before;
        throw;
    }
    return true;
}

void MemoryFileSystem::Delete(const std::string& path) {
    const std::string known = Resolved(path);
    const bool isEmptyFolder = folders_.count(known) != 0 && List(path).empty();
    if (files_.count(known) == 0 && !isEmptyFolder) throw RunTimeError(ErrorNumber::FileNotFound, path);
    CountChange(path);
    if (files_.erase(known) == 0) folders_.erase(known);
}

void MemoryFileSystem::CreateFolder(const std::string& path) {
    std::string folder = Resolved(path);
    if (folders_.count(folder) != 0) return;
    CountChange(path);
    for (; folder.size() > 1; folder = Stored(FolderOf(folder))) folders_.insert(folder);
}

void MemoryFileSystem::Put(const std::string& path, std::vector<std::byte> bytes) {
    for (std::string folder = Stored(FolderOf(path)); folder.size() > 1; folder = Stored(FolderOf(folder)))
        folders_.insert(folder);
    files_[Stored(path)] = std::move(bytes);
}

void MemoryFileSystem::PutText(const std::string& path, const std::string& text) { Put(path, BytesOf(text)); }

void MemoryFileSystem::PutCopyOf(const std::string& diskPath, const std::string& path) {
    std::ifstream file(diskPath, std::ios::binary);
    if (!file) throw RunTimeError(ErrorNumber::FileNotFound, diskPath);
    PutText(path, std::string(std::istreambuf_iterator<char>(file), {}));
}

std::optional<std::vector<std::byte>> MemoryFileSystem::Bytes(const std::string& path) const {
    const auto file = files_.find(Stored(path));
    return file == files_.end() ? std::nullopt : std::optional(file->second);
}

std::vector<std::string> MemoryFileSystem::AllFiles() const {
    std::vector<std::string> names;
    for (const auto& [path, bytes] : files_) names.push_back(path);
    return names;
}

void MemoryFileSystem::FailChangeAfter(int changes, ErrorNumber error) {
    changesUntilFault_ = changes;
    fault_ = error;
}

std::vector<std::byte> BytesOf(std::string_view text) {
    const auto bytes = std::as_bytes(std::span(text));
    return {bytes.begin(), bytes.end()};
}

}  // namespace vantor
