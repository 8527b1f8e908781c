#pragma once

#include <cstdint>
#include <string>

#include "core/ApplicationState.h"
#include "core/ports/FileSystem.h"

namespace vantor {

/// How an edited run is stored.
struct RunSave {
    int Entry = 0;                      ///< the study's run that it is, from 1; 0 where it is none
    bool KeepsBackup = false;           ///< the file so far stays as name + ".bak"
    std::int32_t FeetCutFromStart = 0;  ///< what was cut from the front since the boundaries were set
};

/// Makes `edited` the current run, writes its file under its RunName into the Study Group and brings the study's entry
/// up to date: its name, and, where the samples or the calibration changed, its boundaries (moved with the samples, no
/// farther than the run) and its figures. A run under a new name leaves the file of the old name as it is.
///
/// Any error, of the figures too, leaves file, current run and study as they were.
void SaveRun(ApplicationState& state, FileSystem& files, RunRecord edited, const RunSave& save);

}  // namespace vantor
