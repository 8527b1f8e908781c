#pragma once

#include <filesystem>
#include <set>

#include "core/ports/FileSystem.h"
#include "platform/FolderLocks.h"

namespace vantor {

/// The file system of this computer.
class DiskFileSystem : public FileSystem {
public:
    /// `programFolder` holds the settings. Where it cannot be written, or where it is that of an installation, whose
    /// files lie elsewhere, the user's configuration folder does. The environment variable VANTOR_PROGRAM_FOLDER names
    /// another program folder.
    explicit DiskFileSystem(const std::string& programFolder);

    std::optional<FileInfo> Find(const std::string& path) const override;
    using FileSystem::List;
    std::vector<FileInfo> List(const std::string& folder, std::string_view extension) const override;
    std::unique_ptr<InputFile> Open(const std::string& path) const override;
    std::unique_ptr<WriteBatch> BeginWrites() override;
    std::unique_ptr<GrowingFile> Create(const std::string& path) override;
    std::shared_ptr<FolderLock> Lock(const std::string& folder) override;
    void Rename(const std::string& from, const std::string& to) override;
    bool RenameAll(const std::vector<FileMove>& moves, const Progress& progress) override;
    void Delete(const std::string& path) override;
    void CreateFolder(const std::string& path) override;
    std::string CurrentFolder() const override;
    std::string SettingsFolder() const override;
    std::string ProgramFile(const std::string& name) const override;

private:
    /// Rename, without the flush of the folder; `isFree` where it is known that there is no file of the new name.
    void Place(const std::string& from, const std::string& to, bool isFree = false);
    void MoveToOtherDisk(const std::filesystem::path& from, const std::filesystem::path& to);

    std::string settingsFolder_;
    std::vector<std::string> programFolders_;  ///< in the order in which they are searched
    FolderLocks locks_;
    std::set<std::string> cleanedFolders_;  ///< those without leftovers of killed programs
};

/// The folder of the running executable, with a final separator.
std::string ExecutableFolder();

}  // namespace vantor
