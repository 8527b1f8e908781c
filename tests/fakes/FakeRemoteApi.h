#pragma once

#include <algorithm>
#include <map>
#include <string>
#include <vector>

#include "core/RunTimeError.h"
#include "core/ports/RemoteApi.h"

namespace vantor {

/// A handheld with files in memory. Records every call by name and fails in the one that it is told to.
class FakeRemoteApi : public RemoteApi {
public:
    std::map<std::string, std::vector<std::byte>> Files;  ///< by device path
    std::vector<std::string> Calls;
    std::vector<std::size_t> Pieces;  ///< sizes written
    std::string Failing;              ///< the call that fails
    int CallsBeforeFailure = 0;       ///< of the failing one that go well
    std::string Throwing;             ///< the call that ends with a run-time error
    std::int32_t ReportedError = 0;   ///< of the remote API itself
    std::int32_t LateResult = 0;      ///< the result of the connection when its event is set
    std::size_t OpenHandles() const { return open_.size(); }

    std::ptrdiff_t CountOf(const std::string& call) const { return std::count(Calls.begin(), Calls.end(), call); }

    std::int32_t CeRapiInitEx(RapiInit& init) override {
        if (Fails("CeRapiInitEx")) return -1;
        init.InitEvent = 7;
        init_ = &init;
        return 0;
    }
    WaitResult WaitForSingleObject(Handle event, std::uint32_t milliseconds) override {
        // A device that takes longer than the wait.
        if (Fails("WaitForSingleObject") || event != 7 || milliseconds != 10000) return WaitResult::TimedOut;
        init_->InitResult = LateResult;
        return WaitResult::Signalled;
    }
    void CeRapiUninit() override {
        Fails("CeRapiUninit");
        open_.clear();
    }
    std::int32_t CeRapiGetError() override {
        Fails("CeRapiGetError");
        return ReportedError;
    }
    Handle CeCreateFile(const std::string& path, Access access, Creation creation) override {
        if (Fails("CeCreateFile")) return InvalidHandle;
        if (creation == Creation::CreateAlways) Files[path].clear();
        if ((access == Access::Read) != (creation == Creation::OpenExisting) || Files.count(path) == 0)
            return InvalidHandle;
        return Opened(path);
    }
    bool CeReadFile(Handle file, std::span<std::byte> into, std::uint32_t& read) override {
        if (Fails("CeReadFile")) return false;
        const std::vector<std::byte>& bytes = Files.at(open_.at(file));
        std::copy_n(bytes.begin(), into.size(), into.begin());
        read = static_cast<std::uint32_t>(into.size());
        return true;
    }
    bool CeWriteFile(Handle file, std::span<const std::byte> bytes, std::uint32_t& written) override {
        if (Fails("CeWriteFile")) return false;
        std::vector<std::byte>& whole = Files.at(open_.at(file));
        whole.insert(whole.end(), bytes.begin(), bytes.end());
        Pieces.push_back(bytes.size());
        written = static_cast<std::uint32_t>(bytes.size());
        return true;
    }
    std::uint32_t CeGetFileSize(Handle file) override {
        if (Fails("CeGetFileSize")) return 0xFFFFFFFF;
        return static_cast<std::uint32_t>(Files.at(open_.at(file)).size());
    }
    Handle CeFindFirstFile(const std::string& path) override {
        return Fails("CeFindFirstFile") || Files.count(path) == 0 ? InvalidHandle : Opened(path);
    }
    void CeCloseHandle(Handle handle) override {
        Fails("CeCloseHandle");
        open_.erase(handle);
    }

private:
    bool Fails(const std::string& call) {
        Calls.push_back(call);
        if (call == Throwing) throw RunTimeError(ErrorNumber::DeviceIoError, call);
        return call == Failing && CallsBeforeFailure-- <= 0;
    }
    Handle Opened(const std::string& path) {
        open_[++lastHandle_] = path;
        return lastHandle_;
    }

    std::map<Handle, std::string> open_;
    Handle lastHandle_ = 100;
    RapiInit* init_ = nullptr;
};

}  // namespace vantor
