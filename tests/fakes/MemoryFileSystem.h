#pragma once

#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "core/RunTimeError.h"
#include "core/ports/FileSystem.h"

namespace vantor {

/// A path written with "/", as the program forms it on this system.
std::string Native(std::string path);

/// A disk in memory that follows the rules of the FileSystem port and fails when told to.
class MemoryFileSystem : public FileSystem {
public:
    MemoryFileSystem();

    std::optional<FileInfo> Find(const std::string& path) const override;
    using FileSystem::List;
    std::vector<FileInfo> List(const std::string& folder, std::string_view extension) const override;
    std::unique_ptr<InputFile> Open(const std::string& path) const override;
    std::unique_ptr<WriteBatch> BeginWrites() override;
    std::shared_ptr<FolderLock> Lock(const std::string&) override { return std::make_shared<FolderLock>(); }
    std::unique_ptr<GrowingFile> Create(const std::string& path) override;
    void Rename(const std::string& from, const std::string& to) override;
    bool RenameAll(const std::vector<FileMove>& moves, const Progress& progress) override;
    void Delete(const std::string& path) override;
    void CreateFolder(const std::string& path) override;
    std::string CurrentFolder() const override { return Current; }
    std::string SettingsFolder() const override { return Settings; }
    std::string ProgramFile(const std::string& name) const override { return Settings + name; }

    /// Puts a file there, with its folders.
    void Put(const std::string& path, std::vector<std::byte> bytes);
    void PutText(const std::string& path, const std::string& text);
    /// The bytes of the file of exactly that name; nothing when there is none.
    std::optional<std::vector<std::byte>> Bytes(const std::string& path) const;
    std::vector<std::string> AllFiles() const;

    /// Every call that changes the disk counts down; the one after `changes` further ones fails once.
    void FailChangeAfter(int changes, ErrorNumber error);
    /// Copies a file of the real disk (test data) into this one.
    void PutCopyOf(const std::string& diskPath, const std::string& path);

    /// What another program does in the last moment.
    std::function<void()> BeforeCommit;
    std::string Current = "/start";
    std::string Settings = "/program/";
    /// When a file was changed last, by path; day 0 where nothing stands here.
    std::map<std::string, Date> Modified;

private:
    friend class MemoryWriteBatch;
    friend class MemoryGrowingFile;
    std::string Resolved(const std::string& path) const;
    void CountChange(const std::string& path);

    std::map<std::string, std::vector<std::byte>> files_;
    std::set<std::string> folders_;
    std::optional<int> changesUntilFault_;
    ErrorNumber fault_ = ErrorNumber::DiskFull;
};

/// Literal bytes for expectations.
std::vector<std::byte> BytesOf(std::string_view text);

}  // namespace vantor
