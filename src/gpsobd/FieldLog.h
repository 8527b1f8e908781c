#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "core/LogKind.h"
#include "core/Progress.h"
#include "core/ports/Clock.h"
#include "core/ports/FileSystem.h"
#include "core/ports/RecordSet.h"
#include "gpsobd/LogRecords.h"

namespace vantor {

/// A point of a log. GPS and Battelle logs fill `Gps`, OBD logs `Obd`, combined logs both; run number, time, node,
/// delay number and direction of a combined point are those of its GPS half.
struct LogPoint {
    GpsPoint Gps;
    ObdPoint Obd;
};

/// A log in memory, points outside any run left out, in the order of the file.
struct FieldLog {
    LogKind Kind = LogKind::GpsLaptop;
    std::string Folder;     ///< with a final separator
    std::string Name;       ///< of the file, without extension
    std::string Extension;  ///< in lower case, with its point
    /// The log's date after its repair; nothing where the source has none.
    std::optional<Date> StudyDate;
    LogPrefix Prefix;        ///< as stored; of a source without one as it is written
    GpsLogHeader GpsHeader;  ///< GPS logs; of a source without one an empty one with the file's name as its names
    ObdLogHeader ObdHeader;  ///< OBD and combined logs
    std::vector<LogPoint> Points;
    bool IsArranged = false;         ///< in the order of the review (ArrangeForReview)
    std::uint64_t DroppedBytes = 0;  ///< of an incomplete last record
    std::size_t MissingRecords = 0;  ///< that a handheld's database tells of and does not hold whole
};

/// The study name of a log's header, without the blanks behind it.
std::string StudyName(const FieldLog& log);
/// What the runs of a log are named after: the base name of its header, else the name of its file.
std::string BaseName(const FieldLog& log);

/// "SB", "NB", "WB", "EB" for 1 to 4, else empty.
std::string DirectionText(std::int16_t direction);

/// What the selection screens tell of a log.
struct LogSummary {
    std::optional<Date> StudyDate;
    std::optional<Date> StartTime;
    std::optional<Date> EndTime;
    int Runs = 0;
    bool IsFirstFormat = false;  ///< of a laptop log: its format number is 0 or 1
    std::uint64_t DroppedBytes = 0;
    std::size_t MissingRecords = 0;
    std::string Problem;  ///< why the log will be refused when it is read; mostly empty
};

/// What a log that was cut short lacks, as a sentence; empty for a whole one.
std::string CutText(std::uint64_t droppedBytes, std::size_t missingRecords);

/// Ways to the outside that reading a log takes.
struct LogSources {
    const FileSystem& Files;
    const DatabaseEngine& Databases;
    const DeviceDatabase& DeviceDatabases;
    const Clock& Time;  ///< for logs without a date
    /// Positions keep their signs as read; otherwise longitudes are taken for western ones.
    bool HasSignedCoordinates = false;
};

/// Asked now and then while a log is read (of a plain file once a piece); false stops the reading.
using LogProgress = std::function<bool()>;

/// Reads a log's summary at the speed of reading the file: in pieces, nothing kept. Nothing when it was stopped.
/// Error 53 for a missing file, 62 for a laptop log that ends within its header, 13 with file, place
/// and reason for one that is no log of that kind. Any text has a summary as a Battelle log, without times where it has
/// no fix.
std::optional<LogSummary> ReadLogSummary(const LogSources& sources, LogKind kind, const std::string& path,
                                         const LogProgress& progress = {});

/// Reads a log whole. Errors as of ReadLogSummary; 13 also for a text with lines but none of a Battelle log, 6 for one
/// with more than 32767 runs. Stopped, it returns a log that is good for nothing.
FieldLog ReadFieldLog(const LogSources& sources, LogKind kind, const std::string& path, const Progress& progress = {});

/// The kind of a log by its extension; a ".mdb" or ".pdb" is looked into for its table. Error 13 for any other file.
LogKind LogKindOf(const LogSources& sources, const std::string& path);

/// Writes a log in its current form beside its source: GPS, Battelle and handheld GPS logs as ".gd2", OBD logs as
/// ".od2", combined logs as ".ddf"; format number 2, headers as they were. A file of that name is kept as a numbered
/// backup; one that holds these bytes already is left alone. Points outside any run were left out when the log was
/// read, so they are not in the written one. False when it was stopped: nothing is written then.
bool WriteFieldLog(FileSystem& files, const FieldLog& log, const Progress& progress = {});

// What holds for every source of a log, for the readers.

/// About as many bytes are read at a time.
inline constexpr std::size_t LogPieceSize = 512 * 1024;

/// A log without points, named after its file, with a prefix and headers as one without them gets.
FieldLog NewFieldLog(LogKind kind, const std::string& path);

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
