#include "platform/NativeFile.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <charconv>
#include <cstring>

#include "core/RunTimeError.h"

#ifdef _WIN32
#include <io.h>
#include <process.h>
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>
#else
#include <fcntl.h>
#include <signal.h>
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

constexpr std::string_view TemporaryPrefix = ".vantor-";
constexpr std::string_view TemporarySuffix = ".tmp";
constexpr std::time_t LeftoverAge = 24 * 60 * 60;

/// The process that a temporary name tells; nothing for any other name.
std::optional<int> WriterOf(std::string_view name) {
    if (!name.starts_with(TemporaryPrefix) || !name.ends_with(TemporarySuffix)) return std::nullopt;
    const char* const end = name.data() + name.size() - TemporarySuffix.size();
    int process = 0;
    unsigned number = 0;
    const auto [dash, noProcess] = std::from_chars(name.data() + TemporaryPrefix.size(), end, process);
    if (noProcess != std::errc() || process <= 0 || dash == end || *dash != '-') return std::nullopt;
    const auto [last, noNumber] = std::from_chars(dash + 1, end, number);
    return noNumber == std::errc() && last == end ? std::optional(process) : std::nullopt;
}

bool IsRunning(int process) {
#ifdef _WIN32
    const HANDLE handle = OpenProcess(SYNCHRONIZE, FALSE, static_cast<DWORD>(process));
    if (handle == nullptr) return GetLastError() == ERROR_ACCESS_DENIED;
    const bool isRunning = WaitForSingleObject(handle, 0) == WAIT_TIMEOUT;
    CloseHandle(handle);
    return isRunning;
#else
    return kill(process, 0) == 0 || errno != ESRCH;
#endif
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
    return NativeInfo{isFolder, isFile, isFile ? static_cast<std::uint64_t>(status.st_size) : 0, status.st_mtime,
                      std::max(status.st_mtime, status.st_ctime)};
}

void ThrowFileError(int systemError, const fs::path& path, const std::string& remedy) {
    throw RunTimeError(NumberOf(systemError, path), PortablePath(path) + (remedy.empty() ? "" : "\n" + remedy));
}

void ThrowFileError(std::error_code failure, const fs::path& path, const std::string& remedy) {
    ThrowFileError(failure.default_error_condition().value(), path, remedy);
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
    if (bytes.empty()) return;  // nothing lies at no address
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
    const NativeFile file = OpenNative(path, "r+b");
    if (_commit(_fileno(file.get())) != 0) ThrowFileError(errno, path);
#else
    const int descriptor = open(path.c_str(), O_RDONLY);
    if (descriptor < 0) ThrowFileError(errno, path);
    const bool failed = fsync(descriptor) != 0 && errno != EINVAL && errno != EROFS;
    const int reason = errno;
    close(descriptor);
    if (failed) ThrowFileError(reason, path);
#endif
}

void FlushFolder([[maybe_unused]] const fs::path& folder) {
#ifndef _WIN32
    const int descriptor = open(folder.empty() ? "." : folder.c_str(), O_RDONLY);
    if (descriptor < 0) return;
    fsync(descriptor);
    close(descriptor);
#endif
}

void RenameOver(const fs::path& from, const fs::path& to) {
    std::error_code failure;
    fs::rename(from, to, failure);
    if (failure) ThrowFileError(failure, to);
}

std::string TemporaryName() {
    static std::atomic<unsigned> counter{0};
#ifdef _WIN32
    const int process = _getpid();
#else
    const int process = getpid();
#endif
    return std::string(TemporaryPrefix) + std::to_string(process) + "-" + std::to_string(++counter) +
           std::string(TemporarySuffix);
}

TemporaryFile MakeTemporaryFile(const fs::path& folder) {
    for (;;) {
        fs::path path = folder / TemporaryName();
        try {
            NativeFile file = OpenNative(path, "wbx");
            return {std::move(path), std::move(file)};
        } catch (const RunTimeError& error) {
            if (error.Number() != ErrorNumber::FileAlreadyExists) throw;
        }
    }
}

void RemoveLeftovers(const fs::path& folder) {
    const std::time_t yesterday = std::time(nullptr) - LeftoverAge;
    std::error_code ignored;
    for (fs::directory_iterator entry(folder.empty() ? fs::path(".") : folder, ignored), end; entry != end;
         entry.increment(ignored)) {
        const auto writer = WriterOf(PortablePath(entry->path().filename()));
        if (!writer || IsRunning(*writer)) continue;
        const auto info = InfoOfNative(entry->path());
        if (info && info->IsFile && info->Changed < yesterday) fs::remove(entry->path(), ignored);
    }
}

fs::path ExecutablePath() {
#ifdef _WIN32
    std::wstring path(MAX_PATH, L'\0');
    // As long as it fills all of the text, the path may be cut.
    for (;;) {
        const DWORD length = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
        if (length < path.size()) return path.substr(0, length);
        path.resize(2 * path.size());
    }
#else
    std::error_code failure;
    return fs::read_symlink("/proc/self/exe", failure);
#endif
}

bool IsWritableFolder(const fs::path& folder) {
#ifdef _WIN32
    // What the system tells of a folder is only that it is there.
    try {
        const fs::path probe = MakeTemporaryFile(folder).Path;
        std::error_code ignored;
        fs::remove(probe, ignored);
        return true;
    } catch (const RunTimeError&) {
        return false;
    }
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
