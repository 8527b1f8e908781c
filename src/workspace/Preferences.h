#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "core/ApplicationState.h"
#include "core/ports/FileSystem.h"

namespace vantor {

/// The whole part of the number that a text is, towards zero. Type mismatch (error 13) when the text, trimmed, is no
/// number as a whole; Overflow (error 6) outside 16 bits.
std::int16_t WholePartOf(std::string_view text);

/// The preferences as they are to be: a new Study Group root stands in the record only, the other folders in the
/// working copies only.
struct Preferences {
    AppSettings Settings;
    WorkingPaths Paths;
};

/// Why a folder is no good choice, to show under its box; empty when there is nothing to say.
std::string FolderProblem(std::string_view folder);

/// The folders for temporary runs, Study Groups and field data, in this order, below the folder "Vantor" of the user's
/// documents.
std::array<std::string, 3> FoldersInDocuments(const std::string& documents);

/// The folders that do not exist, each once, in the order of the record.
std::vector<std::string> MissingFolders(const FileSystem& files, const Preferences& preferences);

/// True when the record's Study Group root is another folder than the one in use.
bool ChangesRoot(const Preferences& preferences);

/// Takes the preferences over and writes the settings file. When that fails, everything is as it was.
void SavePreferences(ApplicationState& state, FileSystem& files, Preferences preferences);

}  // namespace vantor
