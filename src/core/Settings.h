#pragma once

#include <string>
#include <string_view>

#include "core/ApplicationState.h"
#include "core/Units.h"
#include "core/ports/FileSystem.h"

namespace vantor {

inline constexpr const char* SettingsFileName = "VANTOR.bin";

/// The folder as it comes back from the settings record: trimmed, cut at its width, "?" for what Windows-1252 lacks.
std::string StoredFolder(std::string_view folder);

/// Fills the settings, their working paths, the unit labels, the user's choices and SettingsWereMissing. Without a
/// settings file the first-run defaults are formed from the current folder and nothing is written. A folder that the
/// record cannot hold whole comes from the user's choices, as long as the record holds what fits of it.
void LoadSettings(ApplicationState& state, const FileSystem& files);

/// Writes the settings file, with the working copies of all folders but the Study Group root: a new root is only
/// in the record and takes effect at the next start. Folders that the record cannot hold whole are kept in the user's
/// choices, too.
void SaveSettings(ApplicationState& state, FileSystem& files);

}  // namespace vantor
