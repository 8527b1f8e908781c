#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "core/ApplicationState.h"
#include "core/RunFile.h"
#include "core/ports/FileSystem.h"

namespace vantor {

/// How an edited run is stored.
struct RunSave {
    int Entry = 0;             ///< the study's run that it is, from 1; 0 where it is none
    bool KeepsBackup = false;  ///< the file so far stays as a numbered backup
    /// Cut from the front since the boundaries were set, negative for what came back; nothing where the boundaries have
    /// no place in the run any more.
    std::optional<std::int32_t> FeetCutFromStart = 0;
};

/// What became of a run that was stored.
struct RunSaved {
    std::string Backup;   ///< the name of the backup that was kept; empty for none
    std::string Warning;  ///< what the user must be told; empty for nothing
};

/// Makes `edited` the current run, writes its file under its RunName into the Study Group and brings the study's entry
/// up to date: its name, and, where the samples or the calibration changed, its boundaries (moved with the samples, no
/// farther than the run) and its figures. A boundary that was cut off, or that a computation does not find in a run
/// that was cut, is no longer set: the run does not count then, which the warning says. A run under a new name leaves
/// the file of the old name as it is.
///
/// Any error, of the figures too, leaves file, current run and study as they were.
RunSaved SaveRun(ApplicationState& state, FileSystem& files, RunRecord edited, const RunSave& save);

/// Brings a backup of the current run back, as SaveRun does: the file so far becomes the next backup, and boundaries
/// stay at their places on the road where the two runs have the same samples; where they have not, and differ in
/// length, the boundaries are no longer set.
RunSaved RestoreRun(ApplicationState& state, FileSystem& files, const RunBackup& backup, int entry);

}  // namespace vantor
