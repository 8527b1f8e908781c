#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "core/AppSettings.h"
#include "core/Progress.h"
#include "core/RunRecords.h"
#include "gpsobd/LogGaps.h"

namespace vantor {

/// Makes a run of its points: one sample a second from the first to the last second, one pulse a foot. The last point
/// of a second counts. `gaps` of the run are filled as they say; other seconds without a speed are interpolated between
/// those nearest to them. `settings` turn speeds into feet. The run has no name yet, texts are as long as the log has
/// them. Error 6 for a run of more than 32767 seconds, 11 for a speed factor of 0.
RunRecord MakeRun(const LogHead& log, RunPoints points, std::span<const LogGap> gaps, const AppSettings& settings);

/// The runs of a log that are longer than 32767 seconds: for each a text with its number and its times.
std::vector<std::string> RunsTooLong(const RunsOfLog& log);

/// Names of run files by the number of the run in its log.
using NamesOfRuns = std::map<std::int16_t, std::string>;
/// Run files of a log's runs that lie in a folder already: of their name, with or without a number behind it, and of a
/// time that overlaps theirs.
NamesOfRuns RunsMadeBefore(const FileSystem& files, const RunsOfLog& log, const std::string& folder);

/// What became of the runs of a log.
struct LogRunsWritten {
    std::vector<std::string> Names;    ///< base name + "-R" + run number, in the order of the numbers
    std::vector<std::string> LeftOut;  ///< the texts of RunsTooLong
};

/// Writes the runs of a log into a folder. Gaps are filled as `gaps` says, which FindGaps found; those that are not in
/// it, by the speeds beside them, and are not noted. A run file of `replaced` is replaced and kept as a numbered
/// backup, or left alone where it holds these bytes already; of all others a name that exists gets a number. All run
/// files appear together (WriteBatch::Commit). A run that is too long is left out. Stopped, it has written none and is
/// nothing.
[[nodiscard]] std::optional<LogRunsWritten> WriteLogRuns(FileSystem& files, const RunsOfLog& log,
                                                         std::span<const LogGap> gaps, const std::string& folder,
                                                         const AppSettings& settings, const NamesOfRuns& replaced = {},
                                                         const Progress& progress = {});

}  // namespace vantor
