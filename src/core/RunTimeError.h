#pragma once

#include <stdexcept>
#include <string>

namespace vantor {

/// The classic run-time error numbers that the program raises.
enum class ErrorNumber : int {
    Overflow = 6,
    OutOfMemory = 7,
    SubscriptOutOfRange = 9,
    DivisionByZero = 11,
    TypeMismatch = 13,
    FileNotFound = 53,
    DeviceIoError = 57,
    FileAlreadyExists = 58,
    DiskFull = 61,
    InputPastEndOfFile = 62,
    PermissionDenied = 70,
    PathFileAccessError = 75,
    PathNotFound = 76,
    PrinterError = 482,
    InvalidPortNumber = 8002,
    PortAlreadyOpen = 8005,
};

/// The text that belongs to a number, for example "Overflow".
std::string ErrorText(ErrorNumber number);

/// A broken rule: the operation under way is abandoned, what is stored stays as it was.
/// Thrown by rules and adapters, caught at one boundary around every event handler and command.
class RunTimeError : public std::runtime_error {
public:
    /// `place` names the file, the record and the remedy where they are known; it may be empty.
    explicit RunTimeError(ErrorNumber number, std::string place = {});

    ErrorNumber Number() const { return number_; }
    const std::string& Place() const { return place_; }

    /// "Run-time error '62':", a line break, "Input past end of file", and the place on a line of its own.
    std::string Message() const;

private:
    ErrorNumber number_;
    std::string place_;
};

/// What memory that does not suffice is told as.
RunTimeError OutOfMemoryError();

}  // namespace vantor
