#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "core/Position.h"
#include "gpsobd/FieldLog.h"

namespace vantor {

/// What of a point matters to the run that it belongs to, whatever the log. The halves of a point that it lacks leave
/// zeros.
struct RunPoint {
    std::int64_t Second = 0;  ///< WholeSecondsOf its time
    double Latitude = 0;      ///< decimal degrees
    double Longitude = 0;     ///< decimal degrees, negative west
    float Speed = 0;          ///< as logged: the vehicle's own where there is one, else the receiver's; -1 for none
    float Heading = 0;
    float HDOP = 0;
    std::int16_t RunNumber = 0;
    std::int16_t FixQuality = 0;
    std::int16_t SatUsed = 0;
    std::int16_t Node = 0;
    std::int16_t DelayNumber = 0;
    std::int16_t Direction = 0;
};

/// Of a point with these halves; null for one that it does not have.
RunPoint RunPointOf(const GpsPoint* gps, const ObdPoint* obd);
RunPoint RunPointOf(const LogFormat& format, const LogPoint& point);
RunPoint RunPointAt(const FieldLog& log, std::size_t index);

/// False for a speed that stands for none.
bool HasSpeed(const RunPoint& point);
/// Nothing for a position that stands for none.
std::optional<Position> PositionOf(const RunPoint& point);

/// Calls `use` with the half of a point that its run number, time, node, delay number and direction are taken from.
template <class Log, class Use>
decltype(auto) WithLeadingHalf(Log& log, std::size_t index, Use use) {
    return log.Format->HasGps ? use(log.Gps[index]) : use(log.Obd[index]);
}

std::int16_t RunNumberAt(const FieldLog& log, std::size_t index);
/// The whole second of a point (WholeSecondsOf).
std::int64_t SecondAt(const FieldLog& log, std::size_t index);

/// The points of one run, in the order of the review.
using RunPoints = std::span<const RunPoint>;

/// A log as far as runs are made of it.
struct RunsOfLog {
    LogHead Head;
    std::vector<RunPoint> Points;  ///< by run number, those of a run in the order of the review
};
RunsOfLog RunsOf(const FieldLog& reviewed);
/// Reads them without the rest of the log. Errors as of ReadFieldLog.
RunsOfLog ReadRunsOfLog(const LogSources& sources, const LogFormat& format, const std::string& path,
                        const Progress& progress = {});

/// Brings points into the order of RunsOfLog; those of a run keep theirs.
void SortByRun(std::vector<RunPoint>& points);

/// The runs among points in that order, by their number, which is 1 or more.
std::vector<RunPoints> RunsAmong(std::span<const RunPoint> points);

/// A moment as whole seconds since 30 December 1899, to the nearest, halves to even; 0 for no valid date.
std::int64_t WholeSecondsOf(Date date);
Date DateOfSeconds(std::int64_t seconds);
/// Midnight counts as no time.
bool HasTime(std::int64_t second);

/// Brings a log into the order in which it is reviewed: times are rounded to whole seconds, then the points are sorted
/// by time and run number (ties keep the order of the file), then points without a time of day get one from their own
/// run: a second after its point before them or, without one, before its first timed point. Points of a run without any
/// time go by their neighbours in the same way. Midnight counts as no time. A log without any time keeps its times.
/// A log that is arranged stays as it is.
void ArrangeForReview(FieldLog& log);

}  // namespace vantor
