#include "gpsobd/FieldLog.h"

#include <cmath>

#include "core/Backup.h"
#include "core/Counted.h"
#include "core/Paths.h"
#include "core/Text.h"
#include "core/modMain.h"
#include "gpsobd/LaptopLog.h"

namespace vantor {
std::string StudyName(const LogHead& log) {
    return std::string(TrimRight(log.Format->HasObd ? log.ObdHeader.StudyName : log.GpsHeader.StudyName));
}

std::string BaseName(const LogHead& log) {
    const std::string_view name = Trim(log.Format->HasObd ? log.ObdHeader.BaseName : log.GpsHeader.BaseName);
    return name.empty() ? log.Name : std::string(name);
}

std::string DirectionText(std::int16_t direction) {
    switch (direction) {
        case 1: return "SB";
        case 2: return "NB";
        case 3: return "WB";
        case 4: return "EB";
        default: return {};
    }
}

std::optional<LogSummary> ReadLogSummary(const LogSources& sources, const LogFormat& format, const std::string& path,
                                         const LogProgress& progress) {
    return format.Summary(sources, format, path, progress);
}

FieldLog ReadFieldLog(const LogSources& sources, const LogFormat& format, const std::string& path,
                      const Progress& progress) {
    FieldLog log;
    log.Format = &format;
    const auto keep = [&](LogPoint&& point) {
        log.Add(std::move(point));
        return true;
    };
    static_cast<LogHead&>(log) = ReadLogPoints(sources, format, path, keep, progress);
    return log;
}

bool WriteFieldLog(FileSystem& files, const FieldLog& log, const Progress& progress) {
    const LogFormat& format = *log.Format;
    if (format.Encode == nullptr) return true;
    return WriteKeepingOld(files, log.Folder + log.Name + format.WrittenExtension, format.Encode(log), progress);
}

LogHead NewLogHead(const LogFormat& format, const std::string& path) {
    LogHead log;
    log.Format = &format;
    log.Folder = FolderOf(path);
    log.Name = BaseName(path);
    log.Extension = FoldCase(LastComponent(path).substr(log.Name.size()));
    log.Prefix = WrittenPrefix({});
    log.GpsHeader.StudyName = log.GpsHeader.BaseName = log.Name;
    log.ObdHeader.StudyName = log.ObdHeader.BaseName = log.Name;
    return log;
}

FieldLog NewFieldLog(const LogFormat& format, const std::string& path) {
    FieldLog log;
    static_cast<LogHead&>(log) = NewLogHead(format, path);
    return log;
}

GpsPoint MissingGpsPoint() {
    GpsPoint point;
    point.Speed = -1;
    point.Heading = -1;
    point.Latitude = -1;
    point.Longitude = -1;
    point.DelayNumber = -1;
    point.Direction = -1;
    return point;
}

double WesternLongitude(double longitude) { return longitude > 1.0 ? -longitude : longitude; }

namespace {
double DecimalDegrees(double degreesAndMinutes) {
    const double value = std::fabs(degreesAndMinutes);
    const double degrees = std::trunc(value / 100);
    return degrees + (value - 100 * degrees) / 60;
}

}  // namespace

double LatitudeOf(double degreesAndMinutes, bool isSigned) {
    const double degrees = DecimalDegrees(degreesAndMinutes);
    return isSigned ? std::copysign(degrees, degreesAndMinutes) : degrees;
}

double LongitudeOf(double degreesAndMinutes, bool isSigned) {
    // The difference, unlike a changed sign, makes no negative zero.
    return isSigned ? LatitudeOf(degreesAndMinutes, true) : 0.0 - DecimalDegrees(degreesAndMinutes);
}

std::string CutText(std::uint64_t droppedBytes, std::size_t missingRecords) {
    const std::string bytes = Counted(droppedBytes, "byte");
    if (missingRecords == 0)
        return droppedBytes == 0
                   ? std::string()
                   : "The last record of the log is incomplete: " + bytes + " at the end of the file are left out.";
    return "The log is cut short: its last " +
           (missingRecords == 1 ? "record is missing" : std::to_string(missingRecords) + " records are missing") +
           (droppedBytes == 0 ? "." : "; " + bytes + " at the end of the file are left out.");
}

}  // namespace vantor
