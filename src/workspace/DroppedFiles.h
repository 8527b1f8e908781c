#pragma once

#include <functional>
#include <string>
#include <vector>

#include "core/Choices.h"
#include "core/LogKind.h"
#include "gpsobd/LogFormat.h"

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
    std::vector<Log> Logs;            ///< at most one, which is reviewed
    std::vector<std::string> Tracks;  ///< and several logs, which are imported
    std::vector<std::string> Runs;
    std::vector<std::string> Ver1Runs;
    std::vector<std::string> Others;
};

/// By their extensions; `formatOf` tells the format of a file whose extension does not, null for none.
DroppedFiles SortedByKind(const std::vector<std::string>& paths,
                          const std::function<const LogFormat*(const std::string& path)>& formatOf);

/// What keeps the files from being used here, a line each kind; empty when nothing does.
std::string RefusalOf(const DroppedFiles& files);

}  // namespace vantor
