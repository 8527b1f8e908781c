#pragma once

#include <string>

#include "gpsobd/LogFormat.h"

namespace vantor {

// Logs of the handheld, read record by record from their table "GPSData" or "OBDData": a ".pdb" by the device reader,
// any other file by the database engine. Records of run number 0 lie outside any run. There is no study date; as a log
// would be written it has the file's name for study and base name and the day of its first record. A summary has the
// start time of the first record, greatest time and greatest run number of all. Error 53 for a missing file, 13 for one
// that is no such database, has too few fields, or has a field that does not convert; the place names the file, the
// record (from 1) and the reason.

LogFormat GpsHandheldLog();
LogFormat ObdHandheldLog();

/// What is to be done with a database of the handheld's other logger; empty for one of neither.
std::string OtherLoggerText(const LogSources& sources, const std::string& path);

}  // namespace vantor
