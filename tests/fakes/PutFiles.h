#pragma once

#include "core/AppSettings.h"
#include "core/Paths.h"
#include "core/RunFile.h"
#include "core/StudyFile.h"
#include "core/modMain.h"

namespace vantor {

/// A run of these sample values, one foot a pulse by default; what can be derived from them is left out.
inline RunRecord RunOfValues(const std::vector<int>& values, std::int16_t calConstant = 1000) {
    RunRecord run;
    run.Header.CalConstant = calConstant;
    run.Header.SampleCount = static_cast<std::int32_t>(values.size());
    run.RunSamples.ResizeTo(run.Header.SampleCount);
    for (const int value : values) run.SampleValues.Append(static_cast<std::int16_t>(value));
    return run;
}

/// Settings for feet a second to miles per hour.
inline AppSettings MphSettings(std::int16_t stopSpeed = 0) {
    AppSettings settings;
    settings.SpeedFactor = static_cast<float>(3600.0 / 5280.0);
    settings.StopSpeedThreshold = stopSpeed;
    return settings;
}

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
