#pragma once

#include <set>
#include <string>
#include <utility>
#include <vector>

#include "core/ports/SerialPort.h"

namespace vantor {

/// Serial ports whose lines the test speaks on. Ports that are not available fail with error 8002.
class FakeSerialPort : public SerialPort {
public:
    std::set<std::int16_t> Available{1, 3};
    std::int16_t Number = 0;
    std::string Settings;
    bool Opened = false;
    /// Numbers that were tried to be opened, in order.
    std::vector<std::int16_t> Tried;

    /// The counter sends; what is sent to a closed port is lost.
    void Send(const std::string& bytes) {
        if (!Opened) return;
        waiting_ += bytes;
        Raise(SerialEvent::Received);
    }
    void Raise(SerialEvent event) {
        if (Opened && OnEvent) OnEvent(event);
    }
    void Unplug() {
        isGone_ = true;
        Raise(SerialEvent::Received);
    }

    void SetNumber(std::int16_t number) override { Number = number; }
    void SetSettings(const std::string& settings) override { Settings = settings; }
    void Open() override {
        Tried.push_back(Number);
        if (Opened) throw RunTimeError(ErrorNumber::PortAlreadyOpen);
        if (Available.count(Number) == 0) throw RunTimeError(ErrorNumber::InvalidPortNumber, DeviceName(Number));
        Opened = true;
        isGone_ = false;
        waiting_.clear();
    }
    void Close() override { Opened = false; }
    bool IsOpen() const override { return Opened; }
    std::string ReadAll() override {
        if (waiting_.empty() && isGone_) throw RunTimeError(ErrorNumber::DeviceIoError, DeviceName(Number));
        return std::exchange(waiting_, {});
    }
    std::string DeviceName(std::int16_t number) const override { return "/dev/fake" + std::to_string(number); }
    std::string Description(std::int16_t number) const override { return number == 3 ? "USB Serial Converter" : ""; }

private:
    std::string waiting_;
    bool isGone_ = false;
};

}  // namespace vantor
