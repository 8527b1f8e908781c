#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "core/AppSettings.h"
#include "core/Progress.h"
#include "core/RunRecords.h"
#include "core/Units.h"
#include "core/ports/FileSystem.h"
#include "gpsobd/LogGaps.h"
#include "gpsobd/LogPoints.h"

namespace vantor {

/// A run that a file would give, before anything is written.
struct InboxTrack {
    std::string Path;  ///< of its file
    int Number = 0;    ///< of the run in it, from 1
    RunRecord Run;     ///< without a name
    /// "NB" by its log, else by the way from its first to its last position; empty where neither tells.
    std::string Direction;
    /// What is to be looked at before it is taken, a line each; none for a track without a fault.
    std::vector<std::string> Flags;
    std::vector<LogGap> Gaps;
};
/// What is to be looked at in a run that has these gaps.
std::vector<std::string> FlagsOf(const RunRecord& run, std::span<const LogGap> gaps, const AppSettings& settings);

/// What a file gives.
struct InboxFile {
    std::vector<InboxTrack> Tracks;    ///< in the order of their numbers
    std::vector<std::string> Remarks;  ///< each with the name of the file: what it lacks, why it gives none
    bool HasColumns = false;           ///< whose meaning can be chosen
};
InboxFile TracksOf(const RunsOfLog& log, const AppSettings& settings);
/// Reads a file of any kind that has tracks; why it could not be read is a remark.
InboxFile ReadTracks(const LogSources& sources, const std::string& path, const AppSettings& settings,
                     const Progress& progress = {});

/// Speeds rise and fall by at most this much in a second.
inline constexpr double MostMphASecond = 15;
/// A longer gap, in seconds, is flagged; loggers that write every few seconds have nothing but shorter ones.
inline constexpr std::int64_t LongestPlainGap = 10;
/// A run that is shorter is hardly one.
inline constexpr std::int32_t LeastRunFeet = 500;
inline constexpr std::int32_t LeastRunSeconds = 20;

/// "NB", "EB", "SB" or "WB" by the way from the first to the last position; empty for less than LeastRunFeet.
std::string DirectionDriven(const RunRecord& run);

/// A run that lies in the group, or is listed before, and is the same drive: begins in the same second, is as long and
/// has the same samples.
struct SameRun {
    std::size_t Track = 0;  ///< from 0
    std::string Name;
};
/// `groupFolders` holds that of the group of each track, empty where there is none yet.
std::vector<SameRun> SameRuns(const FileSystem& files, std::span<const std::string> groupFolders,
                              std::span<const InboxTrack> tracks, const Progress& progress = {});

/// The names of the runs that lie in Study Groups, by group.
using NamesInGroups = std::map<std::string, std::vector<std::string>>;

/// A track that is taken, the group that its run goes to and what it is to be called.
struct TakenTrack {
    const InboxTrack* Track = nullptr;
    std::string Group;
    std::string Name;
    std::optional<bool> IsBefore;  ///< what its header is to say; nothing: as it stands
};
/// Names those tracks that have none yet: base name, direction and the next number that is free in their groups.
/// Without a base name it is the group's; a track without both stays without a name.
void NameTracks(const std::string& baseName, std::span<TakenTrack> tracks, const NamesInGroups& namesInGroups);

/// Why runs cannot be called so, with the remedy; empty where they can: two of one name in a group, or one that the
/// group has.
std::string NameClash(std::span<const TakenTrack> tracks, const NamesInGroups& namesInGroups);

/// Adds the writing of the runs to a batch. False when it was stopped.
bool AddTracks(WriteBatch& batch, std::span<const TakenTrack> tracks, const std::string& groupRoot,
               const Progress& progress);
/// Writes the runs into the folders of their groups, all or none; error 58 for a name that is there. False when it was
/// stopped.
bool WriteTracks(FileSystem& files, std::span<const TakenTrack> tracks, const std::string& groupRoot,
                 const Progress& progress = {});

}  // namespace vantor
