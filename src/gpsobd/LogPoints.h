#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <utility>
#include <vector>

#include "gpsobd/FieldLog.h"

namespace vantor {

/// True for logs whose points have a GPS half.
bool HasGps(LogKind kind);

/// Calls `use` with the half of a point that its run number, time, node, delay number and direction are taken from.
template <class Point, class Use>
decltype(auto) WithLeadingHalf(LogKind kind, Point&& point, Use use) {
    return HasGps(kind) ? use(point.Gps) : use(point.Obd);
}

std::int16_t RunNumberOf(LogKind kind, const LogPoint& point);
/// The whole second of a point (WholeSecondsOf).
std::int64_t SecondsOf(LogKind kind, const LogPoint& point);
/// As logged: the vehicle's own speed where there is one, else that of the GPS receiver; -1 for none.
float SpeedOf(LogKind kind, const LogPoint& point);
/// The same; nothing where there is none.
std::optional<double> LoggedSpeed(LogKind kind, const LogPoint& point);

/// The points of one run, in the order of the log.
using RunPoints = std::vector<const LogPoint*>;
/// The runs of a log by their number, which is 1 or more. The points stay the log's.
std::map<std::int16_t, RunPoints> PointsOfRuns(const FieldLog& reviewed);

/// A moment as whole seconds since 30 December 1899, to the nearest, halves to even; 0 for no valid date.
std::int64_t WholeSecondsOf(Date date);
Date DateOfSeconds(std::int64_t seconds);

/// Brings a log into the order in which it is reviewed: times are rounded to whole seconds, then the points are sorted
/// by time and run number (ties keep the order of the file), then points without a time of day get one from their own
/// run: a second after its point before them or, without one, before its first timed point. Points of a run without any
/// time go by their neighbours in the same way. Midnight counts as no time. A log without any time keeps its times.
/// A log that is arranged stays as it is.
void ArrangeForReview(FieldLog& log);

}  // namespace vantor
