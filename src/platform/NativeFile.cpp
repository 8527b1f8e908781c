#include "platform/NativeFile.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <charconv>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "core/ContentHash.h"
#include "core/RunTimeError.h"

#ifdef _WIN32
#include <io.h>
#include <process.h>
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>
#else
#include <dirent.h>
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

/// This computer as long as it runs: numbers of processes say nothing outside of it.
std::string NameOfComputer() {
#ifdef _WIN32
    const char* name = std::getenv("COMPUTERNAME");
    return name != nullptr ? name : "";
#else
    std::array<char, 256> host{};
    gethostname(host.data(), host.size() - 1);
    std::string name = host.data();
#ifdef __linux__
    if (std::FILE* file = std::fopen("/proc/sys/kernel/random/boot_id", "r")) {
        std::array<char, 64> start{};
        if (std::fgets(start.data(), start.size(), file) != nullptr) name += start.data();
        std::fclose(file);
    }
    std::error_code ignored;
    name += fs::read_symlink("/proc/self/ns/pid", ignored).native();
#endif
    return name;
#endif
}

/// Eight digits of base 16.
const std::string& ComputerMark() {
    static const std::string mark = [] {
        const std::string name = NameOfComputer();
        const auto hash = static_cast<std::uint32_t>(ContentHash(std::as_bytes(std::span(name))));
        std::array<char, 9> digits{};
        std::snprintf(digits.data(), digits.size(), "%08x", hash);
        return std::string(digits.data());
    }();
    return mark;
}

int ThisProcess() {
#ifdef _WIN32
    return _getpid();
#else
    return getpid();
#endif
}

/// What a temporary name tells of its writer.
struct Writer {
    std::string_view Computer;
    int Process = 0;
};

std::optional<int> NumberIn(std::string_view text) {
    int number = 0;
    const auto [end, failure] = std::from_chars(text.data(), text.data() + text.size(), number);
    return failure == std::errc() && end == text.data() + text.size() && number > 0 ? std::optional(number)
                                                                                    : std::nullopt;
}

