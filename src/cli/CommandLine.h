#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "core/Progress.h"
#include "core/ports/Clock.h"
#include "core/ports/DocumentWriter.h"
#include "core/ports/FileSystem.h"
#include "core/ports/Programs.h"
#include "core/ports/RecordSet.h"
#include "core/ports/Spreadsheet.h"
#include "core/ports/TileSource.h"

namespace vantor {

/// What the commands reach the outside through.
struct CommandPorts {
    FileSystem& Files;
    const Clock& Time;
    const DatabaseEngine& Databases;
    const Spreadsheet& Sheets;
    const DocumentWriter& Documents;
    const Programs& OtherPrograms;
    const TileFiles& Tiles;
    Progress Work{};             ///< of long commands
    std::istream* In = nullptr;  ///< standard input
};

/// Runs one command, for example {"study", "show", "AM.ld2", "--json"}, and returns the exit status: 0 done,
/// 1 failed, 2 wrong usage, 3 fatal format error, 128 stopped by its progress. Results go to `out`, messages to `err`.
int RunCommandLine(const std::vector<std::string>& arguments, const CommandPorts& ports, std::ostream& out,
                   std::ostream& err);

}  // namespace vantor
