#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "core/ports/FileSystem.h"

namespace vantor {

/// True for the beginning of a text in UTF-16, of either byte order: with its mark, or with an ASCII character.
bool IsUtf16(std::string_view head);

/// The beginning of a text as UTF-8: as it is, or turned from UTF-16.
std::string Utf8Head(std::string_view head);

/// A file that begins with `head`, which was read off it, as UTF-8 from its start. Its size stays that of the file.
std::unique_ptr<InputFile> FromUtf16(std::unique_ptr<InputFile> file, std::string_view head);

}  // namespace vantor
