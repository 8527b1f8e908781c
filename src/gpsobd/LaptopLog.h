#pragma once

#include <cstddef>
#include <vector>

#include "gpsobd/FieldLog.h"

namespace vantor {

// Logs of the laptop programs: a prefix, the header record of the format, data records to the end of the file. Of a GPS
// log the format number, not the extension, tells the layout of its records. A summary has the start time of the first
// record, greatest time and greatest run number of all, points outside any run among them; times that are no dates
// count as none.

LogFormat GpsLaptopLog();
LogFormat ObdLaptopLog();
LogFormat GpsObdLog();

/// What a format has by the halves of its points, one at least: it is reviewed as such logs are, and written back as
/// the laptop's log of them. Its name, its files and its reader are for the format to say.
LogFormat FormatWith(bool hasGps, bool hasObd);

/// The bytes of a log of any format in the current form of the laptop programs: second-format GPS records, OBD records,
/// or one behind the other.
std::vector<std::byte> EncodeLaptopLog(const FieldLog& log);

/// The prefix as this system writes it.
LogPrefix WrittenPrefix(Date logDate);

}  // namespace vantor
