#pragma once

#include <optional>
#include <string>

#include "gpsobd/FieldLog.h"

namespace vantor {

/// The summary of a handheld log, `kind` GpsHandheld or ObdHandheld, read record by record from its table "GPSData" or
/// "OBDData": start time of the first record, greatest time and greatest run number of all. No study date. A ".pdb" is
/// read by the device reader, any other file by the database engine. Nothing when it was stopped.
/// Error 53 for a missing file, 13 for one that is no such database, has too few fields, or has a field that does not
/// convert; the place names the file, the record (from 1) and the reason.
std::optional<LogSummary> ReadDeviceSummary(const LogSources& sources, LogKind kind, const std::string& path,
                                            const LogProgress& progress);

/// A handheld log whole, records of run number 0 left out. No study date; as it would be written it has the file's name
/// for study and base name and the day of its first record. Errors as of ReadDeviceSummary.
FieldLog ReadDeviceLog(const LogSources& sources, LogKind kind, const std::string& path, const Progress& progress = {});

/// The kind whose table the database has; nothing when it has neither. Errors as of ReadDeviceSummary for one that
/// cannot be read.
std::optional<LogKind> DeviceLogKind(const LogSources& sources, const std::string& path);

/// What is to be done with a database of the handheld's other logger; empty for one of neither.
std::string OtherLoggerText(const LogSources& sources, const std::string& path);

}  // namespace vantor
