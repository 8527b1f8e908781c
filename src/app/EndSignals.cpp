#include "app/EndSignals.h"

#include <utility>

#ifndef _WIN32
#include <fcntl.h>
#include <signal.h>
#include <unistd.h>

#include <QSocketNotifier>
#include <array>
#include <cerrno>
#endif

namespace vantor {

#ifdef _WIN32

struct EndSignals::Receiver {};
EndSignals::EndSignals(std::function<void(int)>) {}
EndSignals::~EndSignals() = default;

#else

namespace {

constexpr std::array Watched = {SIGTERM, SIGINT, SIGHUP};
/// A signal's handler can reach nothing but this.
volatile sig_atomic_t writeEnd = -1;

void Tell(int number) {
    const int error = errno;
    const auto byte = static_cast<unsigned char>(number);
    // A full pipe has told of a signal already.
    if (write(writeEnd, &byte, 1) < 0) errno = error;
}

}  // namespace

struct EndSignals::Receiver {
    std::array<int, 2> Ends{-1, -1};
    std::unique_ptr<QSocketNotifier> Notifier;
    std::array<struct sigaction, Watched.size()> Before{};
};

EndSignals::EndSignals(std::function<void(int)> onSignal) : receiver_(std::make_unique<Receiver>()) {
    std::array<int, 2>& ends = receiver_->Ends;
    if (pipe(ends.data()) != 0) return;
    for (const int end : ends) {
        fcntl(end, F_SETFD, FD_CLOEXEC);
        fcntl(end, F_SETFL, O_NONBLOCK);
    }
    writeEnd = ends[1];
    receiver_->Notifier = std::make_unique<QSocketNotifier>(ends[0], QSocketNotifier::Read);
    QObject::connect(receiver_->Notifier.get(), &QSocketNotifier::activated,
                     [from = ends[0], onSignal = std::move(onSignal)] {
                         unsigned char number = 0;
                         if (read(from, &number, 1) == 1) onSignal(number);
                     });
    struct sigaction action {};
    action.sa_handler = Tell;
    action.sa_flags = SA_RESTART;
    for (std::size_t i = 0; i < Watched.size(); ++i) {
        sigaction(Watched[i], nullptr, &receiver_->Before[i]);
        // What the user's shell told the program to ignore (nohup) stays ignored.
        if (receiver_->Before[i].sa_handler != SIG_IGN) sigaction(Watched[i], &action, nullptr);
    }
}

EndSignals::~EndSignals() {
    if (!receiver_->Notifier) return;
    for (std::size_t i = 0; i < Watched.size(); ++i) sigaction(Watched[i], &receiver_->Before[i], nullptr);
    receiver_->Notifier.reset();
    for (const int end : receiver_->Ends) close(end);
}

#endif

}  // namespace vantor
