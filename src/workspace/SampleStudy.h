#pragma once

#include <optional>
#include <string>

#include "core/AppSettings.h"
#include "core/ports/FileSystem.h"

namespace vantor {

/// A study to try the program with: eight drives through one signal, four before and four after a change of its
/// timing, with their boundaries set. They are reckoned, not driven.
struct SampleStudy {
    std::string Folder;  ///< of its Study Group, with a final separator
    std::string Name;    ///< of the study's file, without extension
};

/// The sample that lies under the Study Groups' root; nothing where there is none.
std::optional<SampleStudy> FindSample(const FileSystem& files, const std::string& root);
/// Makes its Study Group, runs and study, all or none. Error 58 when files of these names are there already.
SampleStudy MakeSample(FileSystem& files, const std::string& root, const AppSettings& settings);
/// Deletes the files that MakeSample made; its folder, too, where it holds nothing else.
void DeleteSample(FileSystem& files, const SampleStudy& sample);

}  // namespace vantor
