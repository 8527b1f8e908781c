#pragma once

#include <optional>

#include "core/UserChoices.h"
#include "core/ports/ApplicationEnd.h"
#include "core/ports/FileSystem.h"

namespace vantor {

// A file that ended the program is noted among the user's choices, so that the next start can name it.

void NoteDamagedFile(FileSystem& files, const FatalFormatFault& fault);
/// Nothing when no file is noted.
std::optional<FatalFormatFault> NotedDamagedFile(const UserChoices& choices);
/// Takes the note out; returns the choices that are left.
UserChoices ForgetDamagedFile(FileSystem& files);

}  // namespace vantor
