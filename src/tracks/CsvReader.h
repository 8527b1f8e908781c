#pragma once

#include <string>

#include "core/Progress.h"
#include "core/ports/Clock.h"
#include "core/ports/FileSystem.h"
#include "tracks/CsvMapping.h"
#include "tracks/TrackPoint.h"

namespace vantor {

/// The points of a CSV file, a row each; without columns of positions it is a log of speeds by time. A row whose
/// position, time or date is no such thing is broken; one at latitude and longitude 0, or that says it has no fix, is
/// void. A head that comes again and another text in a column of segments begin a new segment. Error 13 for a mapping
/// without such columns, for a zone that is not known, at the first date that may be two days while the mapping does
/// not say which, and for times without any day where it has no start.
TrackSummary ReadCsv(const FileSystem& files, const Clock& clock, const std::string& path, const CsvMapping& mapping,
                     const TrackSink& sink, const Progress& progress = {});

}  // namespace vantor
