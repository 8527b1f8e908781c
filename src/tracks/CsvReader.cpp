#include "tracks/CsvReader.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <optional>
#include <string_view>
#include <vector>

#include "core/CsvCells.h"
#include "core/Numeric.h"
#include "core/RunTimeError.h"
#include "core/Text.h"
#include "tracks/TrackLines.h"
#include "tracks/TrackOrder.h"
#include "tracks/TrackTexts.h"
#include "tracks/TrackTimes.h"

namespace vantor {
namespace {

constexpr const char* WrongPosition = "The position of the row is impossible.";
constexpr const char* WrongTime = "The date or the time of the row cannot be read.";
constexpr const char* EmptyRow = "The row has no position, and no time with a speed.";

double MphOf(CsvSpeedUnit unit) {
    switch (unit) {
        case CsvSpeedUnit::KilometresPerHour: return MphOfKilometresPerHour;
        case CsvSpeedUnit::MilesPerHour: return 1;
        case CsvSpeedUnit::Knots: return MphOfKnots;
        case CsvSpeedUnit::MetresPerSecond: break;
    }
    return MphOfMetresPerSecond;
}

/// A time since 1970 in seconds or in thousandths, millionths or milliardths of them.
double SecondsOfEpoch(double number) {
    constexpr double Most = 1e11;
    while (number >= Most) number /= 1000;
    return number;
}

class CsvRows {
public:
    CsvRows(const Clock& clock, const std::string& path, const CsvMapping& mapping)
        : times_(clock, mapping.Zone), path_(path), mapping_(mapping) {
        at_.fill(None);
        for (std::size_t i = 0; i < mapping.Columns.size(); ++i) at_[static_cast<std::size_t>(mapping.Columns[i])] = i;
    }

    /// What makes the row no point; null where it is one, in Point.
    const char* Read(std::string_view line, std::uint64_t number) {
        SplitCells(line, mapping_.Delimiter, cells_, unquoted_);
        Point = {};
        IsVoid = false;
        const char* fault = ReadTime(number);
        if (fault == nullptr) fault = ReadPosition();
        if (fault != nullptr) return fault;
        Point.Speed = TrackSpeed(Number(CsvColumn::Speed), MphOf(mapping_.SpeedUnit));
        if (!Point.Position && (!Point.Time || !Point.Speed)) return EmptyRow;
        Point.Course = TrackCourse(Number(CsvColumn::Course));
        Point.HDOP = Number(CsvColumn::HDOP);
        if (const int count = DigitsOf(Cell(CsvColumn::Satellites)); count >= 0) Point.Satellites = count;
        ReadFix();
        ReadNode();
        return nullptr;
    }

    /// The text that tells the segment of the row read last.
    std::string_view Segment() const { return Cell(CsvColumn::Segment); }

    TrackPoint Point;
    bool IsVoid = false;

private:
    static constexpr std::size_t None = std::numeric_limits<std::size_t>::max();

    std::string_view Cell(CsvColumn column) const {
        const std::size_t at = at_[static_cast<std::size_t>(column)];
        return at < cells_.size() ? cells_[at] : std::string_view();
    }
    std::optional<double> Number(CsvColumn column) const {
        return NumberOfCell(Cell(column), mapping_.HasDecimalComma);
    }

    /// A coordinate; one with the letter of the negative side in a column of its own is negative.
    std::optional<double> Signed(CsvColumn column, CsvColumn side, char negative) const {
        const auto number = Number(column);
        const std::string_view letter = Cell(side);
        const bool isNegative = !letter.empty() && (letter[0] & ~0x20) == negative;
        return number && isNegative ? std::optional(-std::fabs(*number)) : number;
    }

    const char* ReadPosition() {
        const std::string_view latitude = Cell(CsvColumn::Latitude);
        const std::string_view longitude = Cell(CsvColumn::Longitude);
        if (latitude.empty() && longitude.empty()) return nullptr;
        Point.Position = PositionOf(Signed(CsvColumn::Latitude, CsvColumn::NorthSouth, 'S'),
                                    Signed(CsvColumn::Longitude, CsvColumn::EastWest, 'W'));
        IsVoid = Point.Position == TrackPosition{};
        return Point.Position ? nullptr : WrongPosition;
    }

    const char* ReadTime(std::uint64_t line) {
        const std::string_view time = Cell(CsvColumn::Time);
        const std::string_view date = Cell(CsvColumn::Date);
        if (time.empty() && date.empty()) return nullptr;
        const bool isElapsed =
            mapping_.TimeForm == CsvTimeForm::Elapsed || mapping_.TimeForm == CsvTimeForm::ElapsedMilliseconds;
        if (isElapsed && !IsTrackTime(mapping_.Start)) ThrowWithoutDay(line);
        if (mapping_.TimeForm == CsvTimeForm::Text) return ReadTexts(time, date, line);
        const auto number = NumberOfCell(time.empty() ? date : time, mapping_.HasDecimalComma);
        if (!number || *number < 0) return WrongTime;
        if (mapping_.TimeForm == CsvTimeForm::Epoch)
            Point.Time = SecondsOfEpoch(*number);
        else
            Point.Time = mapping_.Start + *number / (mapping_.TimeForm == CsvTimeForm::Elapsed ? 1 : 1000);
        return nullptr;
    }

