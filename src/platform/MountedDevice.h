#pragma once

#include <map>
#include <memory>
#include <string>
#include <utility>

#include "core/ports/FileSystem.h"
#include "core/ports/RemoteApi.h"

namespace vantor {

/// A handheld whose storage is mounted as a folder: device path "\Program Files\Roampad\X" is the file of that name
/// below it, letter case ignored. A path that would leave the folder is no file. Answers at once; reports an error
/// when the folder is gone.
class MountedDevice : public RemoteApi {
public:
    /// With an empty or missing folder there is no device, and CeRapiInitEx fails.
    MountedDevice(FileSystem& files, std::string folder) : files_(files), folder_(std::move(folder)) {}

    std::int32_t CeRapiInitEx(RapiInit& init) override;
    WaitResult WaitForSingleObject(Handle event, std::uint32_t milliseconds) override;
    /// Closes what is still open.
    void CeRapiUninit() override;
    std::int32_t CeRapiGetError() override;
    Handle CeCreateFile(const std::string& path, Access access, Creation creation) override;
    bool CeReadFile(Handle file, std::span<std::byte> into, std::uint32_t& read) override;
    bool CeWriteFile(Handle file, std::span<const std::byte> bytes, std::uint32_t& written) override;
    std::uint32_t CeGetFileSize(Handle file) override;
    Handle CeFindFirstFile(const std::string& path) override;
    void CeCloseHandle(Handle handle) override;

private:
    struct OpenFile {
        std::unique_ptr<InputFile> Input;
        std::unique_ptr<GrowingFile> Output;
    };

    bool IsThere() const;
    /// The file that a device path means; empty for one that leaves the folder.
    std::string Located(const std::string& path) const;
    Handle Keep(OpenFile file);
    OpenFile* Known(Handle handle);

    FileSystem& files_;
    std::string folder_;
    std::map<Handle, OpenFile> open_;
    Handle lastHandle_ = 0;
};

/// The way to the handheld on this computer: the desktop's synchronisation service where its library is installed, else
/// the folder that the environment variable VANTOR_DEVICE_FOLDER names. `files` must outlive it.
std::unique_ptr<RemoteApi> MakeRemoteApi(FileSystem& files);

}  // namespace vantor
