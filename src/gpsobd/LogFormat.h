#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/LogKind.h"
#include "core/Progress.h"
#include "core/ports/Clock.h"
#include "core/ports/FileSystem.h"
#include "core/ports/Programs.h"
#include "core/ports/RecordSet.h"
#include "gpsobd/LogRecords.h"
#include "tracks/CsvMapping.h"
#include "tracks/TrackCut.h"
#include "tracks/TrackPoint.h"

namespace vantor {

struct FieldLog;
struct LogFormat;
struct LogScreen;
struct ReviewLayout;
struct ReviewScreen;

/// How tracks that know no runs are read.
struct TrackSources {
    std::string Zone;  ///< of the times that runs get; the computer's own where it is empty
    TrackCuts Cuts;
    /// How the columns of a CSV file with this head are read, where the user has said it.
    std::function<std::optional<CsvMapping>(const std::string& head)> KeptMapping;
    const Programs* OtherPrograms = nullptr;  ///< of which one reads further forms; null for none
};

/// Ways to the outside that reading a log takes.
struct LogSources {
    const FileSystem& Files;
    const DatabaseEngine& Databases;
    const DeviceDatabase& DeviceDatabases;
    const Clock& Time;  ///< for logs without a date
    /// Positions keep their signs as read; otherwise longitudes are taken for western ones.
    bool HasSignedCoordinates = false;
    TrackSources Tracks = {};
};

/// A point of a log on its way from the reader. A half that the format does not have is empty; run number, time, node,
/// delay number and direction of a point with both are those of its GPS half.
struct LogPoint {
    GpsPoint Gps;
    ObdPoint Obd;
};

/// What a log tells beside its points.
struct LogHead {
    const LogFormat* Format = nullptr;
    std::string Folder;     ///< with a final separator
    std::string Name;       ///< of the file, without extension
    std::string Extension;  ///< in lower case, with its point
    /// The log's date after its repair; nothing where the source has none.
    std::optional<Date> StudyDate;
    LogPrefix Prefix;        ///< as stored; of a source without one as it is written
    GpsLogHeader GpsHeader;  ///< GPS logs; of a source without one an empty one with the file's name as its names
    ObdLogHeader ObdHeader;  ///< OBD and combined logs
    std::uint64_t DroppedBytes = 0;         ///< of an incomplete last record
    std::size_t MissingRecords = 0;         ///< that a handheld's database tells of and does not hold whole
    NodeNames Nodes = {};                   ///< names of nodes by the numbers that points have
    std::vector<std::string> Remarks = {};  ///< what a reader of the figures should know of the file
};

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

/// Asked now and then while a log is read (of a plain file once a piece); false stops the reading.
using LogProgress = std::function<bool()>;

/// Takes the points of a log one after the other, in the order of the file, and may keep what it is given; false stops
/// the reading.
using LogSink = std::function<bool(LogPoint&& point)>;

/// Files of a format, and what stands for them in the FileType column of its selection screen.
struct LogFileType {
    const char* Extension;
    const char* Mark;
};

/// All that a kind of logs makes different. A further one is a row of LogFormats.
struct LogFormat {
    const char* Word;  ///< what commands call it: "gps-laptop"
    const char* Name;  ///< in a sentence: "a GPS log"
    std::span<const LogFileType> FileTypes;

    // What its points have.
    bool HasGps;
    bool HasObd;
    /// Points of run number 0 lie outside any run and are left out; otherwise the points have no runs before they are
    /// cut into some.
    bool HasRunNumbers;

    /// True for a file of that name whose head (its first bytes, none of one that is not there) or contents are those
    /// of the format. Null: any file of one of its extensions, and no other.
    bool (*Recognises)(const LogSources& sources, const LogFormat& format, const std::string& path,
                       std::string_view head);
    /// What is said of a file with one of its extensions that no format recognises; null leaves that to its reader.
    const char* Refusal;
    std::optional<LogSummary> (*Summary)(const LogSources& sources, const LogFormat& format, const std::string& path,
                                         const LogProgress& progress);
    LogHead (*Read)(const LogSources& sources, const LogFormat& format, const std::string& path, const LogSink& sink,
                    const Progress& progress);

    /// As what a reviewed log is written beside its source, ".gd2", and its bytes; both null where nothing is.
    const char* WrittenExtension;
    std::vector<std::byte> (*Encode)(const FieldLog& log);

    ReviewLayout (*Columns)();
    const ReviewScreen* Review;
    const LogScreen* Screen;  ///< where a log is chosen; null for a format without a screen of its own
};

/// Every format. Of those that share an extension the one that recognises less stands later.
std::span<const LogFormat> LogFormats();

/// The format that is chosen on the selection screen of a kind.
const LogFormat& FormatOf(LogKind kind);

/// Whether a path has one of the format's extensions.
bool IsNamedAs(const LogFormat& format, std::string_view path);

/// The type of a file by its extension; for another file what the format is written as, or its first one.
const LogFileType& FileTypeOf(const LogFormat& format, std::string_view fileName);

/// The formats whose extension a path has, in the order of the table.
std::vector<const LogFormat*> FormatsNamedAs(std::string_view path, std::span<const LogFormat> formats = LogFormats());

/// The format of a log by its extension and, where several have that or none has, by what recognises it. Error 13 for
/// a file of none.
const LogFormat& FormatOfFile(const LogSources& sources, const std::string& path,
                              std::span<const LogFormat> formats = LogFormats());
/// The same; null for a file of none.
const LogFormat* FormatKnown(const LogSources& sources, const std::string& path);

/// Every extension of logs once.
std::vector<std::string> LogExtensions();
/// The same in a sentence, divided by ", " but the last one by `last`.
std::string LogExtensions(std::string_view last);

/// Gives the points of a log to a sink, those outside any run left out. Errors as of ReadLogSummary (FieldLog.h).
LogHead ReadLogPoints(const LogSources& sources, const LogFormat& format, const std::string& path, const LogSink& sink,
                      const Progress& progress = {});

}  // namespace vantor
