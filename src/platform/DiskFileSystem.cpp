#include "platform/DiskFileSystem.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>

#include "core/Paths.h"
#include "core/RunTimeError.h"
#include "core/Text.h"
#include "platform/DiskWriteBatch.h"
#include "platform/FlushFiles.h"
#include "platform/FolderLocks.h"
#include "platform/NativeFile.h"

namespace vantor {
namespace {

namespace fs = std::filesystem;

FileInfo InfoFrom(const fs::path& path, const NativeInfo& native) {
    FileInfo info;
    info.Name = PortablePath(path.filename());
    info.IsFolder = native.IsFolder;
    info.IsHidden = !info.Name.empty() && info.Name.front() == '.';
    info.Size = native.Size;
    info.Modified = LocalDate(native.Modified);
    return info;
}

class DiskGrowingFile : public GrowingFile {
public:
    explicit DiskGrowingFile(const fs::path& path) : path_(path), file_(OpenNative(path, "wbx")) {
        std::setvbuf(file_.get(), nullptr, _IONBF, 0);
    }

    void Append(std::span<const std::byte> bytes) override { WriteNative(file_, bytes, path_); }

    void Close() override {
        file_.reset();
        FlushToDisk(path_);
        FlushFolder(path_.parent_path());
    }

private:
    fs::path path_;
    NativeFile file_;
};

/// From the executable to the files of an installation.
#ifdef _WIN32
constexpr const char* InstalledFiles = "";
#else
constexpr const char* InstalledFiles = "../share/vantor/";
#endif

/// A program whose files lie beside it can be carried about with its settings. One whose files were installed is there
/// for all users, even where this one may write beside it.
bool IsInstalled(const std::string& programFolder) {
    constexpr const char* manual = "VANTOR.HLP";
    std::error_code ignored;
    return fs::exists(NativePath(programFolder + InstalledFiles + manual), ignored) &&
           !fs::exists(NativePath(programFolder + manual), ignored);
}

std::string UserSettingsFolder() {
#ifdef _WIN32
    const char* base = std::getenv("APPDATA");
    return AsFolder(AsFolder(base != nullptr ? base : ".") + "vantor");
#else
    if (const char* base = std::getenv("XDG_CONFIG_HOME"); base != nullptr && *base != '\0')
        return AsFolder(base) + "vantor/";
    const char* home = std::getenv("HOME");
    return AsFolder(home != nullptr ? home : ".") + ".config/vantor/";
#endif
}

}  // namespace

DiskFileSystem::DiskFileSystem(const std::string& programFolder) {
    const char* variable = std::getenv("VANTOR_PROGRAM_FOLDER");
    const bool isNamed = variable != nullptr && *variable != '\0';
    const std::string executableFolder = AsFolder(programFolder);
    const std::string folder = isNamed ? AsFolder(variable) : executableFolder;
    const bool isOwn = isNamed || (!IsInstalled(folder) && IsWritableFolder(NativePath(folder)));
    settingsFolder_ = isOwn ? folder : UserSettingsFolder();
    programFolders_ = {folder, executableFolder, executableFolder + InstalledFiles};
}

std::optional<FileInfo> DiskFileSystem::Find(const std::string& path) const {
    if (path.empty()) return std::nullopt;
    const fs::path resolved = ResolvedPath(path);
    const auto native = InfoOfNative(resolved);
    return native ? std::optional(InfoFrom(resolved, *native)) : std::nullopt;
}

std::vector<FileInfo> DiskFileSystem::List(const std::string& folder, std::string_view extension) const {
    const fs::path resolved = ResolvedPath(folder);
    std::vector<std::pair<std::string, FileInfo>> found;
    const std::error_code failure = ForEachName(resolved, [&](const std::string& name) {
        if (!extension.empty() && !HasExtension(name, extension)) return true;
        const fs::path path = resolved / NativePath(name);
        // Nothing: a link to nowhere.
        if (const auto native = InfoOfListed(path)) found.emplace_back(FoldCase(name), InfoFrom(path, *native));
        return true;
    });
    if (failure) {
        const bool denied = failure == std::errc::permission_denied;
        throw RunTimeError(denied ? ErrorNumber::PermissionDenied : ErrorNumber::PathNotFound, folder);
    }
    std::sort(found.begin(), found.end(), [](const auto& left, const auto& right) { return left.first < right.first; });
    std::vector<FileInfo> entries;
    entries.reserve(found.size());
    for (auto& [folded, info] : found) entries.push_back(std::move(info));
    return entries;
}

std::unique_ptr<InputFile> DiskFileSystem::Open(const std::string& path) const {
    // Long lists of files are read by their exact names, mostly.
    if (auto file = OpenExact(path)) return file;
    const fs::path resolved = ResolvedPath(path);
    const auto native = InfoOfNative(resolved);
    if (native && !native->IsFile)
        throw RunTimeError(ErrorNumber::PathFileAccessError,
                           "A folder, a pipe or a device is no file to read. Choose a file.\n" + path);
    return OpenOnDisk(resolved);
}

std::unique_ptr<WriteBatch> DiskFileSystem::BeginWrites() { return BeginDiskWrites(cleanedFolders_, locks_); }

std::shared_ptr<FolderLock> DiskFileSystem::Lock(const std::string& folder) {
    return locks_.Take(ResolvedPath(folder));
}

std::unique_ptr<GrowingFile> DiskFileSystem::Create(const std::string& path) {
    return std::make_unique<DiskGrowingFile>(ResolvedPath(path));
}

void DiskFileSystem::Rename(const std::string& from, const std::string& to) {
    Place(from, to);
    FlushFolder(NativePath(to).parent_path());
}

void DiskFileSystem::Place(const std::string& from, const std::string& to, bool isFree) {
    const fs::path source = ResolvedPath(from);
    const fs::path target = NativePath(to);
    std::error_code ignored;
    const bool onlyCaseDiffers = !isFree && fs::equivalent(source, ResolvedPath(to), ignored);
    if (!isFree && !onlyCaseDiffers && Find(to)) throw RunTimeError(ErrorNumber::FileAlreadyExists, to);
    const std::error_code failure = onlyCaseDiffers ? RenamedOver(source, target) : RenamedToNew(source, target);
    if (failure == std::errc::cross_device_link) return MoveToOtherDisk(source, target);
    if (failure == std::errc::file_exists) throw RunTimeError(ErrorNumber::FileAlreadyExists, to);
    if (failure) ThrowFileError(failure, source);
}

void DiskFileSystem::MoveToOtherDisk(const fs::path& from, const fs::path& to) {
    WriteFile(*this, PortablePath(to), ReadWholeFile(*this, PortablePath(from)), Expected::Nothing());
    std::error_code failure;
    fs::remove(from, failure);
    if (!failure) return;
    std::error_code kept;
    fs::remove(to, kept);
    ThrowFileError(failure, from,
                   "The file cannot be taken away from there, so it was not moved." +
                       (kept ? " A copy lies in " + PortablePath(to) + "." : std::string()));
}

void DiskFileSystem::Delete(const std::string& path) {
    const fs::path resolved = ResolvedPath(path);
    std::error_code failure;
    if (fs::remove(resolved, failure)) return;
    ThrowFileError(failure ? failure : std::make_error_code(std::errc::no_such_file_or_directory), resolved);
}

void DiskFileSystem::CreateFolder(const std::string& path) {
    std::error_code failure;
    fs::create_directories(ResolvedPath(path), failure);
    if (failure) ThrowFileError(failure.value(), NativePath(path));
}

std::string DiskFileSystem::CurrentFolder() const {
    std::error_code failure;
    const fs::path current = fs::current_path(failure);
    if (failure) throw RunTimeError(ErrorNumber::PathNotFound, ".");
    return PortablePath(current);
}

std::string DiskFileSystem::SettingsFolder() const { return settingsFolder_; }

std::string DiskFileSystem::ProgramFile(const std::string& name) const {
    for (const std::string& folder : programFolders_)
        if (const auto info = Find(folder + name); info && !info->IsFolder) return folder + info->Name;
    return programFolders_.front() + name;
}

std::string ExecutableFolder() {
    const fs::path folder = ExecutablePath().parent_path();
    std::error_code ignored;
    return AsFolder(PortablePath(folder.empty() ? fs::current_path(ignored) : folder));
}

}  // namespace vantor
