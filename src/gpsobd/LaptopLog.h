#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "gpsobd/FieldLog.h"

namespace vantor {

// Logs of the laptop programs, `kind` GpsLaptop, ObdLaptop or GpsObd: a prefix, the header record of the kind, data
// records to the end of the file. Of a GPS log the format number, not the extension, tells the layout of its records.

/// Start time of the first record, greatest time and greatest run number of all, points outside any run among them;
/// times that are no dates count as none. Nothing when it was stopped. Errors as of ReadLogSummary.
std::optional<LogSummary> ReadLaptopSummary(const FileSystem& files, const Clock& clock, LogKind kind,
                                            const std::string& path, const LogProgress& progress = {});

/// A log whole, its positions with their signs where it `isSigned`. Errors as of ReadLogSummary.
FieldLog ReadLaptopLog(const FileSystem& files, const Clock& clock, LogKind kind, const std::string& path,
                       bool isSigned = false, const Progress& progress = {});

/// The bytes of a log of any kind in its current form: second-format GPS records, OBD records, or one behind the other.
std::vector<std::byte> EncodeLaptopLog(const FieldLog& log);

/// The prefix as this system writes it.
LogPrefix WrittenPrefix(Date logDate);

/// True for the kinds whose header is that of the OBD logger.
bool HasObdHeader(LogKind kind);

}  // namespace vantor
