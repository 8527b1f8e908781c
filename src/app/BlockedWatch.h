#pragma once

#ifndef NDEBUG

#include <QTimer>
#include <atomic>
#include <thread>

namespace vantor {

/// Of a debug build: tells on standard error, with the calls that led there, whenever the thread that made it does not
/// come back to its events for more than 50 ms.
class BlockedWatch {
public:
    BlockedWatch();
    ~BlockedWatch();
    BlockedWatch(const BlockedWatch&) = delete;
    BlockedWatch& operator=(const BlockedWatch&) = delete;

private:
    void Watch();

    QTimer beat_;
    std::atomic<long> lastBeat_{0};  ///< milliseconds of a steady clock; 0 before the first events
    std::atomic<bool> isEnding_{false};
    std::thread watcher_;
};

}  // namespace vantor

#endif
