#include "gpsobd/LaptopLog.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "core/RunTimeError.h"
#include "gpsobd/LogScreens.h"
#include "gpsobd/ReviewColumns.h"

namespace vantor {
namespace {

template <class Record, class Member, class Table>
constexpr std::size_t OffsetOf(Member Record::*pointer, const Table& table) {
    const auto offsetIn = [&](const auto& field) -> std::size_t {
        if constexpr (std::same_as<decltype(field.Pointer), Member Record::*>)
            return field.Pointer == pointer ? field.Offset : 0;
        else
            return 0;
    };
    return std::apply([&](const auto&... field) { return (offsetIn(field) + ...); }, table);
}

/// What reading needs to know of a data record. The run number comes first in all of them.
struct RecordLayout {
    std::size_t Size;
    std::size_t DateTimeAt;
};
constexpr RecordLayout Ver1GpsLayout{Ver1GpsPointSize, OffsetOf(&Ver1GpsPoint::DateTime, Ver1GpsPointFields)};
constexpr RecordLayout GpsLayout{GpsPointSize, OffsetOf(&GpsPoint::DateTime, GpsPointFields)};
constexpr RecordLayout ObdLayout{ObdPointSize, OffsetOf(&ObdPoint::DateTime, ObdPointFields)};
constexpr RecordLayout CombinedLayout{CombinedPointSize, GpsLayout.DateTimeAt};

bool IsFirstFormat(const LogPrefix& prefix) { return prefix.FormatNumber == 0 || prefix.FormatNumber == 1; }

RecordLayout LayoutOf(const LogFormat& format, const LogPrefix& prefix) {
    if (format.HasObd) return format.HasGps ? CombinedLayout : ObdLayout;
    return IsFirstFormat(prefix) ? Ver1GpsLayout : GpsLayout;
}

std::size_t HeaderSizeOf(const LogFormat& format) { return format.HasObd ? ObdLogHeaderSize : GpsLogHeaderSize; }

bool IsPrinted(std::byte byte) {
    const auto value = std::to_integer<unsigned char>(byte);
    return value >= ' ' || value == '\t' || value == '\r' || value == '\n';
}

/// Of what the prefix of a foreign file gives as a date next to nothing lies in the range of dates, and of that most is
/// closer to day 0 than a time of day can be.
bool IsPlausibleDate(Date date) { return IsValidDate(date) && (date.Days == 0 || std::fabs(date.Days) > 1e-8); }

/// Any format number may come from a logger, and any tag, so a file is refused only when its prefix is all text, or has
/// neither the known tag nor a date.
bool IsForeign(std::span<const std::byte> prefixBytes, const LogPrefix& prefix) {
    return std::all_of(prefixBytes.begin(), prefixBytes.end(), IsPrinted) ||
           (prefix.Tag != "XX" && !IsPlausibleDate(prefix.LogDate));
}

/// A log whose prefix and header record are read; the file stands before the first data record.
struct OpenLog {
    std::unique_ptr<InputFile> File;
    LogPrefix Prefix;
    std::vector<std::byte> Header;
    RecordLayout Layout{};
};

OpenLog OpenLaptopLog(const FileSystem& files, const LogFormat& format, const std::string& path) {
    OpenLog log;
    log.File = files.Open(path);
    std::vector<std::byte> start(LogPrefixSize + HeaderSizeOf(format));
    const std::size_t count = log.File->Read(start);
    const auto prefixBytes = std::span(start).first(std::min(count, LogPrefixSize));
    log.Prefix = DecodeRecord<LogPrefix>(LogPrefixFields, prefixBytes);
    if (prefixBytes.size() == LogPrefixSize && IsForeign(prefixBytes, log.Prefix))
        throw RunTimeError(ErrorNumber::TypeMismatch, std::string("The file is not ") + format.Name +
                                                          ", or its header is damaged. Copy it from the laptop again, "
                                                          "or choose another file.\n" +
                                                          path + ", bytes 1 to 16");
    if (count < start.size())
        throw RunTimeError(ErrorNumber::InputPastEndOfFile,
                           std::string("The file ends within its header: ") + format.Name + " has at least " +
                               std::to_string(start.size()) + " bytes. Copy it from the laptop again.\n" + path +
                               ", byte " + std::to_string(count));
    log.Header.assign(start.begin() + LogPrefixSize, start.end());
    log.Layout = LayoutOf(format, log.Prefix);
    return log;
}

/// Gives the whole data records to `take`, a piece of the file at a time, until that returns false. Returns the number
/// of bytes of an incomplete last record.
template <class Take>
std::uint64_t ReadRecords(OpenLog& log, Take take) {
    const std::uint64_t most = std::min<std::uint64_t>(LogPieceSize, log.File->Size());
    std::vector<std::byte> piece((most / log.Layout.Size + 1) * log.Layout.Size);
    for (;;) {
        const std::size_t count = log.File->Read(piece);
        const std::size_t incomplete = count % log.Layout.Size;
        if (!take(std::span<const std::byte>(piece).first(count - incomplete)) || count < piece.size())
            return incomplete;
    }
}

std::int16_t RunNumberOf(const std::byte* record) { return codec::GetBits<std::int16_t, std::uint16_t>(record); }
Date DateTimeOf(const std::byte* record, const RecordLayout& layout) {
    return {codec::GetBits<double, std::uint64_t>(record + layout.DateTimeAt)};
}

/// What a summary tells of data records.
struct RecordSummary {
    double Latest = -std::numeric_limits<double>::infinity();  ///< days
    std::int16_t Runs = 0;
};

/// Of times only those that `counts` count. A summary does little else: as a function of its own it keeps both results
/// in registers, which it does not amid the calls of another.
template <class Test>
[[gnu::noinline]] RecordSummary SummaryOf(std::span<const std::byte> records, const RecordLayout layout, Test counts) {
    double latest = RecordSummary().Latest;
    std::int16_t runs = 0;
    const std::byte* const end = records.data() + records.size();
    for (const std::byte* record = records.data(); record != end; record += layout.Size) {
        const double days = DateTimeOf(record, layout).Days;
        if (days > latest && counts(Date{days})) latest = days;
        runs = std::max(runs, RunNumberOf(record));
    }
    return {latest, runs};
}

void AddRecords(LogSummary& summary, std::span<const std::byte> records, const RecordLayout& layout) {
    // Nearly always no time of a piece is impossible, and testing its greatest alone will do.
    RecordSummary piece = SummaryOf(records, layout, [](Date) { return true; });
    if (!IsValidDate({piece.Latest})) piece = SummaryOf(records, layout, IsValidDate);
    summary.Runs = std::max<int>(summary.Runs, piece.Runs);
    const Date latest{piece.Latest};
    if (IsValidDate(latest) && (!summary.EndTime || latest.Days > summary.EndTime->Days)) summary.EndTime = latest;
}

/// Logs without a date carry the empty date, 30 December 1899: they are listed under today's on purpose.
std::optional<Date> RepairedDate(Date logDate, const Clock& clock) {
    if (!IsValidDate(logDate)) return std::nullopt;
    const CivilTime civil = CivilOf(logDate);
    const bool isEmpty = civil.Month == 12 && civil.Day == 30 && civil.Year < 2000;
    return isEmpty ? Date{std::floor(clock.Now().Days)} : logDate;
}

GpsPoint SecondFormatOf(const Ver1GpsPoint& old, bool isSigned) {
    GpsPoint point = MissingGpsPoint();
    point.RunNumber = old.RunNumber;
    point.FixQuality = old.FixQuality;
    point.Speed = old.Speed;
    point.DateTime = old.DateTime;
    point.Latitude = LatitudeOf(old.Latitude, isSigned);
    point.Longitude = LongitudeOf(old.Longitude, isSigned);
    point.SatUsed = old.SatUsed;
    point.HDOP = old.HDOP;
    point.Node = old.Node;
    return point;
}

LogPoint PointOf(const LogFormat& format, const LogPrefix& prefix, std::span<const std::byte> record, bool isSigned) {
    LogPoint point;
    if (format.HasObd)
        point.Obd = DecodeRecord<ObdPoint>(ObdPointFields, format.HasGps ? record.subspan(GpsPointSize) : record);
    if (!format.HasGps) return point;
    if (!format.HasObd && IsFirstFormat(prefix))
        point.Gps = SecondFormatOf(DecodeRecord<Ver1GpsPoint>(Ver1GpsPointFields, record), isSigned);
    else
        point.Gps = DecodeRecord<GpsPoint>(GpsPointFields, record);
    if (!isSigned) point.Gps.Longitude = WesternLongitude(point.Gps.Longitude);
    return point;
}

std::optional<LogSummary> ReadSummary(const LogSources& sources, const LogFormat& format, const std::string& path,
                                      const LogProgress& progress) {
    OpenLog log = OpenLaptopLog(sources.Files, format, path);
    LogSummary summary;
    summary.StudyDate = RepairedDate(log.Prefix.LogDate, sources.Time);
    summary.IsFirstFormat = IsFirstFormat(log.Prefix);
    bool isFirst = true;
    bool stopped = false;
    summary.DroppedBytes = ReadRecords(log, [&](std::span<const std::byte> records) {
        if (isFirst && !records.empty() && IsValidDate(DateTimeOf(records.data(), log.Layout)))
            summary.StartTime = DateTimeOf(records.data(), log.Layout);
        isFirst = false;
        AddRecords(summary, records, log.Layout);
        stopped = progress && !progress();
        return !stopped;
    });
    return stopped ? std::nullopt : std::optional(summary);
}

LogHead ReadPoints(const LogSources& sources, const LogFormat& format, const std::string& path, const LogSink& sink,
                   const Progress& progress) {
    OpenLog file = OpenLaptopLog(sources.Files, format, path);
    LogHead log = NewLogHead(format, path);
    log.Prefix = file.Prefix;
    log.StudyDate = RepairedDate(file.Prefix.LogDate, sources.Time);
    if (format.HasObd)
        log.ObdHeader = DecodeRecord<ObdLogHeader>(ObdLogHeaderFields, file.Header);
    else
        log.GpsHeader = DecodeRecord<GpsLogHeader>(GpsLogHeaderFields, file.Header);
    const std::size_t size = file.Layout.Size;
    std::uint64_t done = 0;
    log.DroppedBytes = ReadRecords(file, [&](std::span<const std::byte> piece) {
        done += piece.size();
        for (; !piece.empty(); piece = piece.subspan(size))
            if (!sink(PointOf(format, log.Prefix, piece.first(size), sources.HasSignedCoordinates))) return false;
        return progress(done, file.File->Size());
    });
    return log;
}

// The extension, not the format number in the file, is marked: the mark leads back to the file.
constexpr std::array GpsFiles = {LogFileType{".gdf", "1"}, LogFileType{".gd2", "2"}};
constexpr std::array ObdFiles = {LogFileType{".odf", "1"}, LogFileType{".od2", "2"}};
constexpr std::array CombinedFiles = {LogFileType{".ddf", ""}};

LogFormat LaptopLog(const char* word, const char* name, std::span<const LogFileType> files, LogFormat format,
                    LogKind kind) {
    format.Word = word;
    format.Name = name;
    format.FileTypes = files;
    format.Summary = ReadSummary;
    format.Read = ReadPoints;
    format.Screen = &ScreenOf(kind);
    return format;
}

}  // namespace

LogFormat FormatWith(bool hasGps, bool hasObd) {
    const bool isCombined = hasGps && hasObd;
    LogFormat format{};
    format.HasGps = hasGps;
    format.HasObd = hasObd;
    format.HasRunNumbers = true;
    format.WrittenExtension = isCombined ? ".ddf" : hasGps ? ".gd2" : ".od2";
    format.Encode = EncodeLaptopLog;
    format.Columns = isCombined ? CombinedReviewLayout : hasGps ? GpsReviewLayout : ObdReviewLayout;
    format.Review = &ReviewScreenOf(hasGps, hasObd);
    return format;
}

LogFormat GpsLaptopLog() {
    return LaptopLog("gps-laptop", "a GPS log", GpsFiles, FormatWith(true, false), LogKind::GpsLaptop);
}
LogFormat ObdLaptopLog() {
    return LaptopLog("obd-laptop", "an OBD log", ObdFiles, FormatWith(false, true), LogKind::ObdLaptop);
}
LogFormat GpsObdLog() {
    return LaptopLog("gps-obd", "a combined GPS and OBD log", CombinedFiles, FormatWith(true, true), LogKind::GpsObd);
}

LogPrefix WrittenPrefix(Date logDate) { return {2, 0, 0, logDate, "XX"}; }

std::vector<std::byte> EncodeLaptopLog(const FieldLog& log) {
    const bool hasGps = log.Format->HasGps;
    const bool hasObd = log.Format->HasObd;
    const std::size_t pointSize = (hasGps ? GpsPointSize : 0) + (hasObd ? ObdPointSize : 0);
    const std::size_t start = LogPrefixSize + HeaderSizeOf(*log.Format);
    std::vector<std::byte> bytes(start + log.PointCount() * pointSize);
    EncodeRecord(WrittenPrefix(log.Prefix.LogDate), LogPrefixFields, bytes.data());
    if (hasObd)
        EncodeRecord(log.ObdHeader, ObdLogHeaderFields, bytes.data() + LogPrefixSize);
    else
        EncodeRecord(log.GpsHeader, GpsLogHeaderFields, bytes.data() + LogPrefixSize);
    std::byte* out = bytes.data() + start;
    for (std::size_t i = 0; i < log.PointCount(); ++i) {
        if (hasGps) EncodeRecord(log.Gps[i], GpsPointFields, out);
        if (hasObd) EncodeRecord(log.Obd[i], ObdPointFields, out + (hasGps ? GpsPointSize : 0));
        out += pointSize;
    }
    return bytes;
}

}  // namespace vantor
