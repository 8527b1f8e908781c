#include "platform/TerminalProgress.h"

#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <memory>

#ifndef _WIN32
#include <unistd.h>
#endif

namespace vantor {
namespace {

using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

/// A signal's handler can reach nothing but this.
std::atomic<int> stoppingSignal{0};
static_assert(std::atomic<int>::is_always_lock_free);

void NoteSignal(int number) {
    stoppingSignal = number;
    std::signal(number, SIG_DFL);
}

void WatchSignals() {
#ifdef _WIN32
    for (const int number : {SIGINT, SIGTERM}) std::signal(number, NoteSignal);
#else
    for (const int number : {SIGINT, SIGTERM, SIGHUP})
        // What the user's shell told the program to ignore (nohup) stays ignored.
        if (std::signal(number, NoteSignal) == SIG_IGN) std::signal(number, SIG_IGN);
#endif
}

bool IsTerminal() {
#ifdef _WIN32
    return false;
#else
    return isatty(STDERR_FILENO) != 0;
#endif
}

/// One line that is written over and over; work that ends within half a second shows none.
class ProgressLine {
public:
    ProgressLine() { WatchSignals(); }
    ~ProgressLine() { Clear(); }
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    bool Show(double done) {
        const bool goesOn = stoppingSignal == 0;
        if (!isTerminal_) return goesOn;
        const int percent = static_cast<int>(done * 100);
        if (!goesOn || done >= 1) {
            Clear();
        } else if (percent != shown_ && Clock::now() - begun_ >= 500ms) {
            shown_ = percent;
            std::fprintf(stderr, "\r%3d %%", percent);
            std::fflush(stderr);
        }
        return goesOn;
    }

private:
    void Clear() {
        if (shown_ < 0) return;
        shown_ = -1;
        std::fputs("\r     \r", stderr);
        std::fflush(stderr);
    }

    const bool isTerminal_ = IsTerminal();
    const Clock::time_point begun_ = Clock::now();
    int shown_ = -1;
};

}  // namespace

Progress TerminalProgress() {
    // Until there is work to stop, a signal ends the program as it does any other.
    return Progress([line = std::make_shared<std::unique_ptr<ProgressLine>>()](double done) {
        if (!*line) *line = std::make_unique<ProgressLine>();
        return (*line)->Show(done);
    });
}

int StoppingSignal() { return stoppingSignal; }

}  // namespace vantor
