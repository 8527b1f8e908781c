#include "corridor/CorridorTaking.h"

#include <optional>
#include <utility>

#include "core/Paths.h"
#include "core/RunFile.h"
#include "core/Text.h"
#include "corridor/CorridorIntake.h"
#include "corridor/CorridorLine.h"
#include "corridor/RunMatch.h"

namespace vantor {
namespace {

/// The Study Group of a run file; nothing for one that lies elsewhere.
std::optional<std::string> GroupOf(const std::string& path, const std::string& groupRoot) {
    std::string folder = FolderOf(path);
    if (!folder.empty()) folder.pop_back();
    if (!EqualIgnoringCase(FolderOf(folder), AsFolder(groupRoot))) return std::nullopt;
    return LastComponent(folder);
}

}  // namespace

TakenRuns TakeRunFiles(const Corridor& corridor, const std::vector<std::string>& paths, const FileSystem& files,
                       const std::string& groupRoot, const Progress& progress) {
    TakenRuns taken;
    const auto line = CorridorLine::Of(corridor);
    for (std::size_t i = 0; i < paths.size(); ++i) {
        if (!progress(i, paths.size())) return {{}, {}, false};
        const std::string& path = paths[i];
        const std::string name = BaseName(path);
        const auto group = GroupOf(path, groupRoot);
        if (!group) {
            taken.Refused.push_back(name + " lies in no Study Group of " + groupRoot + ". Move it into one.");
        } else if (FindCorridorRun(corridor, *group, name) != nullptr) {
            taken.Refused.push_back(name + " is in the corridor already.");
        } else if (const RunReading run = ReadRun(files, FolderOf(path), name, RunPart::Whole); !run) {
            taken.Refused.push_back(name + ": " + run.Fault->what());
        } else {
            const RunMatch match = MatchRun(run.Run, corridor, line ? &*line : nullptr, std::nullopt);
            taken.Runs.push_back(CorridorRunOf(run.Run, *group, name, match.Along));
        }
    }
    return taken;
}

}  // namespace vantor
