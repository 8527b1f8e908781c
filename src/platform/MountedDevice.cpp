#include "platform/MountedDevice.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "core/Paths.h"
#include "core/RunTimeError.h"
#ifdef _WIN32
#include "platform/WindowsRemoteApi.h"
#endif

namespace vantor {
namespace {

// "Unspecified failure", as the remote API numbers it.
constexpr std::int32_t Failure = static_cast<std::int32_t>(0x80004005);
constexpr std::uint32_t NoSize = 0xFFFFFFFF;

}  // namespace

bool MountedDevice::IsThere() const {
    const auto info = folder_.empty() ? std::nullopt : files_.Find(folder_);
    return info && info->IsFolder;
}

std::string MountedDevice::Located(const std::string& path) const {
    std::string located = AsFolder(folder_);
    std::size_t start = 1;
    if (!path.starts_with('\\')) return {};
    while (true) {
        const std::size_t end = std::min(path.find('\\', start), path.size());
        const std::string name = path.substr(start, end - start);
        if (!IsSafeName(name)) return {};
        located += name;
        if (end == path.size()) return located;
        located += PathSeparator;
        start = end + 1;
    }
}

RemoteApi::Handle MountedDevice::Keep(OpenFile file) {
    open_.emplace(++lastHandle_, std::move(file));
    return lastHandle_;
}

MountedDevice::OpenFile* MountedDevice::Known(Handle handle) {
    const auto found = open_.find(handle);
    return found == open_.end() ? nullptr : &found->second;
}

std::int32_t MountedDevice::CeRapiInitEx(RapiInit& init) {
    init.InitResult = CeRapiGetError();
    return init.InitResult;
}

RemoteApi::WaitResult MountedDevice::WaitForSingleObject(Handle, std::uint32_t) { return WaitResult::Signalled; }

void MountedDevice::CeRapiUninit() {
    while (!open_.empty()) CeCloseHandle(open_.begin()->first);
}

std::int32_t MountedDevice::CeRapiGetError() { return IsThere() ? 0 : Failure; }

RemoteApi::Handle MountedDevice::CeCreateFile(const std::string& path, Access access, Creation creation) {
    const std::string located = Located(path);
    if (located.empty()) return InvalidHandle;
    try {
        if (access == Access::Read) return Keep({files_.Open(located), nullptr});
        if (creation == Creation::CreateAlways && files_.Find(located)) files_.Delete(located);
        return Keep({nullptr, files_.Create(located)});
    } catch (const RunTimeError&) {
        return InvalidHandle;
    }
}

bool MountedDevice::CeReadFile(Handle file, std::span<std::byte> into, std::uint32_t& read) {
    read = 0;
    const OpenFile* known = Known(file);
    if (known == nullptr || !known->Input) return false;
    try {
        read = static_cast<std::uint32_t>(known->Input->Read(into));
        return true;
    } catch (const RunTimeError&) {
        return false;
    }
}

bool MountedDevice::CeWriteFile(Handle file, std::span<const std::byte> bytes, std::uint32_t& written) {
    written = 0;
    const OpenFile* known = Known(file);
    if (known == nullptr || !known->Output) return false;
    try {
        known->Output->Append(bytes);
        written = static_cast<std::uint32_t>(bytes.size());
        return true;
    } catch (const RunTimeError&) {
        return false;
    }
}

std::uint32_t MountedDevice::CeGetFileSize(Handle file) {
    const OpenFile* known = Known(file);
    if (known == nullptr || !known->Input || known->Input->Size() >= NoSize) return NoSize;
    return static_cast<std::uint32_t>(known->Input->Size());
}

RemoteApi::Handle MountedDevice::CeFindFirstFile(const std::string& path) {
    const std::string located = Located(path);
    return !located.empty() && files_.Find(located) ? Keep({}) : InvalidHandle;
}

void MountedDevice::CeCloseHandle(Handle handle) {
    const auto found = open_.find(handle);
    if (found == open_.end()) return;
    try {
        if (found->second.Output) found->second.Output->Close();
    } catch (const RunTimeError&) {
        // The device has no way to tell that a file could not be flushed.
    }
    open_.erase(found);
}

std::unique_ptr<RemoteApi> MakeRemoteApi(FileSystem& files) {
#ifdef _WIN32
    if (auto service = WindowsRemoteApi::Load()) return service;
#endif
    const char* folder = std::getenv("VANTOR_DEVICE_FOLDER");
    return std::make_unique<MountedDevice>(files, folder != nullptr ? folder : "");
}

}  // namespace vantor
