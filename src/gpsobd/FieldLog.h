#pragma once

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "core/Progress.h"
#include "core/ports/FileSystem.h"
#include "gpsobd/LogFormat.h"

namespace vantor {

/// A log in memory, points outside any run left out, in the order of the file.
struct FieldLog : LogHead {
    // The halves that the points have, one beside the other; a list that the format does not have is empty.
    std::vector<GpsPoint> Gps;
    std::vector<ObdPoint> Obd;
    bool IsArranged = false;  ///< in the order of the review (ArrangeForReview)

    const LogHead& Head() const { return *this; }
    std::size_t PointCount() const { return std::max(Gps.size(), Obd.size()); }
    LogPoint At(std::size_t index) const {
        LogPoint point;
        if (Format->HasGps) point.Gps = Gps[index];
        if (Format->HasObd) point.Obd = Obd[index];
        return point;
    }
    /// Keeps what the format's points have.
    void Add(LogPoint&& point) {
        if (Format->HasGps) Gps.push_back(point.Gps);
        if (Format->HasObd) Obd.push_back(std::move(point.Obd));
    }
};

/// The study name of a log's header, without the blanks behind it.
std::string StudyName(const LogHead& log);
/// What the runs of a log are named after: the base name of its header, else the name of its file.
std::string BaseName(const LogHead& log);

/// "SB", "NB", "WB", "EB" for 1 to 4, else empty.
std::string DirectionText(std::int16_t direction);

/// What a log that was cut short lacks, as a sentence; empty for a whole one.
std::string CutText(std::uint64_t droppedBytes, std::size_t missingRecords);

/// Reads a log's summary at the speed of reading the file: in pieces, nothing kept. Nothing when it was stopped.
/// Error 53 for a missing file, 62 for a laptop log that ends within its header, 13 with file, place
/// and reason for one that is no log of that format. Any text has a summary as a Battelle log, without times where it
/// has no fix.
std::optional<LogSummary> ReadLogSummary(const LogSources& sources, const LogFormat& format, const std::string& path,
                                         const LogProgress& progress = {});

/// Reads a log whole, for its review. Errors as of ReadLogSummary; 13 also for a text with lines but none of a Battelle
/// log, 6 for one with more than 32767 runs. Stopped, it returns a log that is good for nothing.
FieldLog ReadFieldLog(const LogSources& sources, const LogFormat& format, const std::string& path,
                      const Progress& progress = {});

/// Writes a log in its current form beside its source: GPS, Battelle and handheld GPS logs as ".gd2", OBD logs as
/// ".od2", combined logs as ".ddf"; format number 2, headers as they were. A file of that name is kept as a numbered
/// backup; one that holds these bytes already is left alone. Points outside any run were left out when the log was
/// read, so they are not in the written one. False when it was stopped: nothing is written then.
bool WriteFieldLog(FileSystem& files, const FieldLog& log, const Progress& progress = {});

// What holds for every source of a log, for the readers.

/// About as many bytes are read at a time.
inline constexpr std::size_t LogPieceSize = 512 * 1024;

/// The head of a log as far as its path tells it, with a prefix and headers as a log without them gets.
LogHead NewLogHead(const LogFormat& format, const std::string& path);
/// A log without points.
FieldLog NewFieldLog(const LogFormat& format, const std::string& path);

/// A point that lacks everything.
GpsPoint MissingGpsPoint();

/// A longitude greater than 1.0 is taken for a western one without its sign. From 0 to 1.0 it stays as it is on
/// purpose.
double WesternLongitude(double longitude);

/// Decimal degrees of degrees and minutes written as dddmm.mmmm; the sign is dropped unless `isSigned`.
double LatitudeOf(double degreesAndMinutes, bool isSigned);
/// The same of a longitude, which is a western one unless `isSigned`.
double LongitudeOf(double degreesAndMinutes, bool isSigned);

}  // namespace vantor
