#pragma once

#include "gpsobd/LogFormat.h"

namespace vantor {

// Tracks of any receiver or phone as logs of GPS points. They have no run numbers of their own: a track is cut into
// runs by its segments, by gaps and by standing at its ends (TrackSources::Cuts), which get the numbers from 1. Speeds
// that are missing come from the positions. Positions keep their signs; times are those of TrackSources::Zone. What
// was found on the way stands in the remarks of the log's head. Error 13 for a file without a point that has a time.

LogFormat GpxLog();
LogFormat NmeaLog();
/// Error 13 also for a file whose columns are not recognised, or whose dates may be two days.
LogFormat CsvLog();
/// All that the converter program reads, where it is installed; error 13 with the remedy where it is not.
LogFormat ConvertedLog();

}  // namespace vantor
