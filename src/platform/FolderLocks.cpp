#include "platform/FolderLocks.h"

#include <chrono>
#include <thread>

#include "core/RunTimeError.h"
#include "platform/NativeFile.h"

#ifdef _WIN32
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>
#else
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>
#endif

namespace vantor {
namespace {

namespace fs = std::filesystem;

constexpr auto LongestWait = std::chrono::seconds(10);
constexpr auto Pause = std::chrono::milliseconds(5);

enum class Attempt { Taken, Busy, Impossible };

#ifdef _WIN32

/// A file of its own in the folder, which the system deletes when its program ends.
class NativeLock : public FolderLock {
public:
    ~NativeLock() override {
        if (file_ != INVALID_HANDLE_VALUE) CloseHandle(file_);
    }
    Attempt Try(const fs::path& folder) {
        file_ = CreateFileW((folder / L".vantor.lock").c_str(), GENERIC_WRITE, 0, nullptr, OPEN_ALWAYS,
                            FILE_ATTRIBUTE_HIDDEN | FILE_FLAG_DELETE_ON_CLOSE, nullptr);
        if (file_ != INVALID_HANDLE_VALUE) return Attempt::Taken;
        return GetLastError() == ERROR_SHARING_VIOLATION ? Attempt::Busy : Attempt::Impossible;
    }

private:
    HANDLE file_ = INVALID_HANDLE_VALUE;
};

#else

/// The folder itself is locked, so that nothing is left behind; the system takes the lock of a program that ended away.
class NativeLock : public FolderLock {
public:
    ~NativeLock() override {
        if (descriptor_ >= 0) close(descriptor_);
    }
    Attempt Try(const fs::path& folder) {
        if (descriptor_ < 0) descriptor_ = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        if (descriptor_ < 0) return Attempt::Impossible;
        if (flock(descriptor_, LOCK_EX | LOCK_NB) == 0) return Attempt::Taken;
        return errno == EWOULDBLOCK || errno == EINTR ? Attempt::Busy : Attempt::Impossible;
    }

private:
    int descriptor_ = -1;
};

#endif

}  // namespace

std::shared_ptr<FolderLock> FolderLocks::Take(const fs::path& folder) {
    std::error_code ignored;
    const fs::path known = fs::weakly_canonical(folder.empty() ? fs::path(".") : folder, ignored);
    std::weak_ptr<FolderLock>& held = held_[known];
    if (auto lock = held.lock()) return lock;
    auto lock = std::make_shared<NativeLock>();
    const auto end = std::chrono::steady_clock::now() + LongestWait;
    Attempt attempt = lock->Try(known);
    for (; attempt == Attempt::Busy; attempt = lock->Try(known)) {
        if (std::chrono::steady_clock::now() > end)
            throw RunTimeError(ErrorNumber::PermissionDenied,
                               PortablePath(folder) +
                                   "\nAnother Vantor is writing to this folder. Wait until it has finished, and try "
                                   "again.");
        std::this_thread::sleep_for(Pause);
    }
    held = lock;
    return lock;
}

}  // namespace vantor
