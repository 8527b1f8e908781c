#pragma once

#include "core/ApplicationState.h"
#include "core/ports/FileSystem.h"
#include "core/ports/RemoteApi.h"
#include "gpsobd/IFileTransfer.h"

namespace vantor {

/// Transfer to and from a Pocket PC. Holds no state of its own: the connection belongs to the program.
class clsPPCFileTransfer : public IFileTransfer {
public:
    clsPPCFileTransfer(HandheldState& state, RemoteApi& api, FileSystem& files)
        : state_(state), api_(api), files_(files) {}

    std::int32_t CopyToDesktop(const std::string& devicePath, const std::string& desktopPath, bool overwrite) override;
    std::int32_t CopyToDevice(const std::string& desktopPath, const std::string& devicePath, bool overwrite) override;
    void Terminate() override;
    bool Initialize() override;

private:
    HandheldState& state_;
    RemoteApi& api_;
    FileSystem& files_;
};

}  // namespace vantor
