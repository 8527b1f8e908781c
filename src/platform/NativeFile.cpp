#include "platform/NativeFile.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <cstring>

#include "core/RunTimeError.h"

#ifdef _WIN32
#include <io.h>
#include <process.h>
#else
#include <fcntl.h>
#include <unistd.h>
#endif
#include <sys/stat.h>

namespace vantor {
namespace {

namespace fs = std::filesystem;

ErrorNumber NumberOf(int systemError, const fs::path& path) {
    std::error_code ignored;
    switch (systemError) {
        case ENOENT:
        case ENOTDIR:
            return path.has_parent_path() && !fs::exists(path.parent_path(), ignored) ? ErrorNumber::PathNotFound
                                                                                      : ErrorNumber::FileNotFound;
        case EEXIST: return ErrorNumber::FileAlreadyExists;
        case ENOSPC:
#ifdef EDQUOT
        case EDQUOT:
#endif
        case EFBIG: return ErrorNumber::DiskFull;
        case EACCES:
        case EPERM:
        case EROFS: return ErrorNumber::PermissionDenied;
        case EIO: return ErrorNumber::DeviceIoError;
        default: return ErrorNumber::PathFileAccessError;
    }
}

}  // namespace

fs::path NativePath(const std::string& utf8) {
    return fs::path(std::u8string(reinterpret_cast<const char8_t*>(utf8.data()), utf8.size()));
}

std::string PortablePath(const fs::path& path) {
    const std::u8string utf8 = path.u8string();
    return {reinterpret_cast<const char*>(utf8.data()), utf8.size()};
}

std::optional<NativeInfo> InfoOfNative(const fs::path& path) {
#ifdef _WIN32
    struct _stat64 status {};
    if (_wstat64(path.c_str(), &status) != 0) return std::nullopt;
    const bool isFolder = (status.st_mode & _S_IFDIR) != 0;
    const bool isFile = (status.st_mode & _S_IFREG) != 0;
#else
    struct stat status {};
    if (stat(path.c_str(), &status) != 0) return std::nullopt;
    const bool isFolder = S_ISDIR(status.st_mode);
    const bool isFile = S_ISREG(status.st_mode);
#endif
    return NativeInfo{isFolder, isFile, isFile ? static_cast<std::uint64_t>(status.st_size) : 0, status.st_mtime};
}

void ThrowFileError(int systemError, const fs::path& path) {
    throw RunTimeError(NumberOf(systemError, path), PortablePath(path));
}

NativeFile OpenNative(const fs::path& path, const char* mode) {
#ifdef _WIN32
    std::FILE* file = _wfopen(path.c_str(), fs::path(mode).c_str());
#else
    std::FILE* file = std::fopen(path.c_str(), mode);
#endif
    if (file == nullptr) ThrowFileError(errno, path);
    return NativeFile(file);
}

void WriteNative(const NativeFile& file, std::span<const std::byte> bytes, const fs::path& path) {
    if (std::fwrite(bytes.data(), 1, bytes.size(), file.get()) != bytes.size()) ThrowFileError(errno, path);
}

void SeekNative(const NativeFile& file, std::size_t offset, const fs::path& path) {
    if (std::fseek(file.get(), static_cast<long>(offset), SEEK_SET) != 0) ThrowFileError(errno, path);
}

void CopyRest(const NativeFile& source, const NativeFile& target, const fs::path& path) {
    std::array<std::byte, 65536> buffer;
    while (const std::size_t count = std::fread(buffer.data(), 1, buffer.size(), source.get()))
        WriteNative(target, std::span(buffer).first(count), path);
    if (std::ferror(source.get()) != 0) ThrowFileError(errno, path);
}

void StartFlush([[maybe_unused]] const NativeFile& file) {
#ifdef __linux__
    sync_file_range(fileno(file.get()), 0, 0, SYNC_FILE_RANGE_WRITE);
#endif
}

void FlushToDisk(const fs::path& path) {
#ifdef _WIN32
    if (fs::is_directory(path)) return;
    const NativeFile file = OpenNative(path, "r+b");
    if (_commit(_fileno(file.get())) != 0) ThrowFileError(errno, path);
#else
    const int descriptor = open(path.empty() ? "." : path.c_str(), O_RDONLY);
    if (descriptor < 0) ThrowFileError(errno, path);
    // Some file systems cannot flush a folder; its names are then as safe as they can be.
    const bool failed = fsync(descriptor) != 0 && errno != EINVAL && errno != EROFS;
    const int reason = errno;
    close(descriptor);
    if (failed) ThrowFileError(reason, path);
#endif
}

void ReplaceFile(const fs::path& from, const fs::path& to) {
    std::error_code failure;
    fs::rename(from, to, failure);
    if (failure) ThrowFileError(failure.value(), to);
}

std::string TemporaryName() {
    static std::atomic<unsigned> counter{0};
#ifdef _WIN32
    const int process = _getpid();
#else
    const int process = getpid();
#endif
    return ".vantor-" + std::to_string(process) + "-" + std::to_string(++counter) + ".tmp";
}

bool IsWritableFolder(const fs::path& folder) {
#ifdef _WIN32
    return _waccess(folder.c_str(), 2) == 0;
#else
    return access(folder.c_str(), W_OK) == 0;
#endif
}

Date LocalDate(std::time_t time) {
    std::tm local{};
#ifdef _WIN32
    localtime_s(&local, &time);
#else
    localtime_r(&time, &local);
#endif
    const Date day = DateOf(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday);
    const Date moment = TimeOf(local.tm_hour, local.tm_min, local.tm_sec > 59 ? 59 : local.tm_sec);
    return {day.Days + moment.Days};
}

}  // namespace vantor
