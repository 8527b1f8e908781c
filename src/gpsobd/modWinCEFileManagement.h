#pragma once

#include <cstdint>
#include <string>

#include "core/ApplicationState.h"
#include "core/ports/FileSystem.h"
#include "core/ports/RemoteApi.h"

namespace vantor {

/// As IFileTransfer has it, but for keeping the result.
std::int32_t CopyToDesktop(HandheldState& state, RemoteApi& api, FileSystem& files, const std::string& devicePath,
                           const std::string& desktopPath, bool overwrite);

/// As IFileTransfer has it. The device gets the file in about 20 pieces.
std::int32_t CopyToDevice(HandheldState& state, RemoteApi& api, const FileSystem& files, const std::string& desktopPath,
                          const std::string& devicePath, bool overwrite);

}  // namespace vantor