/// Nothing for any other name.
std::optional<Writer> WriterOf(std::string_view name) {
    if (!name.starts_with(TemporaryPrefix) || !name.ends_with(TemporarySuffix)) return std::nullopt;
    name.remove_prefix(TemporaryPrefix.size());
    name.remove_suffix(TemporarySuffix.size());
    const std::size_t last = name.rfind('-');
    if (last == std::string_view::npos || !NumberIn(name.substr(last + 1))) return std::nullopt;
    name = name.substr(0, last);
    // Names of earlier versions do not tell the computer.
    const std::size_t first = name.rfind('-');
    const bool tellsComputer = first != std::string_view::npos;
    const auto process = NumberIn(tellsComputer ? name.substr(first + 1) : name);
    if (!process) return std::nullopt;
    return Writer{tellsComputer ? name.substr(0, first) : std::string_view(), *process};
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

namespace {

#ifdef _WIN32
using Status = struct _stat64;
int StatusOf(const fs::path& path, Status& status) { return _wstat64(path.c_str(), &status); }
int StatusOf(std::FILE* file, Status& status) { return _fstat64(_fileno(file), &status); }
bool IsFolder(const Status& status) { return (status.st_mode & _S_IFDIR) != 0; }
bool IsFile(const Status& status) { return (status.st_mode & _S_IFREG) != 0; }
#else
using Status = struct stat;
int StatusOf(const fs::path& path, Status& status) { return stat(path.c_str(), &status); }
int StatusOf(std::FILE* file, Status& status) { return fstat(fileno(file), &status); }
bool IsFolder(const Status& status) { return S_ISDIR(status.st_mode); }
bool IsFile(const Status& status) { return S_ISREG(status.st_mode); }
#endif

NativeInfo InfoFrom(const Status& status) {
    const bool isFile = IsFile(status);
    return {IsFolder(status), isFile, isFile ? static_cast<std::uint64_t>(status.st_size) : 0, status.st_mtime,
            std::max(status.st_mtime, status.st_ctime)};
}

/// Errors by which a path has nothing; by all others nobody knows.
bool MeansNothingThere(int systemError) {
    return systemError == ENOENT || systemError == ENOTDIR || systemError == ELOOP || systemError == ENAMETOOLONG ||
           systemError == EINVAL;
}

}  // namespace

std::optional<NativeInfo> InfoOfNative(const fs::path& path) {
    Status status{};
    if (StatusOf(path, status) == 0) return InfoFrom(status);
    if (!MeansNothingThere(errno)) ThrowFileError(errno, path);
    return std::nullopt;
}

std::optional<NativeInfo> InfoOfListed(const fs::path& path) {
    try {
        return InfoOfNative(path);
    } catch (const RunTimeError&) {
        return NativeInfo();
    }
}

NativeInfo InfoOfNative(const NativeFile& file, const fs::path& path) {
    Status status{};
    if (StatusOf(file.get(), status) != 0) ThrowFileError(errno, path);
    return InfoFrom(status);
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

OrdinaryFile OpenOrdinary(const std::string& path) {
    Status status{};
#ifdef _WIN32
    const fs::path native = NativePath(path);
    if (StatusOf(native, status) != 0 || !IsFile(status)) return {};
    NativeFile file(_wfopen(native.c_str(), L"rb"));
#else
    // Asked while it is open, so that its name is looked up once. A pipe is not waited for.
    const int descriptor = open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (descriptor < 0) return {};
    NativeFile file(fstat(descriptor, &status) == 0 && IsFile(status) ? fdopen(descriptor, "rb") : nullptr);
    if (!file) close(descriptor);
#endif
    if (!file) return {};
    return {std::move(file), InfoFrom(status).Size};
}

std::error_code ForEachName(const fs::path& folder, const std::function<bool(const std::string& name)>& goesOn) {
#ifdef _WIN32
    std::error_code failure;
    for (fs::directory_iterator entry(folder, failure); !failure && entry != fs::directory_iterator();
         entry.increment(failure))
        if (!goesOn(PortablePath(entry->path().filename()))) break;
    return failure;
#else
    // A path for each name would take longer than to read it.
    const std::unique_ptr<DIR, int (*)(DIR*)> listing(opendir(folder.c_str()), closedir);
    if (!listing) return {errno, std::generic_category()};
    errno = 0;
    while (const dirent* entry = readdir(listing.get())) {
        const std::string name = entry->d_name;
        if (name != "." && name != ".." && !goesOn(name)) return {};
        errno = 0;
    }
    return {errno, std::generic_category()};
#endif
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

std::error_code RenamedOver(const fs::path& from, const fs::path& to) {
    std::error_code failure;
    fs::rename(from, to, failure);
    return failure;
}

std::error_code RenamedToNew(const fs::path& from, const fs::path& to) {
#ifdef _WIN32
    if (MoveFileExW(from.c_str(), to.c_str(), 0)) return {};
    return {static_cast<int>(GetLastError()), std::system_category()};
#else
#ifdef __linux__
    if (renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) return {};
    const bool isUnknown = errno == EINVAL || errno == ENOSYS || errno == ENOTSUP;
    if (!isUnknown) return {errno, std::generic_category()};
#endif
    // A second name is refused where there is a file; not every file system knows them.
    std::error_code failure;
    fs::create_hard_link(from, to, failure);
    if (!failure) {
        fs::remove(from, failure);
        return failure;
    }
    if (failure == std::errc::file_exists || fs::exists(fs::symlink_status(to)))
        return std::make_error_code(std::errc::file_exists);
    return RenamedOver(from, to);
#endif
}

void RenameOver(const fs::path& from, const fs::path& to) {
    if (const std::error_code failure = RenamedOver(from, to)) ThrowFileError(failure, to);
}

void RenameToNew(const fs::path& from, const fs::path& to) {
    if (const std::error_code failure = RenamedToNew(from, to)) ThrowFileError(failure, to);
}

std::string TemporaryName() {
    static std::atomic<unsigned> counter{0};
    return std::string(TemporaryPrefix) + ComputerMark() + "-" + std::to_string(ThisProcess()) + "-" +
           std::to_string(++counter) + std::string(TemporarySuffix);
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
    std::vector<fs::path> leftovers;
    std::error_code ignored;
    for (fs::directory_iterator entry(folder.empty() ? fs::path(".") : folder, ignored), end; entry != end;
         entry.increment(ignored)) {
        const std::string name = PortablePath(entry->path().filename());
        const auto writer = WriterOf(name);
        if (!writer) continue;
        const bool isOfThisComputer = writer->Computer == ComputerMark();
        if (isOfThisComputer && IsRunning(writer->Process)) continue;
        const auto info = InfoOfListed(entry->path());
        if (info && (info->IsFile || info->IsFolder) && (isOfThisComputer || info->Changed < yesterday))
            leftovers.push_back(entry->path());
    }
    for (const fs::path& leftover : leftovers) fs::remove_all(leftover, ignored);
}

void RemoveExportFolders() {
    std::error_code failure;
    const fs::path folder = fs::temp_directory_path(failure);
    if (!failure) RemoveLeftovers(folder);
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
