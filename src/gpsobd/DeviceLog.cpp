#include "gpsobd/DeviceLog.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <utility>

#include "core/Numeric.h"
#include "core/Paths.h"
#include "core/RunTimeError.h"
#include "core/Text.h"
#include "gpsobd/FieldLog.h"
#include "gpsobd/LaptopLog.h"
#include "gpsobd/LogScreens.h"

namespace vantor {
namespace {

constexpr int FieldsOfTable = 9;
constexpr int DateTimePosition = 0;
constexpr int RunNumberPosition = 8;

std::string TableOf(const LogFormat& format) { return format.HasGps ? "GPSData" : "OBDData"; }

std::unique_ptr<RecordSet> OpenLog(const LogSources& sources, const LogFormat& format, const std::string& path) {
    auto records = HasExtension(path, ".pdb") ? sources.DeviceDatabases.Open(path, TableOf(format))
                                              : sources.Databases.OpenTable(path, TableOf(format));
    if (records->FieldCount() < FieldsOfTable)
        throw RunTimeError(ErrorNumber::TypeMismatch, "The table \"" + TableOf(format) + "\" has only " +
                                                          std::to_string(records->FieldCount()) + " fields.\n" + path);
    return records;
}

[[noreturn]] void DoesNotConvert() { throw RunTimeError(ErrorNumber::TypeMismatch); }

/// The number that a text is as a whole.
double NumberOf(std::string_view text) {
    const auto number = NumberOfText(text, true);
    if (!number) DoesNotConvert();
    return *number;
}

/// Takes the digits and separators that a text begins with.
std::string_view TakeNumbers(std::string_view& text, char separator) {
    const auto isOther = [&](char character) { return !IsDigit(character) && character != separator; };
    const std::string_view numbers(text.begin(), std::ranges::find_if(text, isOther));
    text.remove_prefix(numbers.size());
    return numbers;
}

Date TimeIn(std::string_view text) {
    const auto time = ClockOfText(TakeNumbers(text, ':'));
    if (!time) DoesNotConvert();
    const std::string half = FoldCase(TrimLeft(text));
    if (half.empty()) return *time;
    const CivilTime civil = CivilOf(*time);
    const bool isAfternoon = half == FoldCase("PM");
    if ((!isAfternoon && half != FoldCase("AM")) || civil.Hour < 1 || civil.Hour > 12) DoesNotConvert();
    return TimeOf(civil.Hour % 12 + (isAfternoon ? 12 : 0), civil.Minute, civil.Second);
}

/// "MM/DD/YYYY HH:MM:SS", also with one of the two alone or hours to 12 with AM or PM, or a number of days.
Date MomentOf(std::string_view text) {
    const bool hasDay = text.find('/') != std::string_view::npos;
    if (!hasDay && text.find(':') == std::string_view::npos) {
        const Date date{NumberOf(text)};
        if (!IsValidDate(date)) DoesNotConvert();
        return date;
    }
    Date moment;
    if (hasDay) {
        const auto day = DayOfText(TakeNumbers(text, '/'), "/");
        if (!day) DoesNotConvert();
        moment = *day;
    }
    text = TrimLeft(text);
    if (!text.empty()) moment.Days += TimeIn(text).Days;
    return moment;
}

/// A table of a handheld, record by record, its fields as what they mean. An empty field has the value that stands for
/// none.
class DeviceRecords {
public:
    DeviceRecords(const LogSources& sources, const LogFormat& format, std::string path)
        : path_(std::move(path)), records_(OpenLog(sources, format, path_)) {}

    bool Next() {
        if (!records_->Next()) return false;
        ++number_;
        return true;
    }

    Date DateTime() const { return Converted<Date>(DateTimePosition, Date{}, MomentOf); }
    std::int16_t RunNumber() const { return Integer(RunNumberPosition); }
    std::int16_t Integer(int position) const {
        return Converted<std::int16_t>(position, 0, [](std::string_view text) { return Round16(NumberOf(text)); });
    }
    double Double(int position, double none) const { return Converted<double>(position, none, NumberOf); }
    float Single(int position, float none) const {
        return Converted<float>(position, none, [](std::string_view text) {
            const double value = NumberOf(text);
            if (std::fabs(value) > std::numeric_limits<float>::max()) DoesNotConvert();
            return static_cast<float>(value);
        });
    }

    const RecordSet& Records() const { return *records_; }

private:
    template <class Value, class Convert>
    Value Converted(int position, Value none, Convert convert) const {
        const std::string text = records_->Text(position);
        const std::string_view trimmed = Trim(text);
        if (trimmed.empty()) return none;
        try {
            return convert(trimmed);
        } catch (const RunTimeError&) {
            throw RunTimeError(ErrorNumber::TypeMismatch,
                               "\"" + std::string(FirstCharacters(trimmed, 32)) + "\" cannot be converted.\n" + path_ +
                                   ", record " + std::to_string(number_) + ", field " + std::to_string(position + 1));
        }
    }

