#pragma once

#include "gpsobd/LogFormat.h"

namespace vantor {

// Battelle GPS text: a line that begins "$s" starts a run, one that begins "$G" is a fix of fields between commas. The
// first field with "/" is the date MM/DD/YY or MM/DD/YYYY, the first with ":" the time; behind the time follow latitude
// and longitude (degrees west) as dddmm.mmmm and, where present, speed (mph), heading, HDOP and satellites. Other lines
// and fixes without a date or a time are passed over.
//
// A summary has the times of the first and the last fix; any text has one, of a text that is no Battelle log with that
// as its problem. A log is read without the fixes before its first run.

LogFormat BattelleLog();

}  // namespace vantor
