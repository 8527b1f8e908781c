#include "platform/QtSerialPort.h"

#include <QFileInfo>
#include <QSerialPortInfo>
#include <cstdlib>
#include <filesystem>
#include <utility>

#include "core/Numeric.h"
#include "core/forms/Named.h"

#ifndef _WIN32
#include <unistd.h>
#endif

namespace vantor {
namespace {

constexpr std::string_view FixedSettings = ",n,8,1";

/// True when the system refuses this user the device, whoever else may use it at the moment.
bool IsForbidden([[maybe_unused]] const std::string& device) {
#ifdef _WIN32
    return false;
#else
    return access(device.c_str(), R_OK) != 0;
#endif
}

}  // namespace

QtSerialPort::QtSerialPort(CountersOf countersOf) : countersOf_(std::move(countersOf)) {
    QObject::connect(&port_, &QSerialPort::readyRead, &port_, [this] { TakeData(); });
    QObject::connect(&port_, &QSerialPort::errorOccurred, &port_,
                     [this](QSerialPort::SerialPortError error) { TakeError(error); });
}

void QtSerialPort::SetNumber(std::int16_t number) { number_ = number; }

void QtSerialPort::SetSettings(const std::string& settings) {
    if (!settings.ends_with(FixedSettings)) throw RunTimeError(ErrorNumber::TypeMismatch, settings);
    port_.setBaudRate(IntegerOfText(settings.substr(0, settings.size() - FixedSettings.size())));
}

void QtSerialPort::Open() {
    if (number_ < FirstNumber || number_ > LastNumber)
        throw RunTimeError(ErrorNumber::InvalidPortNumber, "COM" + std::to_string(number_));
    if (IsOpen()) throw RunTimeError(ErrorNumber::PortAlreadyOpen, Place("Close it first."));
    port_.setPortName(ToQt(DeviceName(number_)));
    isGone_ = false;
    if (!port_.open(QIODevice::ReadOnly)) ThrowOpenError();
    counters_ = countersOf_(port_.handle());
}

void QtSerialPort::ThrowOpenError() const {
    switch (port_.error()) {
        case QSerialPort::DeviceNotFoundError:
            throw RunTimeError(ErrorNumber::InvalidPortNumber,
                               Place("There is no such device. Plug the cable in, or choose another port."));
        case QSerialPort::PermissionError:
            if (IsForbidden(DeviceName(number_)))
                throw RunTimeError(ErrorNumber::PermissionDenied,
                                   Place("This user may not open the device. On Linux the group dialout may."));
            throw RunTimeError(ErrorNumber::PortAlreadyOpen,
                               Place("Another program uses the port. Close it there, or choose another port."));
        default: throw RunTimeError(ErrorNumber::DeviceIoError, Place(FromQt(port_.errorString())));
    }
}

void QtSerialPort::Close() {
    if (IsOpen()) port_.close();
}

bool QtSerialPort::IsOpen() const { return port_.isOpen(); }

std::string QtSerialPort::ReadAll() {
    const QByteArray bytes = port_.readAll();
    if (bytes.isEmpty() && isGone_)
        throw RunTimeError(ErrorNumber::DeviceIoError,
                           Place("The device does not answer any more. Check the cable, then begin again."));
    return bytes.toStdString();
}

std::string QtSerialPort::DeviceName(std::int16_t number) const {
#ifdef _WIN32
    return "COM" + std::to_string(number);
#else
    const char* named = std::getenv(("VANTOR_COM" + std::to_string(number)).c_str());
    if (named != nullptr && *named != '\0') return named;
    constexpr int FirstUsbNumber = 9;
    if (number < FirstUsbNumber) return "/dev/ttyS" + std::to_string(number - 1);
    const std::string index = std::to_string(number - FirstUsbNumber);
    std::error_code ignored;
    const bool isModem = !std::filesystem::exists("/dev/ttyUSB" + index, ignored) &&
                         std::filesystem::exists("/dev/ttyACM" + index, ignored);
    return (isModem ? "/dev/ttyACM" : "/dev/ttyUSB") + index;
#endif
}

std::string QtSerialPort::Description(std::int16_t number) const {
    const QString device = ToQt(DeviceName(number));
    const QString followed = QFileInfo(device).canonicalFilePath();
    for (const QSerialPortInfo& info : QSerialPortInfo::availablePorts())
        if (info.systemLocation() == followed || info.portName() == device)
            return FromQt(info.description().simplified());
    return {};
}

std::string QtSerialPort::Place(const std::string& remedy) const {
    return "COM" + std::to_string(number_) + ", " + DeviceName(number_) + "\n" + remedy;
}

void QtSerialPort::TakeData() {
    const auto now = countersOf_(port_.handle());
    const auto before = std::exchange(counters_, now);
    if (now && before && now->Overruns != before->Overruns)
        Raise(SerialEvent::Overrun);
    else if (now && before && now->BufferOverflows != before->BufferOverflows)
        Raise(SerialEvent::ReceiveBufferOverflow);
    Raise(SerialEvent::Received);
}

void QtSerialPort::TakeError(QSerialPort::SerialPortError error) {
    const bool isLoss = error == QSerialPort::ReadError || error == QSerialPort::ResourceError;
    if (!isLoss || !IsOpen() || isGone_) return;
    isGone_ = true;
    Raise(SerialEvent::Received);
}

void QtSerialPort::Raise(SerialEvent event) {
    if (IsOpen() && OnEvent) OnEvent(event);
}

}  // namespace vantor
