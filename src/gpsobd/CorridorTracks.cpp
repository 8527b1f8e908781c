#include "gpsobd/CorridorTracks.h"

#include <algorithm>
#include <utility>

#include "core/ContentHash.h"
#include "core/Counted.h"
#include "core/Paths.h"
#include "core/StudyGroupFolders.h"
#include "core/Text.h"
#include "corridor/CorridorFile.h"

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

std::vector<std::string> NamesIn(const FileSystem& files, const std::string& folder) {
    std::vector<std::string> names;
    for (const FileInfo& file : FilesWithExtension(files, folder, RunExtension)) names.push_back(BaseName(file.Name));
    return names;
}

/// The gaps inside a pass; those of its track count whole seconds as the times of the pass do.
std::vector<LogGap> GapsInside(const std::vector<LogGap>& gaps, const TrackSource& pass) {
    std::vector<LogGap> inside;
    for (const LogGap& gap : gaps)
        if (gap.From < WholeSecondsOf(pass.To) && WholeSecondsOf(pass.From) < gap.To) inside.push_back(gap);
    return inside;
}

CorridorTrack TrackOfPass(TrackPass pass, const InboxTrack& of, const Corridor& corridor, const AppSettings& settings) {
    CorridorTrack track;
    track.Track.Path = of.Path;
    track.Track.Direction = corridor.Of(pass.Along).Name;
    track.Track.Gaps = GapsInside(of.Gaps, pass.Source);
    track.Track.Flags = FlagsOf(pass.Run, track.Track.Gaps, settings);
    if (pass.Nodes < corridor.Nodes.size())
        track.Track.Flags.insert(track.Track.Flags.begin(), "passes " + std::to_string(pass.Nodes) + " of " +
                                                                Counted(corridor.Nodes.size(), "node"));
    track.Track.Run = std::move(pass.Run);
    track.Pass = {pass.Along, pass.Nodes, std::move(pass.Source)};
    return track;
}

void TakeRunOf(const TakenPass& pass, bool isBefore, Corridor& corridor) {
    CorridorRun run = CorridorRunOf(pass.Run.Track->Run, pass.Run.Group, pass.Run.Name, pass.Pass.Along);
    run.IsBefore = isBefore;
    run.Source = pass.Pass.Source;
    TakeRun(corridor, std::move(run));
}

/// The runs of passes as they are written.
std::vector<TakenTrack> RunsOf(std::span<const TakenPass> passes, bool areBefore) {
    std::vector<TakenTrack> runs;
    for (const TakenPass& pass : passes) runs.emplace_back(pass.Run).IsBefore = areBefore;
    return runs;
}

}  // namespace

std::string RunBaseNameOf(const Corridor& corridor) {
    constexpr std::size_t Longest = 20;
    return std::string(TrimRight(FirstCharacters(WithSafeCharacters(corridor.Name), Longest)));
}

CorridorTracks ReadCorridorTracks(const LogSources& sources, const std::string& path, const Corridor& corridor,
                                  const AppSettings& settings, const Progress& progress) {
    CorridorTracks tracks;
    const LogSources uncut = ForCorridor(sources);
    const InboxFile file = ReadTracks(uncut, path, settings, progress);
    tracks.Remarks = file.Remarks;
    tracks.HasColumns = file.HasColumns;
    if (file.Tracks.empty()) return tracks;
    const TrackSource source{LastComponent(path), ContentHash(ReadWholeFile(sources.Files, path)), {}, {}};
    for (const InboxTrack& track : file.Tracks)
        for (TrackPass& pass : PassesOfTrack(track.Run, corridor, source)) {
            if (IsTaken(corridor, pass.Source)) {
                ++tracks.Known;
                continue;
            }
            tracks.Passes.push_back(TrackOfPass(std::move(pass), track, corridor, settings));
            tracks.Passes.back().Track.Number = static_cast<int>(tracks.Passes.size());
        }
    if (tracks.Known > 0)
        tracks.Remarks.push_back(
            source.File + ": " +
            (tracks.Known == 1 ? "1 pass of it is" : std::to_string(tracks.Known) + " passes of it are") +
            " in the corridor already.");
    else if (tracks.Passes.empty())
        tracks.Remarks.push_back(source.File + ": it does not drive along " + corridor.Name + " past two nodes.");
    return tracks;
}

std::vector<TakenPass> NamePasses(const FileSystem& files, const Corridor& corridor,
                                  std::span<const CorridorTrack> passes, const std::string& groupRoot,
                                  const std::string& group) {
    const std::string name(Trim(group));
    std::vector<TakenTrack> runs;
    runs.reserve(passes.size());
    for (const CorridorTrack& pass : passes) runs.push_back({&pass.Track, name, {}, {}});
    NameTracks(RunBaseNameOf(corridor), runs, {{name, NamesIn(files, GroupFolder(groupRoot, group))}});
    std::vector<TakenPass> taken;
    taken.reserve(passes.size());
    for (std::size_t i = 0; i < passes.size(); ++i) taken.push_back({runs[i], passes[i].Pass});
    return taken;
}

bool TakePassesIntoFile(FileSystem& files, const std::string& path, std::span<const TakenPass> passes, bool areBefore,
                        const Progress& progress) {
    const std::string root = FolderOf(path);
    const auto lock = files.Lock(root);
    StoredCorridor stored = LoadCorridor(files, path);
    const auto batch = files.BeginWrites();
    if (!AddTracks(*batch, RunsOf(passes, areBefore), root, progress.Part(0, 0.5))) return false;
    for (const TakenPass& pass : passes) TakeRunOf(pass, areBefore, stored.Corridor);
    AddCorridor(*batch, files, path, stored.Corridor, Expected::Unchanged(stored.Stamp));
    return batch->Commit(progress.Part(0.5, 1));
}

}  // namespace vantor
