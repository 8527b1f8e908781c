#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "core/AppContext.h"
#include "gpsobd/LogScreens.h"

namespace vantor {

/// Asks whether to copy the database of a handheld into the field data folder.
bool WantsDeviceCopy(MessageBoxes& messages, const LogDevice& device);

/// Copies the database of a handheld into a folder, which ends in a separator, over one of the same name, and waits a
/// second by `delay` (milliseconds). Tells the user why where it cannot be copied. The connection is ended either way,
/// so that the next copy can open one.
void CopyFromDevice(AppContext& context, const LogDevice& device, const std::string& folder,
                    const std::function<void(std::int16_t)>& delay);

}  // namespace vantor
