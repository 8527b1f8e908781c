#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>

#include "core/RunTimeError.h"

namespace vantor {

/// What a receive event tells, with the classic numbers of serial port events.
enum class SerialEvent : int { Received = 2, Overrun = 1006, ReceiveBufferOverflow = 1008 };

/// A serial line that is only listened to: nothing is sent, no flow control, no modem lines.
class SerialPort {
public:
    static constexpr std::int16_t FirstNumber = 1;
    static constexpr std::int16_t LastNumber = 16;
    /// The speeds of the counter's menu, in bits per second.
    static constexpr std::array<std::int32_t, 8> BaudRates{4800, 9600, 14400, 19200, 28800, 38400, 57600, 115200};

    virtual ~SerialPort() = default;

    /// The port that the next Open opens.
    virtual void SetNumber(std::int16_t number) = 0;
    /// The line settings of the next Open: the baud rate followed by ",n,8,1" (no parity, 8 data bits, 1 stop bit).
    /// Error 13 for any other text.
    virtual void SetSettings(const std::string& settings) = 0;
    /// Errors name the port and the remedy: 8002 no such port, 8005 open already, here or in another program,
    /// 70 permission denied, 57 anything else.
    virtual void Open() = 0;
    /// Nothing when the port is closed.
    virtual void Close() = 0;
    virtual bool IsOpen() const = 0;
    /// All bytes that wait. Error 57 when none does because the device is gone.
    virtual std::string ReadAll() = 0;
    /// The system's name of a port, for example "/dev/ttyS0".
    virtual std::string DeviceName(std::int16_t number) const = 0;
    /// What the system knows of the device that is plugged in there, "USB Serial Converter"; empty where it knows
    /// nothing.
    virtual std::string Description(std::int16_t number) const = 0;

    /// Called while the port is open, from one byte on. A device that is gone is told as Received, too.
    std::function<void(SerialEvent)> OnEvent;

    /// True when the port can be opened; it is closed again at once.
    bool IsAvailable(std::int16_t number) {
        try {
            SetNumber(number);
            Open();
            Close();
            return true;
        } catch (const RunTimeError&) {
            return false;
        }
    }
};

}  // namespace vantor
