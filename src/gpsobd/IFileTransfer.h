#pragma once

#include <cstdint>
#include <string>

namespace vantor {

/// What a copy between desktop and handheld came to.
enum TransferResultCode : std::int32_t {
    Copied = 0,
    SourceMissing = 1,      ///< also a device file that cannot be opened, sized or read
    SourceEmpty = 2,        ///< or cannot be read; of CopyToDevice
    DestinationExists = 4,  ///< and overwriting was not allowed
    WriteFailed = 5,        ///< of the destination
    NoConnection = 6,       ///< or the remote API reports an error
    DeviceFileNotMade = 7,  ///< of CopyToDevice
};

/// Copies files between the desktop and a handheld. Device paths begin with "\" and have it as their separator.
/// A copy that fails ends the connection; after one that succeeds it stays open.
class IFileTransfer {
public:
    virtual ~IFileTransfer() = default;
    /// A TransferResultCode; the state keeps it as the transfer result. The desktop file appears whole or not at all.
    virtual std::int32_t CopyToDesktop(const std::string& devicePath, const std::string& desktopPath,
                                       bool overwrite) = 0;
    /// A TransferResultCode. After Copied the device file is open until Terminate.
    virtual std::int32_t CopyToDevice(const std::string& desktopPath, const std::string& devicePath,
                                      bool overwrite) = 0;
    /// Ends the connection if one is open.
    virtual void Terminate() = 0;
    /// True when a connection was opened; the state keeps it as the connected result. False while one is open.
    virtual bool Initialize() = 0;
};

}  // namespace vantor
