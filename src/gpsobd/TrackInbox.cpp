#include "gpsobd/TrackInbox.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <numbers>

#include "analysis/ProfileTrace.h"
#include "core/Numeric.h"
#include "core/Paths.h"
#include "core/Position.h"
#include "core/RunDirection.h"
#include "core/RunFile.h"
#include "core/RunTimeError.h"
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

bool IsSameDrive(const RunRecord& left, const RunRecord& right) {
    return left.Header.SampleCount == right.Header.SampleCount && ClockOf(left, 1) == ClockOf(right, 1) &&
           left.Header.RunDate == right.Header.RunDate && left.SampleValues == right.SampleValues;
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

void FlagColumns(const std::vector<std::string>& notes, InboxFile& file) {
    for (InboxTrack& track : file.Tracks) track.Flags.insert(track.Flags.end(), notes.begin(), notes.end());
}

}  // namespace

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
        track.Flags = FlagsOf(track.Run, GapsOfRun(gaps, points.front().RunNumber), settings);
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

std::vector<SameRun> SameRuns(const FileSystem& files, const std::string& groupFolder,
                              std::span<const InboxTrack> tracks, const Progress& progress) {
    std::vector<SameRun> same;
    for (std::size_t i = 0; i < tracks.size(); ++i)
        for (std::size_t earlier = 0; earlier < i; ++earlier)
            if (IsSameDrive(tracks[i].Run, tracks[earlier].Run)) {
                same.push_back({i, LastComponent(tracks[earlier].Path)});
                break;
            }
    if (groupFolder.empty() || !FolderExists(files, groupFolder)) return same;
    const std::vector<FileInfo> listed = files.List(groupFolder, RunExtension);
    for (std::size_t i = 0; i < listed.size() && progress(i, listed.size()); ++i) {
        const std::string name = BaseName(listed[i].Name);
        const RunReading header = ReadRun(files, AsFolder(groupFolder), name, RunPart::Header);
        if (!header) continue;
        for (std::size_t track = 0; track < tracks.size(); ++track) {
            const RunRecord& run = tracks[track].Run;
            if (run.Header.SampleCount != header.Run.Header.SampleCount || ClockOf(run, 1) != ClockOf(header.Run, 1))
                continue;
            const RunReading whole = ReadRun(files, AsFolder(groupFolder) + listed[i].Name);
            if (whole && IsSameDrive(run, whole.Run)) same.push_back({track, name});
        }
    }
    return same;
}

std::vector<std::string> InboxNames(const RunNameTemplate& parts, std::span<const InboxTrack* const> tracks,
                                    const std::vector<std::string>& namesInGroup) {
    std::map<std::string, TakenNumbers> taken;
    std::vector<std::string> names;
    for (const InboxTrack* track : tracks) {
        RunNameTemplate its = parts;
        if (!track->Direction.empty()) its.Direction = track->Direction;
        const bool isFirst = !taken.contains(its.Direction);
        TakenNumbers& numbers = taken[its.Direction];
        if (isFirst)
            for (const std::string& name : namesInGroup) TakeNumberOf(numbers, its, name);
        its.RunNumber = FreeRunNumber(numbers, 1);
        if (its.RunNumber.empty())
            throw RunTimeError(ErrorNumber::FileAlreadyExists, "The group has no free number for " + its.BaseName +
                                                                   "-" + its.Direction + ". Choose another base name.");
        names.push_back(RunNameOf(its));
        TakeNumberOf(numbers, its, names.back());
    }
    return names;
}

std::string NameClash(std::span<const std::string> names, std::span<const std::string> namesInGroup) {
    for (std::size_t i = 0; i < names.size(); ++i) {
        const auto isIts = [&](const std::string& name) { return EqualIgnoringCase(name, names[i]); };
        const bool isThere = std::ranges::any_of(namesInGroup, isIts);
        if (!isThere && std::ranges::none_of(names.first(i), isIts)) continue;
        return (isThere ? "The Study Group has a run " : "Two runs would be called ") + names[i] +
               (isThere ? " already." : ".") + "\nType another name (F2), or none for the next free number.";
    }
    return {};
}

bool WriteTracks(FileSystem& files, std::span<const NamedTrack> tracks, const std::string& folder,
                 const Progress& progress) {
    const std::string there = AsFolder(folder);
    const auto batch = files.BeginWrites();
    for (std::size_t i = 0; i < tracks.size(); ++i) {
        if (!progress.Part(0, 0.5)(i, tracks.size())) return false;
        RunRecord run = tracks[i].Track->Run;
        AddRunBytes(*batch, RunBytes(run, tracks[i].Name), there, tracks[i].Name, Expected::Nothing());
    }
    return batch->Commit(progress.Part(0.5, 1));
}

}  // namespace vantor
