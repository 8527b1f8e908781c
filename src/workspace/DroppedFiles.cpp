#include "workspace/DroppedFiles.h"

#include <optional>

#include "core/Paths.h"
#include "core/RunFile.h"
#include "core/StudyFile.h"
#include "core/Text.h"
#include "core/modMain.h"
#include "gpsobd/LogFormat.h"
#include "gpsobd/LogScreens.h"

namespace vantor {
namespace {

/// A log by its extension; nothing for one of another file or of logs that no selection screen takes. A handheld's two
/// loggers share theirs.
std::optional<DroppedFiles::Log> LogOf(const std::string& path) {
    for (const LogFormat* format : FormatsNamedAs(path)) {
        if (format->Screen == nullptr) continue;
        const char* const extension = FileTypeOf(*format, path).Extension;
        return DroppedFiles::Log{
            format->Screen->Kind, {FolderOf(path), BaseName(path), extension}, format->Screen->Device != nullptr};
    }
    return std::nullopt;
}

std::string NamesOf(const std::vector<std::string>& paths) {
    std::vector<std::string> names;
    names.reserve(paths.size());
    for (const std::string& path : paths) names.push_back(LastComponent(path));
    return FirstOf(names, 3);
}

}  // namespace

DroppedFiles SortedByKind(const std::vector<std::string>& paths) {
    DroppedFiles files;
    for (const std::string& path : paths) {
        const std::string folder = FolderOf(path);
        if (HasExtension(path, StudyExtension))
            files.Studies.push_back(path);
        else if (HasExtension(path, ".tdc"))
            files.CounterFiles.push_back({folder, BaseName(path)});
        else if (HasExtension(path, RunExtension))
            files.Runs.push_back(path);
        else if (HasExtension(path, Ver1RunExtension))
            files.Ver1Runs.push_back(path);
        else if (const auto log = LogOf(path))
            files.Logs.push_back(*log);
        else
            files.Others.push_back(path);
    }
    return files;
}

std::string RefusalOf(const DroppedFiles& files) {
    std::string text;
    if (!files.Others.empty())
        text += "These files are of no kind that the program reads: " + NamesOf(files.Others) +
                "\nIt takes studies (.ld2), counter files (.tdc), GPS and OBD logs and runs (.rd2).";
    if (!files.Ver1Runs.empty())
        text += std::string(text.empty() ? "" : "\n\n") +
                "Version 1 runs are converted as they are added: use Add Run " + "for " + NamesOf(files.Ver1Runs) + ".";
    if (files.Studies.size() > 1)
        text += std::string(text.empty() ? "" : "\n\n") + "One study is open at a time: only " +
                LastComponent(files.Studies.front()) + " is opened.";
    return text;
}

}  // namespace vantor
