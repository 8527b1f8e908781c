#ifndef NDEBUG

#include "app/BlockedWatch.h"

#include <QAbstractEventDispatcher>
#include <QThread>
#include <chrono>
#include <cstdio>

#ifdef __linux__
#include <execinfo.h>
#include <pthread.h>
#include <signal.h>
#include <unistd.h>

#include <array>
#endif

namespace vantor {
namespace {

using namespace std::chrono_literals;

constexpr long LongestBusy = 50;  // milliseconds

long Now() {
    return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

#ifdef __linux__

pthread_t watched;

void PrintCalls(int) {
    std::array<void*, 32> calls{};
    backtrace_symbols_fd(calls.data(), backtrace(calls.data(), static_cast<int>(calls.size())), STDERR_FILENO);
}

void BeginToPrintCalls() {
    watched = pthread_self();
    // The first call loads a library, which a signal's handler must not.
    std::array<void*, 1> one{};
    backtrace(one.data(), 1);
    signal(SIGUSR2, PrintCalls);
}

void PrintCallsOfWatched() { pthread_kill(watched, SIGUSR2); }

#else

void BeginToPrintCalls() {}
void PrintCallsOfWatched() {}

#endif

}  // namespace

BlockedWatch::BlockedWatch() {
    BeginToPrintCalls();
    QAbstractEventDispatcher* const events = QThread::currentThread()->eventDispatcher();
    QObject::connect(events, &QAbstractEventDispatcher::awake, events, [this] { busySince_ = Now(); });
    QObject::connect(events, &QAbstractEventDispatcher::aboutToBlock, events, [this] { busySince_ = 0; });
    watcher_ = std::thread([this] { Watch(); });
}

BlockedWatch::~BlockedWatch() {
    isEnding_ = true;
    watcher_.join();
    QThread::currentThread()->eventDispatcher()->disconnect();
}

void BlockedWatch::Watch() {
    for (long told = 0; !isEnding_; std::this_thread::sleep_for(10ms)) {
        const long since = busySince_;
        if (since == 0 || since == told || Now() - since <= LongestBusy) continue;
        told = since;
        std::fprintf(stderr, "The window's thread has been busy for %ld ms:\n", Now() - since);
        PrintCallsOfWatched();
    }
}

}  // namespace vantor

#endif
