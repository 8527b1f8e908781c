#include "gpsobd/FieldLog.h"

#include <array>
#include <cmath>

#include "core/Backup.h"
#include "core/Counted.h"
#include "core/Paths.h"
#include "core/RunTimeError.h"
#include "core/Text.h"
#include "core/modMain.h"
#include "gpsobd/BattelleLog.h"
#include "gpsobd/DeviceLog.h"
#include "gpsobd/LaptopLog.h"

namespace vantor {
namespace {

struct PlainLog {
    const char* Extension;
    LogKind Kind;
};
constexpr std::array PlainLogs = {PlainLog{".gdf", LogKind::GpsLaptop}, PlainLog{".gd2", LogKind::GpsLaptop},
                                  PlainLog{".odf", LogKind::ObdLaptop}, PlainLog{".od2", LogKind::ObdLaptop},
                                  PlainLog{".ddf", LogKind::GpsObd},    PlainLog{".txt", LogKind::Battelle}};

const char* WrittenExtension(LogKind kind) {
    switch (kind) {
        case LogKind::ObdLaptop:
        case LogKind::ObdHandheld: return ".od2";
        case LogKind::GpsObd: return ".ddf";
        default: return ".gd2";
    }
}

}  // namespace

std::string StudyName(const FieldLog& log) {
    return std::string(TrimRight(HasObdHeader(log.Kind) ? log.ObdHeader.StudyName : log.GpsHeader.StudyName));
}

std::string BaseName(const FieldLog& log) {
    const std::string_view name = Trim(HasObdHeader(log.Kind) ? log.ObdHeader.BaseName : log.GpsHeader.BaseName);
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

std::optional<LogSummary> ReadLogSummary(const LogSources& sources, LogKind kind, const std::string& path,
                                         const LogProgress& progress) {
    switch (kind) {
        case LogKind::GpsHandheld:
        case LogKind::ObdHandheld: return ReadDeviceSummary(sources, kind, path, progress);
        case LogKind::Battelle: return ReadBattelleSummary(sources.Files, path, progress);
        default: return ReadLaptopSummary(sources.Files, sources.Time, kind, path, progress);
    }
}

FieldLog ReadFieldLog(const LogSources& sources, LogKind kind, const std::string& path, const Progress& progress) {
    switch (kind) {
        case LogKind::GpsHandheld:
        case LogKind::ObdHandheld: return ReadDeviceLog(sources, kind, path, progress);
        case LogKind::Battelle: return ReadBattelleLog(sources.Files, path, sources.HasSignedCoordinates, progress);
        default: return ReadLaptopLog(sources.Files, sources.Time, kind, path, sources.HasSignedCoordinates, progress);
    }
}

LogKind LogKindOf(const LogSources& sources, const std::string& path) {
    for (const PlainLog& log : PlainLogs)
        if (HasExtension(path, log.Extension)) return log.Kind;
    if (HasExtension(path, ".mdb") || HasExtension(path, ".pdb")) {
        if (const auto kind = DeviceLogKind(sources, path)) return *kind;
        throw NoSuchTable(
            "The file has neither a table \"GPSData\" nor \"OBDData\", or is no database of a handheld. Copy it from "
            "the "
            "handheld again, or choose another file.\n" +
            path);
    }
    throw RunTimeError(
        ErrorNumber::TypeMismatch,
        "The name is none of a log. Logs end in .gdf, .gd2, .odf, .od2, .ddf, .txt, .mdb or .pdb.\n" + path);
}

bool WriteFieldLog(FileSystem& files, const FieldLog& log, const Progress& progress) {
    return WriteKeepingOld(files, log.Folder + log.Name + WrittenExtension(log.Kind), EncodeLaptopLog(log), progress);
}

FieldLog NewFieldLog(LogKind kind, const std::string& path) {
    FieldLog log;
    log.Kind = kind;
    log.Folder = FolderOf(path);
    log.Name = BaseName(path);
    log.Extension = FoldCase(LastComponent(path).substr(log.Name.size()));
    log.Prefix = WrittenPrefix({});
    log.GpsHeader.StudyName = log.GpsHeader.BaseName = log.Name;
    log.ObdHeader.StudyName = log.ObdHeader.BaseName = log.Name;
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
