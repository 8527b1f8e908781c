#ifndef NDEBUG

#include "app/BlockedWatch.h"

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
constexpr auto BeatInterval = 10ms;

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

// A timer and not the dispatcher's signals: the one over GLib handles the events between "about to block" and "awake".
BlockedWatch::BlockedWatch() {
    BeginToPrintCalls();
    QObject::connect(&beat_, &QTimer::timeout, &beat_, [this] {
        const long last = lastBeat_.exchange(Now());
        const long busy = last == 0 ? 0 : Now() - last;
        if (busy > LongestBusy + BeatInterval.count())
            std::fprintf(stderr, "The window's thread was busy for %ld ms in all.\n", busy);
    });
    beat_.start(BeatInterval);
    watcher_ = std::thread([this] { Watch(); });
}

BlockedWatch::~BlockedWatch() {
    isEnding_ = true;
    watcher_.join();
}

void BlockedWatch::Watch() {
    for (long told = 0; !isEnding_; std::this_thread::sleep_for(BeatInterval)) {
        const long last = lastBeat_;
        if (last == told || Now() - last <= LongestBusy + BeatInterval.count()) continue;
        told = last;
        std::fprintf(stderr, "The window's thread has been busy for %ld ms:\n", Now() - last);
        PrintCallsOfWatched();
    }
}

}  // namespace vantor

#endif
