#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "core/ports/Clock.h"
#include "core/ports/FileSystem.h"
#include "core/ports/RecordSet.h"

namespace vantor {

/// Runs one command, for example {"study", "show", "AM.ld2", "--json"}, and returns the exit status: 0 done,
/// 1 failed, 2 wrong usage, 3 fatal format error. Results go to `out`, messages to `err`.
int RunCommandLine(const std::vector<std::string>& arguments, FileSystem& files, const Clock& clock,
                   const DatabaseEngine& databases, std::ostream& out, std::ostream& err);

}  // namespace vantor
