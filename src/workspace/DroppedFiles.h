#pragma once

#include <string>
#include <vector>

#include "core/Choices.h"
#include "core/LogKind.h"

namespace vantor {

/// Files that were handed to the window, by what is done with them. Paths are whole.
struct DroppedFiles {
    struct Log {
        LogKind Kind;
        LogChoice Choice;
        bool IsOfHandheld = false;  ///< GPS or OBD: its name does not tell which
    };
    std::vector<std::string> Studies;
    std::vector<CounterFileChoice> CounterFiles;
    std::vector<Log> Logs;
    std::vector<std::string> Runs;
    std::vector<std::string> Ver1Runs;
    std::vector<std::string> Others;
};

/// By their extensions.
DroppedFiles SortedByKind(const std::vector<std::string>& paths);

/// What keeps the files from being used here, a line each kind; empty when nothing does.
std::string RefusalOf(const DroppedFiles& files);

}  // namespace vantor
