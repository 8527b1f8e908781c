#pragma once

#include "core/Paths.h"
#include "core/RunFile.h"
#include "core/StudyFile.h"
#include "core/modMain.h"

namespace vantor {

// What a test finds on the disk: written over whatever stands there, without a backup.

inline void PutRunFile(FileSystem& files, RunRecord& run, const std::string& folder, const std::string& name) {
    WriteRunFile(files, run, folder, name, AsItStands(files, folder + name + RunExtension));
}

inline void PutStudyFile(FileSystem& files, Study& study, const std::string& folder, const std::string& name) {
    if (const std::string path = folder + name + StudyExtension; FileExists(files, path)) files.Delete(path);
    study.Stored.reset();
    WriteStudyFile(files, study, folder, name, Replacing::OwnFile);
}

}  // namespace vantor
