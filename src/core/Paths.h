#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/ports/FileSystem.h"

namespace vantor {

/// The text as it comes back from a stored field of `width` characters: cut, "?" for every character that
/// Windows-1252 lacks, trimmed.
std::string AsStored(std::string_view text, std::size_t width);

/// The folder with a final separator, ready for folder + name + extension. An empty folder stays empty.
std::string AsFolder(std::string_view folder);
/// True for a path that means the same folder wherever the program was started.
bool IsAbsolutePath(std::string_view path);
/// The last component of a path, a final separator ignored.
std::string LastComponent(std::string_view path);
/// The folder of a path with its final separator; empty where the path has none.
std::string FolderOf(std::string_view path);
/// The path from the root on, without "." and ".." and without a final separator but that of the root.
std::string WholePath(const FileSystem& files, std::string_view path);
/// The last component without its extension.
std::string BaseName(std::string_view path);
/// True when the name ends in the extension (".rd2"), letter case ignored, and is more than it.
bool HasExtension(std::string_view name, std::string_view extension);

/// True for a name that stays in its folder and is seen there: not blank, no separator, drive, "..", control character,
/// and none of the characters that a file name cannot hold; no dot at its start and no name of a device (CON, NUL,
/// COM1), which Windows keeps for itself.
bool IsSafeName(std::string_view name);
/// The rule that IsSafeName checks, for messages.
std::string UnsafeNameMessage(std::string_view name);
/// What keeps a name from being stored in `width` characters and found again as the name of a file, to show; empty
/// when nothing does. Stored texts are Windows-1252 and lose the blanks at their ends.
std::string NameProblem(std::string_view name, std::size_t width);
/// The name with "_" in place of every character that a file name cannot hold and of a dot at its start, and before
/// the name of a device.
std::string WithSafeCharacters(std::string_view name);

/// Makes a unique name by incrementing only its last character as a number: -1 to -9, -10, -11 to -19, -110.
/// Existing folders sort and collide by this rule.
std::string NextName(const std::string& name);

/// The names of a folder's files with an extension, in the order of the listing; nothing for a missing folder.
std::vector<FileInfo> FilesWithExtension(const FileSystem& files, const std::string& folder,
                                         std::string_view extension);

}  // namespace vantor
