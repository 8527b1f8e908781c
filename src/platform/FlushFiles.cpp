#include "platform/FlushFiles.h"

#include "core/RunTimeError.h"
#include "platform/NativeFile.h"

#ifdef __linux__
#include <fcntl.h>
#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <future>
#include <map>
#include <memory>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>
#endif

namespace vantor {
namespace {

namespace fs = std::filesystem;
using Files = std::vector<FileToFlush>;

bool FlushOneByOne(const Files& files, const Progress& progress) {
    for (std::size_t i = 0; i < files.size(); ++i) {
        if (!progress(i, files.size())) return false;
        try {
            FlushToDisk(files[i].Path);
        } catch (const RunTimeError& error) {
            throw RunTimeError(error.Number(), PortablePath(files[i].Target));
        }
    }
    return progress(1, 1);
}

#ifdef __linux__

/// Below that, a flush of the whole file system costs more than it saves.
constexpr std::size_t ManyFiles = 16;
/// Files whose data are on their way to the disk at the same time.
constexpr std::size_t UnderWay = 64;

class Descriptor {
public:
    explicit Descriptor(const FileToFlush& file) : number_(open(file.Path.c_str(), O_RDONLY | O_CLOEXEC)) {
        if (number_ < 0) ThrowFileError(errno, file.Target);
    }
    ~Descriptor() { close(number_); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    int Number() const { return number_; }

private:
    int number_;
};

/// Only where it is known that one flush of the file system covers data, names and the disk's own buffer.
bool HasWholeFlush(const fs::path& folder) {
    constexpr unsigned long Xfs = 0x58465342;
    constexpr unsigned long Known[] = {EXT4_SUPER_MAGIC, Xfs, BTRFS_SUPER_MAGIC, F2FS_SUPER_MAGIC, TMPFS_MAGIC};
    struct statfs status {};
    if (statfs(folder.empty() ? "." : folder.c_str(), &status) != 0) return false;
    return std::ranges::find(Known, static_cast<unsigned long>(status.f_type)) != std::end(Known);
}

void Sync(const Descriptor& file, unsigned flags, const fs::path& path) {
    if (sync_file_range(file.Number(), 0, 0, flags) != 0) ThrowFileError(errno, path);
}

/// Also waits for what other programs have written to that disk, so a stop leaves it alone with its work.
bool FlushWhole(const std::shared_ptr<Descriptor>& disk, const fs::path& path, const Progress& progress) {
    const auto end = std::make_shared<std::promise<int>>();
    std::future<int> error = end->get_future();
    try {
        std::thread([disk, end] { end->set_value(syncfs(disk->Number()) == 0 ? 0 : errno); }).detach();
    } catch (const std::system_error&) {
        throw OutOfMemoryError();
    }
    while (error.wait_for(std::chrono::milliseconds(20)) != std::future_status::ready)
        if (!progress(1, 1)) return false;
    if (const int reason = error.get(); reason != 0) ThrowFileError(reason, path);
    return true;
}

/// The data of many files are on their way at once; what is left, their names and places, one flush brings behind them.
bool FlushTogether(const Files& files, const Progress& progress) {
    std::map<dev_t, std::shared_ptr<Descriptor>> disks;
    std::deque<std::shared_ptr<Descriptor>> underWay;
    for (std::size_t begun = 0, done = 0; done < files.size(); ++done) {
        for (; begun < std::min(done + UnderWay, files.size()); ++begun) {
            underWay.push_back(std::make_shared<Descriptor>(files[begun]));
            Sync(*underWay.back(), SYNC_FILE_RANGE_WRITE, files[begun].Target);
        }
        if (!progress(done, files.size())) return false;
        Sync(*underWay.front(), SYNC_FILE_RANGE_WAIT_BEFORE | SYNC_FILE_RANGE_WRITE | SYNC_FILE_RANGE_WAIT_AFTER,
             files[done].Target);
        struct stat status {};
        if (fstat(underWay.front()->Number(), &status) != 0) ThrowFileError(errno, files[done].Target);
        disks.try_emplace(status.st_dev, std::move(underWay.front()));
        underWay.pop_front();
    }
    for (const auto& [number, file] : disks)
        if (!FlushWhole(file, files.front().Target, progress)) return false;
    return progress(1, 1);
}

#endif

}  // namespace

#ifdef __linux__

struct EarlyFlush::Worker {
    std::mutex Mutex;
    std::condition_variable Changed;
    std::deque<fs::path::string_type> Waiting;
    bool IsEnding = false;
    std::thread Thread;

    Worker() : Thread([this] { Work(); }) {}
    ~Worker() {
        {
            const std::lock_guard lock(Mutex);
            IsEnding = true;
        }
        Changed.notify_one();
        Thread.join();
    }
    Worker(const Worker&) = delete;
    Worker& operator=(const Worker&) = delete;

    void Work() {
        std::unique_lock lock(Mutex);
        for (;;) {
            Changed.wait(lock, [this] { return IsEnding || !Waiting.empty(); });
            if (IsEnding) return;
            const fs::path::string_type path = std::move(Waiting.front());
            Waiting.pop_front();
            lock.unlock();
            if (const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC); file >= 0) {
                sync_file_range(file, 0, 0, SYNC_FILE_RANGE_WRITE);
                close(file);
            }
            lock.lock();
        }
    }
};

void EarlyFlush::Add(const fs::path::string_type& path) {
    if (++added_ < ManyFiles) return;
    try {
        if (!worker_) worker_ = std::make_unique<Worker>();
    } catch (const std::system_error&) {
        return;
    }
    {
        const std::lock_guard lock(worker_->Mutex);
        worker_->Waiting.push_back(path);
    }
    worker_->Changed.notify_one();
}

#else

struct EarlyFlush::Worker {};
void EarlyFlush::Add(const fs::path::string_type&) { ++added_; }

#endif

EarlyFlush::EarlyFlush() = default;
EarlyFlush::~EarlyFlush() = default;

bool FlushFiles(const Files& files, const Progress& progress) {
#ifdef __linux__
    const auto hasWholeFlush = [](const FileToFlush& file) { return HasWholeFlush(fs::path(file.Path).parent_path()); };
    if (files.size() >= ManyFiles && std::ranges::all_of(files, hasWholeFlush)) return FlushTogether(files, progress);
#endif
    return FlushOneByOne(files, progress);
}

}  // namespace vantor
