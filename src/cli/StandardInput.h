#pragma once

#include <iosfwd>

#include "core/ports/FileSystem.h"

namespace vantor {

/// What stands for standard input among the FILEs of a command, and for standard output as an `--output`.
inline constexpr const char* StandardStream = "-";

/// Standard input as a file of that kind; `extension` with its dot.
inline std::string StandardInputPath(std::string_view extension) { return "(standard input)" + std::string(extension); }

/// The disk, and what comes from standard input as one more file on it, which is read when it is first asked for.
class FilesAndInput : public FileSystem {
public:
    FilesAndInput(FileSystem& files, std::istream* in) : files_(files), in_(in) {}

    std::optional<FileInfo> Find(const std::string& path) const override;
    std::unique_ptr<InputFile> Open(const std::string& path) const override;

    using FileSystem::List;
    std::vector<FileInfo> List(const std::string& folder, std::string_view extension) const override {
        return files_.List(folder, extension);
    }
    std::unique_ptr<WriteBatch> BeginWrites() override { return files_.BeginWrites(); }
    std::unique_ptr<GrowingFile> Create(const std::string& path) override { return files_.Create(path); }
    std::shared_ptr<FolderLock> Lock(const std::string& folder) override { return files_.Lock(folder); }
    void Rename(const std::string& from, const std::string& to) override { files_.Rename(from, to); }
    bool RenameAll(const std::vector<FileMove>& moves, const Progress& progress) override {
        return files_.RenameAll(moves, progress);
    }
    void Delete(const std::string& path) override { files_.Delete(path); }
    void CreateFolder(const std::string& path) override { files_.CreateFolder(path); }
    std::string CurrentFolder() const override { return files_.CurrentFolder(); }
    std::string SettingsFolder() const override { return files_.SettingsFolder(); }
    std::string ProgramFile(const std::string& name) const override { return files_.ProgramFile(name); }

private:
    const std::string& Input() const;

    FileSystem& files_;
    std::istream* in_;                         ///< none: an empty one
    mutable std::optional<std::string> read_;  ///< all of it, once it was asked for
};

}  // namespace vantor
