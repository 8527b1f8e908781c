#pragma once

#include <QSerialPort>

#include "core/ports/SerialPort.h"
#include "platform/LineCounters.h"

namespace vantor {

/// The serial ports of this computer. Port n is COMn on Windows; elsewhere the device that the environment variable
/// VANTOR_COMn names, else /dev/ttyS(n-1) for 1 to 8 and /dev/ttyUSB(n-9), then /dev/ttyACM(n-9), for 9 to 16.
class QtSerialPort : public SerialPort {
public:
    using CountersOf = std::function<std::optional<LineCounters>(SerialHandle)>;

    explicit QtSerialPort(CountersOf countersOf = ReadLineCounters);

    void SetNumber(std::int16_t number) override;
    void SetSettings(const std::string& settings) override;
    void Open() override;
    void Close() override;
    bool IsOpen() const override;
    std::string ReadAll() override;
    std::string DeviceName(std::int16_t number) const override;
    std::string Description(std::int16_t number) const override;

private:
    /// "COM5, /dev/ttyS4" and the remedy on the next line.
    std::string Place(const std::string& remedy) const;
    [[noreturn]] void ThrowOpenError() const;
    void TakeData();
    void TakeError(QSerialPort::SerialPortError error);
    void Raise(SerialEvent event);

    CountersOf countersOf_;
    QSerialPort port_;
    std::int16_t number_ = FirstNumber;
    std::optional<LineCounters> counters_;
    bool isGone_ = false;
};

}  // namespace vantor
