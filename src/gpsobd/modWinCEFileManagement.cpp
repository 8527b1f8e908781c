#include "gpsobd/modWinCEFileManagement.h"

#include <algorithm>
#include <optional>
#include <span>
#include <vector>

#include "core/Backup.h"
#include "core/Numeric.h"
#include "core/RunTimeError.h"
#include "core/modMain.h"
#include "gpsobd/IFileTransfer.h"
#include "gpsobd/modWinCERAPIConnectionHandler.h"

namespace vantor {
namespace {

constexpr std::uint32_t NoSize = 0xFFFFFFFF;

/// A handle of the device, closed with its owner.
class OpenHandle {
public:
    OpenHandle(RemoteApi& api, RemoteApi::Handle handle) : api_(api), handle_(handle) {}
    OpenHandle(const OpenHandle&) = delete;
    OpenHandle& operator=(const OpenHandle&) = delete;
    ~OpenHandle() {
        if (IsValid()) api_.CeCloseHandle(handle_);
    }

    bool IsValid() const { return handle_ != RemoteApi::InvalidHandle; }
    RemoteApi::Handle Get() const { return handle_; }
    /// Leaves the handle open; the end of the connection closes it.
    void Release() { handle_ = RemoteApi::InvalidHandle; }

private:
    RemoteApi& api_;
    RemoteApi::Handle handle_;
};

/// To be asked before a handle is closed or the connection ended: both replace the error.
std::int32_t DeviceFailure(RemoteApi& api, std::int32_t withoutReportedError) {
    return api.CeRapiGetError() != 0 ? NoConnection : withoutReportedError;
}

std::optional<std::vector<std::byte>> ReadDeviceFile(RemoteApi& api, const OpenHandle& file) {
    if (!file.IsValid()) return std::nullopt;
    const std::uint32_t size = api.CeGetFileSize(file.Get());
    if (size == NoSize) return std::nullopt;
    std::vector<std::byte> bytes(size);
    std::uint32_t read = 0;
    if (!api.CeReadFile(file.Get(), bytes, read) || read != size) return std::nullopt;
    return bytes;
}

bool WriteDesktopFile(FileSystem& files, const std::string& path, std::span<const std::byte> bytes) {
    try {
        WriteKeepingOld(files, path, bytes);
        return true;
    } catch (const RunTimeError&) {
        return false;
    }
}

/// Empty for a file that cannot be read.
std::vector<std::byte> ReadDesktopFile(const FileSystem& files, const std::string& path) {
    try {
        return ReadFirstBytes(files, path, UINT64_MAX);
    } catch (const RunTimeError&) {
        return {};
    }
}

bool WriteInPieces(RemoteApi& api, RemoteApi::Handle file, std::span<const std::byte> bytes) {
    const std::int32_t rounded = Round32(static_cast<double>(bytes.size()) / 20);
    const std::size_t pieceSize = rounded == 0 ? bytes.size() : static_cast<std::size_t>(rounded);
    while (!bytes.empty()) {
        const auto piece = bytes.first(std::min(pieceSize, bytes.size()));
        std::uint32_t written = 0;
        if (!api.CeWriteFile(file, piece, written) || written != piece.size()) return false;
        bytes = bytes.subspan(piece.size());
    }
    return true;
}

std::int32_t FetchFromDevice(RemoteApi& api, FileSystem& files, const std::string& devicePath,
                             const std::string& desktopPath, bool overwrite) {
    if (!overwrite && FileExists(files, desktopPath)) return DestinationExists;
    const OpenHandle file(api,
                          api.CeCreateFile(devicePath, RemoteApi::Access::Read, RemoteApi::Creation::OpenExisting));
    const auto bytes = ReadDeviceFile(api, file);
    if (!bytes) return DeviceFailure(api, SourceMissing);
    return WriteDesktopFile(files, desktopPath, *bytes) ? Copied : WriteFailed;
}

std::int32_t PutOnDevice(RemoteApi& api, const FileSystem& files, const std::string& desktopPath,
                         const std::string& devicePath, bool overwrite) {
    if (!overwrite) {
        if (OpenHandle(api, api.CeFindFirstFile(devicePath)).IsValid()) return DestinationExists;
        if (api.CeRapiGetError() != 0) return NoConnection;
    }
    if (!FileExists(files, desktopPath)) return SourceMissing;
    OpenHandle file(api, api.CeCreateFile(devicePath, RemoteApi::Access::Write, RemoteApi::Creation::CreateAlways));
    if (!file.IsValid()) return DeviceFailure(api, DeviceFileNotMade);
    const std::vector<std::byte> bytes = ReadDesktopFile(files, desktopPath);
    if (bytes.empty()) return SourceEmpty;
    if (!WriteInPieces(api, file.Get(), bytes)) return DeviceFailure(api, WriteFailed);
    file.Release();
    return Copied;
}

std::int32_t EndingUnlessCopied(HandheldState& state, RemoteApi& api, std::int32_t result) {
    if (result != Copied) Terminate(state, api);
    return result;
}

}  // namespace

std::int32_t CopyToDesktop(HandheldState& state, RemoteApi& api, FileSystem& files, const std::string& devicePath,
                           const std::string& desktopPath, bool overwrite) {
    if (!state.ConnectionOpen) return NoConnection;
    return EndingUnlessCopied(state, api, FetchFromDevice(api, files, devicePath, desktopPath, overwrite));
}

std::int32_t CopyToDevice(HandheldState& state, RemoteApi& api, const FileSystem& files, const std::string& desktopPath,
                          const std::string& devicePath, bool overwrite) {
    if (!state.ConnectionOpen) return NoConnection;
    return EndingUnlessCopied(state, api, PutOnDevice(api, files, desktopPath, devicePath, overwrite));
}

}  // namespace vantor