    const char* ReadTexts(std::string_view time, std::string_view date, std::uint64_t line) {
        bool hasZone = false;
        if (const auto iso = IsoTime(time, hasZone)) {
            hasDays_ = true;
            Point.Time = hasZone ? *iso : times_.UtcOf(*iso);
            return nullptr;
        }
        const auto timeTold = CellTimeOf(time, mapping_.DayOrder);
        const auto dateTold = CellTimeOf(date, mapping_.DayOrder, true);
        if ((!timeTold && !time.empty()) || (!dateTold && !date.empty())) return WrongTime;
        const CellTime first = timeTold.value_or(CellTime{});
        const CellTime second = dateTold.value_or(CellTime{});
        const CellTime& dayTold = first.Day ? first : second;
        if (dayTold.IsAmbiguous && mapping_.DayOrder == DayOrder::Unknown)
            ThrowAmbiguous(first.Day ? time : date, line);
        const auto clock = first.Clock ? first.Clock : second.Clock;
        if (!dayTold.Day && !IsTrackTime(mapping_.Start) && !hasDays_) ThrowWithoutDay(line);
        if (!clock || (!dayTold.Day && !IsTrackTime(mapping_.Start))) return WrongTime;
        hasDays_ = hasDays_ || dayTold.Day;
        const double midnight = dayTold.Day ? static_cast<double>(*dayTold.Day * SecondsOfDay) : MidnightBefore(*clock);
        const double local = midnight + *clock;
        const auto offset = first.ZoneOffset ? first.ZoneOffset : second.ZoneOffset;
        Point.Time = offset ? local - *offset : times_.UtcOf(local);
        return nullptr;
    }

    /// The midnight before a time of day that has no date; it goes on with the rows.
    double MidnightBefore(double clock) {
        constexpr double HalfADay = 43200;
        if (latestClock_ - clock > HalfADay) daysSinceStart_ += static_cast<double>(SecondsOfDay);
        latestClock_ = clock;
        return mapping_.Start + daysSinceStart_;
    }

    [[noreturn]] void ThrowWithoutDay(std::uint64_t line) const {
        throw RunTimeError(ErrorNumber::TypeMismatch,
                           "The times of the file have no day. Say on what day, and when, the log began.\n" + path_ +
                               ", line " + std::to_string(line));
    }

    [[noreturn]] void ThrowAmbiguous(std::string_view cell, std::uint64_t line) const {
        throw RunTimeError(ErrorNumber::TypeMismatch,
                           "The date \"" + Printable(TextOfCell(cell)) +
                               "\" may be two days. Say whether the day or the month comes first.\n" + path_ +
                               ", line " + std::to_string(line));
    }

    void ReadFix() {
        const std::string_view fix = Cell(CsvColumn::Fix);
        if (fix.empty()) return;
        const int number = DigitsOf(fix);
        const bool isNone = number == 0 || EqualIgnoringCase(fix, "none") || EqualIgnoringCase(fix, "no fix");
        IsVoid = IsVoid || isNone;
        if (!isNone)
            Point.FixQuality = number > 0                       ? number
                               : EqualIgnoringCase(fix, "dgps") ? 2
                               : EqualIgnoringCase(fix, "pps")  ? 3
                                                                : 1;
    }

    /// A number, and 1 for any other text.
    void ReadNode() {
        const std::string_view node = Cell(CsvColumn::Node);
        if (node.empty()) return;
        const auto number = NumberOfCell(node, mapping_.HasDecimalComma);
        const bool isKept = !number || (*number > 0 && *number <= std::numeric_limits<std::int16_t>::max());
        if (isKept) Point.Node = number ? Round16(*number) : std::int16_t{1};
    }

    TrackTimes times_;
    const std::string& path_;
    const CsvMapping& mapping_;
    std::array<std::size_t, CsvColumnKinds> at_{};  ///< by kind
    std::vector<std::string_view> cells_;
    std::string unquoted_;
    bool hasDays_ = false;
    double latestClock_ = 0;
    double daysSinceStart_ = 0;
};

void RefuseWithoutColumns(const std::string& path, const CsvMapping& mapping) {
    const bool hasPosition = mapping.Has(CsvColumn::Latitude) && mapping.Has(CsvColumn::Longitude);
    const bool hasTime = mapping.Has(CsvColumn::Time) || mapping.Has(CsvColumn::Date);
    if (hasPosition || (hasTime && mapping.Has(CsvColumn::Speed))) return;
    throw RunTimeError(ErrorNumber::TypeMismatch,
                       "Neither columns of latitude and longitude nor those of time and speed are known. Say what the "
                       "columns hold, or choose another file.\n" +
                           path + ", line " + std::to_string(std::max(mapping.HeadLine, 1)));
}

}  // namespace

TrackSummary ReadCsv(const FileSystem& files, const Clock& clock, const std::string& path, const CsvMapping& mapping,
                     const TrackSink& sink, const Progress& progress) {
    RefuseWithoutColumns(path, mapping);
    TrackSummary summary;
    TrackOrder order(sink, summary);
    CsvRows rows(clock, path, mapping);
    TrackLines lines(files.Open(path), progress);
    std::string head;
    std::string segment;
    for (std::string_view line; !summary.IsStopped && lines.Next(line);) {
        const bool isHead = lines.Number() == static_cast<std::uint64_t>(mapping.HeadLine);
        if (isHead) head = WithoutMark(line);
        if (lines.Number() <= static_cast<std::uint64_t>(mapping.HeadLine) || Trim(line).empty()) continue;
        if (line == head) {
            order.BeginSegment();
            continue;
        }
        if (const char* const fault = rows.Read(line, lines.Number()); fault != nullptr) {
            order.AddBroken(lines.Number(), fault);
            continue;
        }
        if (rows.Segment() != segment) {
            if (summary.Points > 0) order.BeginSegment();
            segment = rows.Segment();
        }
        if (rows.IsVoid)
            ++summary.Void;
        else
            order.Add(rows.Point);
    }
    summary.IsStopped = summary.IsStopped || lines.IsStopped();
    return summary;
}

}  // namespace vantor
