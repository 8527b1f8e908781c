#pragma once

#include <string>
#include <vector>

#include "gpsobd/LogFormat.h"
#include "tracks/CsvMapping.h"

namespace vantor {

// Tracks of any receiver or phone as logs of GPS points. They have no run numbers of their own: a track is cut into
// runs by its segments, by gaps and by standing at its ends (TrackSources::Cuts), which get the numbers from 1. Speeds
// that are missing come from the positions. Positions keep their signs; times are those of TrackSources::Zone. What
// was found on the way stands in the remarks of the log's head. Error 13 for a file without a point that has a time.

LogFormat GpxLog();
LogFormat NmeaLog();
/// Error 13 also for a file whose columns are not recognised, or whose dates may be two days.
LogFormat CsvLog();
/// Whether a file is read as one, and its columns can be chosen.
bool HasColumns(const std::string& path);
/// How it is read: as the user has said it for files with its head, else as it was guessed.
CsvMapping MappingOf(const LogSources& sources, const CsvPreview& preview);
/// What the user has not said yet and should, and the day that was said for a file that tells none; a line each.
std::vector<std::string> ColumnNotes(const LogSources& sources, const std::string& path);

/// All that the converter program reads, where it is installed; error 13 with the remedy where it is not.
LogFormat ConvertedLog();

}  // namespace vantor
