#pragma once

#include <cstdint>
#include <utility>

#include "gpsobd/FieldLog.h"

namespace vantor {

/// True for logs whose points have a GPS half.
bool HasGps(LogKind kind);

/// Calls `use` with the half of a point that its run number, time, node, delay number and direction are taken from.
template <class Point, class Use>
decltype(auto) WithLeadingHalf(LogKind kind, Point&& point, Use use) {
    return HasGps(kind) ? use(point.Gps) : use(point.Obd);
}

/// A moment as whole seconds since 30 December 1899, to the nearest, halves to even; 0 for no valid date.
std::int64_t WholeSecondsOf(Date date);
Date DateOfSeconds(std::int64_t seconds);

/// Brings a log into the order in which it is reviewed: times are rounded to whole seconds, then the points are sorted
/// by time and run number (ties keep the order of the file), then points without a time of day get one: a second after
/// the point before them or, at the top, a second before the one after them. Midnight counts as no time. A log without
/// any time keeps its times.
void ArrangeForReview(FieldLog& log);

}  // namespace vantor
