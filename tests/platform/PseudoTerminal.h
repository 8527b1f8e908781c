#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>
#include <stdexcept>
#include <string>
#include <string_view>

namespace vantor {

/// A serial line made of a pseudo-terminal pair: the counter's end, and a device for the program to open. While it
/// lives, the device is port COMn.
class PseudoTerminal {
public:
    explicit PseudoTerminal(int number) : variable_("VANTOR_COM" + std::to_string(number)) {
        counterEnd_ = posix_openpt(O_RDWR | O_NOCTTY);
        if (counterEnd_ < 0 || grantpt(counterEnd_) != 0 || unlockpt(counterEnd_) != 0)
            throw std::runtime_error("no pseudo-terminal");
        Device = ptsname(counterEnd_);
        setenv(variable_.c_str(), Device.c_str(), 1);
    }
    ~PseudoTerminal() {
        Unplug();
        unsetenv(variable_.c_str());
    }
    PseudoTerminal(const PseudoTerminal&) = delete;
    PseudoTerminal& operator=(const PseudoTerminal&) = delete;

    /// Waits while the line is full.
    void Send(std::string_view bytes) const {
        while (!bytes.empty()) {
            const ssize_t count = write(counterEnd_, bytes.data(), bytes.size());
            if (count < 0) throw std::runtime_error("the line is dead");
            bytes.remove_prefix(static_cast<std::size_t>(count));
        }
    }
    /// The device vanishes, and with it what waits in the line.
    void Unplug() {
        if (counterEnd_ >= 0) close(counterEnd_);
        counterEnd_ = -1;
    }

    std::string Device;

private:
    std::string variable_;
    int counterEnd_ = -1;
};

}  // namespace vantor
