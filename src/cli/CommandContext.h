#pragma once

#include <nlohmann/json.hpp>
#include <ostream>
#include <span>
#include <string>
#include <vector>

#include "analysis/StudyResults.h"
#include "core/ApplicationState.h"
#include "core/Progress.h"
#include "core/ports/ApplicationEnd.h"
#include "core/ports/Clock.h"
#include "core/ports/Desktop.h"
#include "core/ports/DocumentWriter.h"
#include "core/ports/FileSystem.h"
#include "core/ports/MessageBoxes.h"
#include "core/ports/Programs.h"
#include "core/ports/RecordSet.h"
#include "core/ports/Spreadsheet.h"
#include "core/ports/TileSource.h"

namespace vantor {

/// Keys keep the order of the records.
using Json = nlohmann::ordered_json;

enum ExitStatus : int { Done = 0, Failed = 1, WrongUsage = 2, FatalFormat = 3, Stopped = 128 };

/// What a command works with. Results go to Out, everything else to Err.
struct CommandContext {
    ApplicationState State;
    FileSystem& Files;
    MessageBoxes& Messages;
    Desktop& DesktopServices;
    const Clock& Time;
    const DatabaseEngine& Databases;
    const Spreadsheet& Sheets;
    const DocumentWriter& Documents;
    const Programs& OtherPrograms;
    const TileFiles& Tiles;
    ApplicationEnd& End;
    std::ostream& Out;
    std::ostream& Err;
    bool AsJson = false;
    Progress Work{};

    /// Names on Err the runs of a study that are not there, each with the reason, and what makes figures mean something
    /// else than they seem to. Failed where a file is there that cannot be read as a run.
    [[nodiscard]] ExitStatus TellOfRuns(const std::vector<RunListRow>& rows) const;
    /// Gets what is printed in place of Out, where it is there.
    Json* Collected = nullptr;

    /// Whether a command can write to `output`: to "-", where no JSON is printed beside, or to a file of its kind,
    /// which `kinds` says for a message. It is told why not.
    bool TakesOutput(const std::string& output, bool isOfKind, const std::string& kinds) const;
    /// Writes what a command makes: to standard output for "-", which then has nothing else, or to the file of that
    /// path in place of what is there; then the result is printed.
    void PutOutput(const std::string& output, std::span<const std::byte> bytes, const Json& result) const;

    /// Writes a command's result, as JSON or as lines to read.
    void Print(const Json& result) const;
};

/// A file named on the command line, taken apart.
struct NamedFile {
    std::string Folder;     ///< with a final separator, or empty
    std::string Name;       ///< without extension
    std::string Extension;  ///< in lower case, with its dot
};
NamedFile TakeApart(const std::string& path);
/// Type mismatch (error 13) when the file's extension is another one.
NamedFile TakeApart(const std::string& path, const std::string& extension, const std::string& kind);

}  // namespace vantor
