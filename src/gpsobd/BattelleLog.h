#pragma once

#include <optional>
#include <string>

#include "gpsobd/FieldLog.h"

namespace vantor {

// Battelle GPS text: a line that begins "$s" starts a run, one that begins "$G" is a fix of fields between commas. The
// first field with "/" is the date MM/DD/YY or MM/DD/YYYY, the first with ":" the time; behind the time follow latitude
// and longitude (degrees west) as dddmm.mmmm and, where present, speed (mph), heading, HDOP and satellites. Other lines
// and fixes without a date or a time are passed over.

/// Times of the first and the last fix; any text has a summary, one that is no Battelle log with that as its problem.
/// Nothing when it was stopped.
std::optional<LogSummary> ReadBattelleSummary(const FileSystem& files, const std::string& path,
                                              const LogProgress& progress = {});

/// A log whole, without the fixes before its first run; its positions with their signs where it `isSigned`. Errors as
/// of ReadFieldLog.
FieldLog ReadBattelleLog(const FileSystem& files, const std::string& path, bool isSigned = false,
                         const Progress& progress = {});

}  // namespace vantor