    std::string path_;
    std::unique_ptr<RecordSet> records_;
    std::int64_t number_ = 0;
};

constexpr float None = -1;

GpsPoint GpsPointOf(const DeviceRecords& record, bool isSigned) {
    GpsPoint point;
    point.RunNumber = record.RunNumber();
    point.DateTime = record.DateTime();
    point.Latitude = record.Double(1, None);
    point.Longitude = record.Double(2, None);
    if (!isSigned) point.Longitude = WesternLongitude(point.Longitude);
    point.Speed = record.Single(3, None);
    point.Heading = record.Single(4, None);
    point.HDOP = record.Single(5, 0);
    point.SatUsed = record.Integer(6);
    point.Node = record.Integer(7);
    point.DelayNumber = -1;
    point.Direction = -1;
    return point;
}

ObdPoint ObdPointOf(const DeviceRecords& record) {
    ObdPoint point;
    point.RunNumber = record.RunNumber();
    point.DateTime = record.DateTime();
    point.Speed = record.Single(1, 0);
    point.Rpm = record.Single(2, 0);
    point.Load = record.Single(3, 0);
    point.Throttle = record.Single(4, 0);
    point.CoolantTemp = record.Single(5, 0);
    point.FuelRate = record.Single(6, 0);
    point.Node = record.Integer(7);
    return point;
}

std::optional<LogSummary> ReadSummary(const LogSources& sources, const LogFormat& format, const std::string& path,
                                      const LogProgress& progress) {
    constexpr int RecordsPerQuestion = 256;
    LogSummary summary;
    DeviceRecords record(sources, format, path);
    for (int untilQuestion = 0; record.Next(); --untilQuestion) {
        if (untilQuestion == 0) {
            if (progress && !progress()) return std::nullopt;
            untilQuestion = RecordsPerQuestion;
        }
        const Date time = record.DateTime();
        if (!summary.StartTime) summary.StartTime = time;
        if (!summary.EndTime || time.Days > summary.EndTime->Days) summary.EndTime = time;
        summary.Runs = std::max(summary.Runs, int{record.RunNumber()});
    }
    summary.DroppedBytes = record.Records().DroppedBytes();
    summary.MissingRecords = record.Records().MissingRecords();
    return summary;
}

LogHead ReadPoints(const LogSources& sources, const LogFormat& format, const std::string& path, const LogSink& sink,
                   const Progress& progress) {
    LogHead log = NewLogHead(format, path);
    DeviceRecords record(sources, format, path);
    bool isFirst = true;
    // How many records there are is not known before the last one.
    while (record.Next() && progress(0, 1)) {
        LogPoint point;
        if (format.HasGps)
            point.Gps = GpsPointOf(record, sources.HasSignedCoordinates);
        else
            point.Obd = ObdPointOf(record);
        // A rewritten log without a date would be listed under the day of whoever looks at it.
        if (isFirst && record.RunNumber() != 0) log.Prefix.LogDate.Days = std::floor(record.DateTime().Days);
        isFirst = isFirst && record.RunNumber() == 0;
        if (!sink(std::move(point))) break;
    }
    log.DroppedBytes = record.Records().DroppedBytes();
    log.MissingRecords = record.Records().MissingRecords();
    return log;
}

bool HasTable(const LogSources& sources, const LogFormat& format, const std::string& path) {
    try {
        OpenLog(sources, format, path);
        return true;
    } catch (const NoSuchTable&) {
        // Of the other logger, perhaps.
        return false;
    }
}

bool IsDeviceLog(const LogSources& sources, const LogFormat& format, const std::string& path, std::string_view) {
    return IsNamedAs(format, path) && HasTable(sources, format, path);
}

constexpr std::array Files = {LogFileType{".mdb", "MDB"}, LogFileType{".pdb", "PDB"}};
constexpr const char* NeitherTable =
    "The file has neither a table \"GPSData\" nor \"OBDData\", or is no database of a handheld. Copy it from the "
    "handheld again, or choose another file.";

LogFormat HandheldLog(const char* word, const char* name, LogFormat format, LogKind kind) {
    format.Word = word;
    format.Name = name;
    format.FileTypes = Files;
    format.Recognises = IsDeviceLog;
    format.Refusal = NeitherTable;
    format.Summary = ReadSummary;
    format.Read = ReadPoints;
    format.Screen = &ScreenOf(kind);
    return format;
}

}  // namespace

LogFormat GpsHandheldLog() {
    return HandheldLog("gps-handheld", "a GPS database", FormatWith(true, false), LogKind::GpsHandheld);
}
LogFormat ObdHandheldLog() {
    return HandheldLog("obd-handheld", "an OBD database", FormatWith(false, true), LogKind::ObdHandheld);
}

std::string OtherLoggerText(const LogSources& sources, const std::string& path) {
    for (const LogFormat& format : LogFormats())
        if (format.Screen != nullptr && format.Screen->Device != nullptr && HasTable(sources, format, path))
            return std::string("This is ") + format.Name + ". Open it with File > Process " +
                   format.Screen->Device->Program + " Data.";
    return {};
}

}  // namespace vantor
