#include "gpsobd/CorridorTracks.h"

#include <algorithm>
#include <utility>

#include "core/ContentHash.h"
#include "core/Counted.h"
#include "core/Paths.h"
#include "core/StudyGroupFolders.h"
#include "core/Text.h"

namespace vantor {
namespace {

/// A pass is the same whatever its lead: it is of the same file, and the times of both meet.
bool IsTaken(const Corridor& corridor, const TrackSource& source) {
    return std::ranges::any_of(corridor.Runs, [&](const CorridorRun& run) {
        return run.Source && run.Source->Hash == source.Hash && run.Source->From.Days < source.To.Days &&
               source.From.Days < run.Source->To.Days;
    });
}

LogSources ForCorridor(LogSources sources) {
    sources.Tracks.Cuts.AtSegments = false;
    sources.Tracks.Cuts.StandingSeconds = 0;
    return sources;
}

/// The beginning of the names of a corridor's runs, which leaves room for way and number.
std::string BaseNameOf(const Corridor& corridor) {
    constexpr std::size_t Longest = 20;
    return std::string(TrimRight(FirstCharacters(WithSafeCharacters(corridor.Name), Longest)));
}

std::vector<std::string> NamesIn(const FileSystem& files, const std::string& folder) {
    std::vector<std::string> names;
    for (const FileInfo& file : FilesWithExtension(files, folder, RunExtension)) names.push_back(BaseName(file.Name));
    return names;
}

}  // namespace

CorridorTracks ReadCorridorTracks(const LogSources& sources, const std::string& path, const Corridor& corridor,
                                  const AppSettings& settings, const Progress& progress) {
    CorridorTracks tracks;
    const LogSources uncut = ForCorridor(sources);
    const InboxFile file = ReadTracks(uncut, path, settings, progress);
    tracks.Remarks = file.Remarks;
    if (file.Tracks.empty()) return tracks;
    const TrackSource source{LastComponent(path), ContentHash(ReadWholeFile(sources.Files, path)), {}, {}};
    std::size_t taken = 0;
    for (const InboxTrack& track : file.Tracks)
        for (TrackPass& pass : PassesOfTrack(track.Run, corridor, source)) {
            if (IsTaken(corridor, pass.Source)) {
                ++taken;
                continue;
            }
            const int number = static_cast<int>(tracks.Passes.size()) + 1;
            std::vector<std::string> flags;
            if (pass.Nodes < corridor.Nodes.size())
                flags.push_back("passes " + std::to_string(pass.Nodes) + " of " +
                                Counted(corridor.Nodes.size(), "node"));
            tracks.Passes.push_back({{track.Path, number, std::move(pass.Run), corridor.Of(pass.Along).Name, flags},
                                     pass.Along,
                                     std::move(pass.Source)});
        }
    if (taken > 0)
        tracks.Remarks.push_back(source.File + ": " +
                                 (taken == 1 ? "1 pass of it is" : std::to_string(taken) + " passes of it are") +
                                 " in the corridor already.");
    else if (tracks.Passes.empty())
        tracks.Remarks.push_back(source.File + ": it does not drive along " + corridor.Name + " past two nodes.");
    return tracks;
}

bool TakePasses(FileSystem& files, Corridor& corridor, std::span<const CorridorTrack> passes,
                const std::string& groupRoot, const std::string& group, bool areBefore, const Progress& progress) {
    const std::string folder = GroupFolder(groupRoot, group);
    std::vector<InboxTrack> tracks;
    for (const CorridorTrack& pass : passes) {
        InboxTrack& track = tracks.emplace_back(pass.Track);
        track.Run.Header.Before = areBefore ? -1 : 0;
        track.Run.Header.After = areBefore ? 0 : -1;
    }
    const std::string name(Trim(group));
    std::vector<TakenTrack> taken;
    for (const InboxTrack& track : tracks) taken.push_back({&track, name, {}});
    NameTracks(BaseNameOf(corridor), taken, {{name, NamesIn(files, folder)}});
    files.CreateFolder(folder);
    if (!WriteTracks(files, taken, groupRoot, progress)) return false;
    for (std::size_t i = 0; i < tracks.size(); ++i) {
        CorridorRun run = CorridorRunOf(tracks[i].Run, name, taken[i].Name, passes[i].Along);
        run.Source = passes[i].Source;
        TakeRun(corridor, std::move(run));
    }
    return true;
}

}  // namespace vantor
