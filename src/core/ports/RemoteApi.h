#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace vantor {

/// The remote API of the desktop's synchronisation service, by which files of a handheld are reached. Device paths
/// begin with "\". A handle of InvalidHandle stands for failure; the reason is then asked of CeRapiGetError.
class RemoteApi {
public:
    using Handle = std::intptr_t;
    static constexpr Handle InvalidHandle = -1;

    /// What CeRapiInitEx fills: the event that is set when the connection stands, and its result then.
    struct RapiInit {
        std::uint32_t Size = 12;
        Handle InitEvent = 0;
        std::int32_t InitResult = 0;
    };
    enum class WaitResult { Signalled, TimedOut };
    enum class Access { Read, Write };
    enum class Creation { OpenExisting, CreateAlways };

    virtual ~RemoteApi() = default;
    /// 0 for success. `init` stays alive until CeRapiUninit: its result is written when its event is set.
    virtual std::int32_t CeRapiInitEx(RapiInit& init) = 0;
    virtual WaitResult WaitForSingleObject(Handle event, std::uint32_t milliseconds) = 0;
    virtual void CeRapiUninit() = 0;
    /// 0 where the remote API itself reports no error.
    virtual std::int32_t CeRapiGetError() = 0;

    virtual Handle CeCreateFile(const std::string& path, Access access, Creation creation) = 0;
    /// False for failure; `read` is the number of bytes read.
    virtual bool CeReadFile(Handle file, std::span<std::byte> into, std::uint32_t& read) = 0;
    virtual bool CeWriteFile(Handle file, std::span<const std::byte> bytes, std::uint32_t& written) = 0;
    /// 0xFFFFFFFF for failure.
    virtual std::uint32_t CeGetFileSize(Handle file) = 0;
    /// A handle to close when a file of that name exists.
    virtual Handle CeFindFirstFile(const std::string& path) = 0;
    virtual void CeCloseHandle(Handle handle) = 0;
};

}  // namespace vantor
