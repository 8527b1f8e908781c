#include "workspace/DroppedFiles.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "core/Paths.h"
#include "core/RunFile.h"
#include "core/StudyFile.h"
#include "core/Text.h"
#include "core/modMain.h"
#include "gpsobd/LogScreens.h"

namespace vantor {
namespace {

/// Whether a screen of its own takes it.
bool HasScreen(const LogFormat* format) { return format->Screen != nullptr; }

/// A log that is chosen on a screen of its own. A handheld's two loggers share their extensions.
DroppedFiles::Log LogOf(const LogFormat& format, const std::string& path) {
    return {format.Screen->Kind,
            {FolderOf(path), BaseName(path), FileTypeOf(format, path).Extension},
            format.Screen->Device != nullptr};
}

std::string NamesOf(const std::vector<std::string>& paths) {
    std::vector<std::string> names;
    names.reserve(paths.size());
    for (const std::string& path : paths) names.push_back(LastComponent(path));
    return FirstOf(names, 3);
}

}  // namespace

DroppedFiles SortedByKind(const std::vector<std::string>& paths,
                          const std::function<const LogFormat*(const std::string& path)>& formatOf) {
    DroppedFiles files;
    const auto takeLog = [&](const std::string& path) {
        const std::vector<const LogFormat*> named = FormatsNamedAs(path);
        const bool isOfScreen = !named.empty() && std::ranges::all_of(named, HasScreen);
        const LogFormat* format = isOfScreen ? named.front() : formatOf(path);
        if (format == nullptr) return files.Others.push_back(path);
        files.Tracks.push_back(path);
        if (HasScreen(format)) files.Logs.push_back(LogOf(*format, path));
    };
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
        else
            takeLog(path);
    }
    const bool isOneLog = files.Tracks.size() == 1 && files.Logs.size() == 1;
    if (isOneLog)
        files.Tracks.clear();
    else
        files.Logs.clear();
    return files;
}

std::string RefusalOf(const DroppedFiles& files) {
    std::string text;
    if (!files.Others.empty())
        text += "These files are of no kind that the program reads: " + NamesOf(files.Others) +
                "\nIt takes studies (.ld2), counter files (.tdc), runs (.rd2), and as logs and tracks " +
                LogExtensions(", ") + " and what gpsbabel reads.";
    if (!files.Ver1Runs.empty())
        text += std::string(text.empty() ? "" : "\n\n") +
                "Version 1 runs are converted as they are added: use Add Run " + "for " + NamesOf(files.Ver1Runs) + ".";
    if (files.Studies.size() > 1)
        text += std::string(text.empty() ? "" : "\n\n") + "One study is open at a time: only " +
                LastComponent(files.Studies.front()) + " is opened.";
    return text;
}

}  // namespace vantor
