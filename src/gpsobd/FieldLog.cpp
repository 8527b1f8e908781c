#include "gpsobd/FieldLog.h"

#include <array>
#include <cmath>

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
    return std::string(Trim(HasObdHeader(log.Kind) ? log.ObdHeader.StudyName : log.GpsHeader.StudyName));
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

FieldLog ReadFieldLog(const LogSources& sources, LogKind kind, const std::string& path) {
    switch (kind) {
        case LogKind::GpsHandheld:
        case LogKind::ObdHandheld: return ReadDeviceLog(sources, kind, path);
        case LogKind::Battelle: return ReadBattelleLog(sources.Files, path);
        default: return ReadLaptopLog(sources.Files, sources.Time, kind, path);
    }
}

LogKind LogKindOf(const LogSources& sources, const std::string& path) {
    for (const PlainLog& log : PlainLogs)
        if (HasExtension(path, log.Extension)) return log.Kind;
    if (HasExtension(path, ".mdb") || HasExtension(path, ".pdb")) {
        if (const auto kind = DeviceLogKind(sources, path)) return *kind;
        throw RunTimeError(ErrorNumber::TypeMismatch,
                           path +
                               "\nThe file has neither a table \"GPSData\" nor \"OBDData\", or is no database of a "
                               "handheld. Copy it from the handheld again, or choose another file.");
    }
    throw RunTimeError(ErrorNumber::TypeMismatch,
                       path +
                           "\nThe name is none of a log. Logs end in .gdf, .gd2, .odf, .od2, .ddf, .txt, .mdb or "
                           ".pdb.");
}

void WriteFieldLog(FileSystem& files, const FieldLog& log) {
    const std::string path = log.Folder + log.Name + WrittenExtension(log.Kind);
    const std::string backup = log.Folder + log.Name + ".bak";
    const auto batch = files.BeginWrites();
    if (FileExists(files, path) && !files.Find(backup))
        batch->Add(backup, ReadFirstBytes(files, path, files.Open(path)->Size()), OldTail::Dropped);
    batch->Add(path, EncodeLaptopLog(log), OldTail::Dropped);
    batch->Commit();
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

double DecimalDegrees(double degreesAndMinutes) {
    const double value = std::fabs(degreesAndMinutes);
    const double degrees = std::trunc(value / 100);
    return degrees + (value - 100 * degrees) / 60;
}

// The difference, unlike a changed sign, makes no negative zero.
double WesternDegrees(double degreesAndMinutes) { return 0.0 - DecimalDegrees(degreesAndMinutes); }

}  // namespace vantor
