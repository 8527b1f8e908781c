#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <mutex>
#include <optional>
#include <utility>

namespace vantor {

/// What one thread makes and another one takes, in order. The maker waits while as many things lie there as there is
/// room for.
template <class Thing>
class Handover {
public:
    explicit Handover(std::size_t room) : room_(room) {}

    /// False when nothing is taken any more.
    bool Put(Thing thing) {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [this] { return things_.size() < room_ || isClosed_; });
        if (isClosed_) return false;
        things_.push_back(std::move(thing));
        changed_.notify_all();
        return true;
    }
    /// Nothing when all was taken and no more comes.
    std::optional<Thing> Take() {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [this] { return !things_.empty() || isClosed_; });
        if (things_.empty()) return std::nullopt;
        std::optional<Thing> thing(std::move(things_.front()));
        things_.pop_front();
        changed_.notify_all();
        return thing;
    }
    /// To be called by either side: nothing more is put. What lies there can still be taken.
    void Close() {
        const std::lock_guard lock(mutex_);
        isClosed_ = true;
        changed_.notify_all();
    }

private:
    const std::size_t room_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<Thing> things_;
    bool isClosed_ = false;
};

}  // namespace vantor
