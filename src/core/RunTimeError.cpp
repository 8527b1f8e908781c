#include "core/RunTimeError.h"

#include <utility>

namespace vantor {

std::string ErrorText(ErrorNumber number) {
    switch (number) {
        case ErrorNumber::Overflow: return "Overflow";
        case ErrorNumber::OutOfMemory: return "Out of memory";
        case ErrorNumber::SubscriptOutOfRange: return "Subscript out of range";
        case ErrorNumber::DivisionByZero: return "Division by zero";
        case ErrorNumber::TypeMismatch: return "Type mismatch";
        case ErrorNumber::FileNotFound: return "File not found";
        case ErrorNumber::DeviceIoError: return "Device I/O error";
        case ErrorNumber::FileAlreadyExists: return "File already exists";
        case ErrorNumber::DiskFull: return "Disk full";
        case ErrorNumber::InputPastEndOfFile: return "Input past end of file";
        case ErrorNumber::PermissionDenied: return "Permission denied";
        case ErrorNumber::PathFileAccessError: return "Path/File access error";
        case ErrorNumber::PathNotFound: return "Path not found";
        case ErrorNumber::PrinterError: return "Printer error";
        case ErrorNumber::InvalidPortNumber: return "Invalid port number";
        case ErrorNumber::PortAlreadyOpen: return "Port already open";
    }
    return "Application-defined error";
}

RunTimeError::RunTimeError(ErrorNumber number, std::string place)
    : std::runtime_error(ErrorText(number)), number_(number), place_(std::move(place)) {}

RunTimeError OutOfMemoryError() {
    return RunTimeError(
        ErrorNumber::OutOfMemory,
        "There is not enough memory for this. Close other programs, or take a smaller file, and try again.");
}

std::string RunTimeError::Message() const {
    std::string message = "Run-time error '" + std::to_string(static_cast<int>(number_)) + "':\n" + what();
    if (!place_.empty()) message += "\n\n" + place_;
    return message;
}

}  // namespace vantor
