#include "gpsobd/TrackInbox.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <set>
#include <utility>

#include "analysis/ProfileTrace.h"
#include "core/Numeric.h"
#include "core/Paths.h"
#include "core/Position.h"
#include "core/RunDirection.h"
#include "core/RunFile.h"
#include "core/RunNames.h"
#include "core/RunTimeError.h"
#include "core/StudyGroupFolders.h"
#include "core/Text.h"
#include "core/modMain.h"
#include "gpsobd/LogGaps.h"
#include "gpsobd/LogRuns.h"
#include "gpsobd/TrackLog.h"

namespace vantor {
namespace {

Date TimeOfSample(const RunRecord& run, std::int32_t sample) {
    constexpr double SecondsPerDay = 86400;
    return {run.Header.RunDate.Days + run.Header.RunTime.Days + (sample - 1) / SecondsPerDay};
}

std::string ClockOf(const RunRecord& run, std::int32_t sample) {
    return IsoDateTime(TimeOfSample(run, sample)).substr(std::string_view("YYYY-MM-DDT").size());
}

void FlagSpikes(const RunRecord& run, const ProfileTrace& trace, std::vector<std::string>& flags) {
    int count = 0;
    std::int32_t first = 0;
    for (std::int32_t sample = 2; sample <= trace.SampleCount(); ++sample) {
        const float change = trace.SpeedOf(sample) - trace.SpeedOf(sample - 1);
        if (std::fabs(static_cast<double>(change)) <= MostMphASecond) continue;
        if (++count == 1) first = sample;
    }
    if (count == 0) return;
    const std::string more = count > 1 ? " (" + std::to_string(count) + " in all)" : "";
    flags.push_back("speed jumps at " + ClockOf(run, first) + more);
}

void FlagLength(const RunRecord& run, const Units& units, std::vector<std::string>& flags) {
    if (run.Header.SampleCount < LeastRunSeconds)
        flags.push_back("short: " + std::to_string(run.Header.SampleCount) + " s");
    else if (run.Header.RunLength < LeastRunFeet)
        flags.push_back("short: " + units.LengthText(run.Header.RunLength));
}

/// Two positions further apart than the speeds between them lead.
void FlagJumps(const RunRecord& run, const ProfileTrace& trace, std::vector<std::string>& flags) {
    constexpr double Errors = 150;  // feet, of two fixes
    std::optional<Position> before;
    std::int32_t sampleBefore = 0;
    for (std::int32_t sample = 1; sample <= run.RunSamples.LastIndex(); ++sample) {
        const auto at = PositionOf(run.RunSamples[sample]);
        if (!at) continue;
        const double driven = before ? trace.DistanceOf(sample) - trace.DistanceOf(sampleBefore) : 0;
        if (before && FeetBetween(*before, *at) > 2 * driven + Errors) {
            flags.push_back("position jumps at " + ClockOf(run, sample));
            return;
        }
        before = at;
        sampleBefore = sample;
    }
}

bool BeginsAsLong(const RunRecord& left, const RunRecord& right) {
    return left.Header.SampleCount == right.Header.SampleCount && ClockOf(left, 1) == ClockOf(right, 1);
}

bool IsSameDrive(const RunRecord& left, const RunRecord& right) {
    return BeginsAsLong(left, right) && left.Header.RunDate == right.Header.RunDate &&
           left.SampleValues == right.SampleValues;
}

/// Its own, else the one driven, which goes into its notes as one of a log.
void TellDirection(InboxTrack& track) {
    std::string& notes = track.Run.Header.Notes;
    track.Direction = DirectionFromLog(notes);
    if (!track.Direction.empty()) return;
    track.Direction = DirectionDriven(track.Run);
    if (!track.Direction.empty())
        notes = std::string(DirectionNote) + track.Direction + (notes.empty() ? "" : "; ") + notes;
}

/// Without the path, whose name stands before it.
std::string ReasonOf(const RunTimeError& error, const std::string& path) {
    std::string reason = error.Place();
    if (reason.empty() || reason.starts_with(path)) return ErrorText(error.Number());
    const std::string line = "\n" + path;
    const std::size_t at = reason.find(line);
    if (at == std::string::npos) return reason;
    // What is left is a place in the file, ", line 5".
    const std::string place = reason.substr(at + line.size());
    return reason.substr(0, at) + (place.starts_with(", ") ? " (" + place.substr(2) + ")" : place);
}

template <class Filter>
void FindSameRuns(const FileSystem& files, const std::string& folder, std::span<const InboxTrack> tracks,
                  Filter isOfGroup, const Progress& progress, std::vector<SameRun>& same) {
    const std::vector<FileInfo> listed = files.List(folder, RunExtension);
    for (std::size_t i = 0; i < listed.size() && progress(i, listed.size()); ++i) {
        const std::string name = BaseName(listed[i].Name);
        const RunReading header = ReadRun(files, AsFolder(folder), name, RunPart::Header);
        if (!header) continue;
        for (std::size_t track = 0; track < tracks.size(); ++track) {
            if (!isOfGroup(track) || !BeginsAsLong(tracks[track].Run, header.Run)) continue;
            const RunReading whole = ReadRun(files, AsFolder(folder) + listed[i].Name);
            if (whole && IsSameDrive(tracks[track].Run, whole.Run)) same.push_back({track, name});
        }
    }
}

void FlagColumns(const std::vector<std::string>& notes, InboxFile& file) {
    for (InboxTrack& track : file.Tracks) track.Flags.insert(track.Flags.end(), notes.begin(), notes.end());
}

}  // namespace

std::vector<std::string> FlagsOf(const RunRecord& run, std::span<const LogGap> gaps, const AppSettings& settings) {
    std::vector<std::string> flags;
    const ProfileTrace trace(run, settings.SpeedFactor);
    if (!trace.HasMovement()) return {"it never moves"};
    FlagLength(run, UnitsOf(settings), flags);
    FlagSpikes(run, trace, flags);
    FlagJumps(run, trace, flags);
    if (std::ranges::any_of(gaps, [](const LogGap& gap) { return gap.Seconds() > LongestPlainGap; }))
        flags.push_back(GapNote(gaps));
    return flags;
}

std::string DirectionDriven(const RunRecord& run) {
    std::optional<Position> first;
    std::optional<Position> last;
    for (const RunSample& sample : run.RunSamples) {
        const auto at = PositionOf(sample);
        if (!first) first = at;
        if (at) last = at;
    }
    if (!first || FeetBetween(*first, *last) < LeastRunFeet) return {};
    const double middle = (first->Latitude + last->Latitude) / 2 * std::numbers::pi / 180;
    const double north = last->Latitude - first->Latitude;
    const double east = std::remainder(last->Longitude - first->Longitude, 360.0) * std::cos(middle);
    if (std::fabs(north) >= std::fabs(east)) return north > 0 ? "NB" : "SB";
    return east > 0 ? "EB" : "WB";
}

InboxFile TracksOf(const RunsOfLog& log, const AppSettings& settings) {
    InboxFile file;
    const std::string path = log.Head.Folder + log.Head.Name + log.Head.Extension;
    for (const std::string& remark : log.Head.Remarks) file.Remarks.push_back(LastComponent(path) + ": " + remark);
    const std::vector<LogGap> gaps = FindGaps(log);
    for (const RunPoints points : RunsAmong(log.Points)) {
        InboxTrack track;
        track.Path = path;
        track.Number = points.front().RunNumber;
        try {
            track.Run = MakeRun(log.Head, points, gaps, settings);
        } catch (const RunTimeError& error) {
            file.Remarks.push_back(LastComponent(path) + ": " + error.Place());
            continue;
        }
        TellDirection(track);
        const std::span<const LogGap> its = GapsOfRun(gaps, points.front().RunNumber);
        track.Gaps.assign(its.begin(), its.end());
        track.Flags = FlagsOf(track.Run, its, settings);
        file.Tracks.push_back(std::move(track));
    }
    return file;
}

InboxFile ReadTracks(const LogSources& sources, const std::string& path, const AppSettings& settings,
                     const Progress& progress) {
    InboxFile file;
    try {
        const RunsOfLog log = ReadRunsOfLog(sources, FormatOfFile(sources, path), path, progress);
        file = TracksOf(log, settings);
        if (file.Tracks.empty() && file.Remarks.empty()) file.Remarks.push_back(LastComponent(path) + " has no track.");
        if (HasColumns(path)) FlagColumns(ColumnNotes(sources, path), file);
    } catch (const RunTimeError& error) {
        file.Remarks.push_back(LastComponent(path) + ": " + ReasonOf(error, path));
    }
    file.HasColumns = HasColumns(path);
    return file;
}

std::vector<SameRun> SameRuns(const FileSystem& files, std::span<const std::string> groupFolders,
                              std::span<const InboxTrack> tracks, const Progress& progress) {
    std::vector<SameRun> same;
    for (std::size_t i = 0; i < tracks.size(); ++i)
        for (std::size_t earlier = 0; earlier < i; ++earlier)
            if (IsSameDrive(tracks[i].Run, tracks[earlier].Run)) {
                same.push_back({i, LastComponent(tracks[earlier].Path)});
                break;
            }
    const std::set<std::string> folders(groupFolders.begin(), groupFolders.end());
    std::size_t done = 0;
    for (const std::string& folder : folders) {
        const Progress its = progress.PartOf(done++, folders.size());
        if (folder.empty() || !FolderExists(files, folder)) continue;
        const auto isOfGroup = [&](std::size_t track) { return groupFolders[track] == folder; };
        FindSameRuns(files, folder, tracks, isOfGroup, its, same);
    }
    return same;
}

void NameTracks(const std::string& baseName, std::span<TakenTrack> tracks, const NamesInGroups& namesInGroups) {
    std::map<std::pair<std::string, std::string>, TakenNumbers> taken;  // by group and direction
    const auto numbersFor = [&](const TakenTrack& track, const RunNameTemplate& parts) -> TakenNumbers& {
        const auto [at, isNew] = taken.try_emplace({track.Group, parts.Direction});
        if (!isNew) return at->second;
        if (const auto names = namesInGroups.find(track.Group); names != namesInGroups.end())
            for (const std::string& name : names->second) TakeNumberOf(at->second, parts, name);
        for (const TakenTrack& other : tracks)
            if (other.Group == track.Group) TakeNumberOf(at->second, parts, other.Name);
        return at->second;
    };
    for (TakenTrack& track : tracks) {
        if (!track.Name.empty() || (baseName.empty() && track.Group.empty())) continue;
        RunNameTemplate parts;
        parts.BaseName = baseName.empty() ? track.Group : baseName;
        if (!track.Track->Direction.empty()) parts.Direction = track.Track->Direction;
        TakenNumbers& numbers = numbersFor(track, parts);
        parts.RunNumber = FreeRunNumber(numbers, 1);
        if (parts.RunNumber.empty())
            throw RunTimeError(ErrorNumber::FileAlreadyExists, "The group has no free number for " + parts.BaseName +
                                                                   "-" + parts.Direction +
                                                                   ". Choose another base name.");
        track.Name = RunNameOf(parts);
        TakeNumberOf(numbers, parts, track.Name);
    }
}

std::string NameClash(std::span<const TakenTrack> tracks, const NamesInGroups& namesInGroups) {
    for (std::size_t i = 0; i < tracks.size(); ++i) {
        const TakenTrack& track = tracks[i];
        const auto isIts = [&](const std::string& name) { return EqualIgnoringCase(name, track.Name); };
        const auto isTwin = [&](const TakenTrack& other) { return other.Group == track.Group && isIts(other.Name); };
        const auto names = namesInGroups.find(track.Group);
        const bool isThere = names != namesInGroups.end() && std::ranges::any_of(names->second, isIts);
        if (!isThere && std::ranges::none_of(tracks.first(i), isTwin)) continue;
        return (isThere ? "Study Group " + track.Group + " has a run " : "Two runs would be called ") + track.Name +
               (isThere ? " already." : ".") + "\nType another name (F2), or none for the next free number.";
    }
    return {};
}

bool AddTracks(WriteBatch& batch, std::span<const TakenTrack> tracks, const std::string& groupRoot,
               const Progress& progress) {
    for (std::size_t i = 0; i < tracks.size(); ++i) {
        if (!progress(i, tracks.size())) return false;
        const TakenTrack& track = tracks[i];
        RunRecord run = track.Track->Run;
        if (track.IsBefore) {
            run.Header.Before = *track.IsBefore ? -1 : 0;
            run.Header.After = *track.IsBefore ? 0 : -1;
        }
        AddRunBytes(batch, RunBytes(run, track.Name), GroupFolder(groupRoot, track.Group), track.Name,
                    Expected::Nothing());
    }
    return true;
}

bool WriteTracks(FileSystem& files, std::span<const TakenTrack> tracks, const std::string& groupRoot,
                 const Progress& progress) {
    const auto batch = files.BeginWrites();
    return AddTracks(*batch, tracks, groupRoot, progress.Part(0, 0.5)) && batch->Commit(progress.Part(0.5, 1));
}

}  // namespace vantor
