#pragma once

#include "core/ApplicationState.h"
#include "core/ports/FileSystem.h"

namespace vantor {

inline constexpr const char* SettingsFileName = "VANTOR.bin";

/// Kilometres in a mile: the factor of metric display.
inline constexpr double KilometresPerMile = 1.609;
inline constexpr double FeetPerMile = 5280;

/// Fills the settings, their working paths, the unit labels and SettingsWereMissing. Without a settings file the
/// first-run defaults are formed from the current folder and nothing is written.
void LoadSettings(ApplicationState& state, const FileSystem& files);

/// Writes the settings file, with the working copies of all folders but the Study Group root: a new root is only
/// in the record and takes effect at the next start.
void SaveSettings(ApplicationState& state, FileSystem& files);

}  // namespace vantor
