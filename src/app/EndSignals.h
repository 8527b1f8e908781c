#pragma once

#include <functional>
#include <memory>

namespace vantor {

/// While it lives, signals that ask the program to end (SIGTERM, SIGINT, SIGHUP) come to the window's thread as a call
/// between two events. Where the system knows none of them it does nothing.
class EndSignals {
public:
    explicit EndSignals(std::function<void(int signal)> onSignal);
    ~EndSignals();
    EndSignals(const EndSignals&) = delete;
    EndSignals& operator=(const EndSignals&) = delete;

private:
    struct Receiver;
    std::unique_ptr<Receiver> receiver_;
};

}  // namespace vantor
