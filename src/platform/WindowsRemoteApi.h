#pragma once

#include <memory>

#include "core/ports/RemoteApi.h"

namespace vantor {

/// The remote API of the desktop's synchronisation service, its library loaded while the program runs. For Windows.
class WindowsRemoteApi : public RemoteApi {
public:
    /// Nothing where the library, or one of its functions, is missing.
    static std::unique_ptr<WindowsRemoteApi> Load();
    ~WindowsRemoteApi() override;

    std::int32_t CeRapiInitEx(RapiInit& init) override;
    WaitResult WaitForSingleObject(Handle event, std::uint32_t milliseconds) override;
    void CeRapiUninit() override;
    std::int32_t CeRapiGetError() override;
    Handle CeCreateFile(const std::string& path, Access access, Creation creation) override;
    bool CeReadFile(Handle file, std::span<std::byte> into, std::uint32_t& read) override;
    bool CeWriteFile(Handle file, std::span<const std::byte> bytes, std::uint32_t& written) override;
    std::uint32_t CeGetFileSize(Handle file) override;
    Handle CeFindFirstFile(const std::string& path) override;
    void CeCloseHandle(Handle handle) override;

private:
    struct Library;
    explicit WindowsRemoteApi(std::unique_ptr<Library> library);
    std::unique_ptr<Library> library_;
};

}  // namespace vantor
