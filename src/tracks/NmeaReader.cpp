#include "tracks/NmeaReader.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "core/RunTimeError.h"
#include "tracks/TrackLines.h"
#include "tracks/TrackOrder.h"
#include "tracks/TrackTexts.h"
#include "tracks/Utf16File.h"

namespace vantor {
namespace {

constexpr std::size_t MostFields = 24;
using Fields = std::array<std::string_view, MostFields>;

constexpr const char* WrongChecksum = "The checksum is wrong.";
constexpr const char* NoSentence = "The line holds no sentence.";
constexpr const char* CutSentence = "The sentence is cut off.";
constexpr const char* WrongFields = "A time, a position or a date of the sentence is impossible.";

/// A sentence without its "$", checksum and what stands before and behind it.
struct Sentence {
    std::string_view Body = {};
    const char* Fault = nullptr;  ///< why it is none
};

int HexDigit(char character) {
    if (character >= '0' && character <= '9') return character - '0';
    const char upper = static_cast<char>(character & ~0x20);
    return upper >= 'A' && upper <= 'F' ? upper - 'A' + 10 : -1;
}

Sentence SentenceIn(std::string_view line) {
    // Where a line end was lost, the last sentence of the line is whole.
    const std::size_t start = line.rfind('$');
    if (start == std::string_view::npos) return {.Fault = NoSentence};
    std::string_view body = line.substr(start + 1);
    const std::size_t star = body.find('*');
    if (star == std::string_view::npos) return {.Body = body};
    if (star + 3 > body.size()) return {.Fault = CutSentence};
    unsigned sum = 0;
    for (const char character : body.substr(0, star)) sum ^= static_cast<unsigned char>(character);
    if (static_cast<int>(sum) != HexDigit(body[star + 1]) * 16 + HexDigit(body[star + 2]))
        return {.Fault = WrongChecksum};
    return {.Body = body.substr(0, star)};
}

enum class SentenceKind { Other, Rmc, Gga, Vtg, Zda };

SentenceKind KindOf(std::string_view body) {
    if (body.size() < 6 || body[5] != ',' || body[0] == 'P') return SentenceKind::Other;
    const std::string_view kind = body.substr(2, 3);
    if (kind == "RMC") return SentenceKind::Rmc;
    if (kind == "GGA") return SentenceKind::Gga;
    if (kind == "VTG") return SentenceKind::Vtg;
    return kind == "ZDA" ? SentenceKind::Zda : SentenceKind::Other;
}

Fields FieldsOf(std::string_view body) {
    Fields fields;
    for (std::string_view& field : fields) {
        const std::size_t end = body.find(',');
        field = body.substr(0, end);
        if (end == std::string_view::npos) break;
        body.remove_prefix(end + 1);
    }
    return fields;
}

/// dddmm.mmmm with its letter as degrees.
std::optional<double> DegreesOf(std::string_view text, std::string_view side, char positive, char negative) {
    const auto number = TrackNumber(text);
    if (!number || *number < 0 || side.size() != 1 || (side[0] != positive && side[0] != negative)) return std::nullopt;
    const double degrees = std::floor(*number / 100);
    const double minutes = *number - degrees * 100;
    // Loggers that round seconds away write 59.99999 minutes as 60.
    if (minutes > 60) return std::nullopt;
    return (side[0] == negative ? -1 : 1) * (degrees + minutes / 60);
}

/// The position in four fields from `at` on: latitude, its letter, longitude, its letter.
std::optional<TrackPosition> PositionAt(const Fields& fields, std::size_t at) {
    return PositionOf(DegreesOf(fields[at], fields[at + 1], 'N', 'S'),
                      DegreesOf(fields[at + 2], fields[at + 3], 'E', 'W'));
}

/// ddmmyy as days since 1970.
std::optional<std::int64_t> DayOfDdmmyy(std::string_view text) {
    const int number = text.size() == 6 ? DigitsOf(text) : -1;
    if (number < 0) return std::nullopt;
    const int year = number % 100;
    return DaysSince1970(year + (year >= 80 ? 1900 : 2000), number / 100 % 100, number / 10000);
}

template <class Value>
void FillIn(std::optional<Value>& value, const std::optional<Value>& other) {
    if (!value) value = other;
}

/// Makes points of sentences.
class NmeaPoints {
public:
    NmeaPoints(TrackOrder& order, TrackSummary& summary, std::optional<std::int64_t> day)
        : order_(order), summary_(summary), day_(day) {}

    bool HasSentences() const { return hasSentences_; }

    /// False when nothing more is wanted; `fault` is set where the sentence is broken.
    bool Take(std::string_view body, const char*& fault) {
        const SentenceKind kind = KindOf(body);
        if (kind == SentenceKind::Other) return true;
        hasSentences_ = true;
        const Fields fields = FieldsOf(body);
        switch (kind) {
            case SentenceKind::Rmc: return TakeRmc(fields, fault);
            case SentenceKind::Gga: return TakeGga(fields, fault);
            case SentenceKind::Vtg: return TakeVtg(fields);
            default: return TakeZda(fields, fault);
        }
    }

    /// Gives what is put together so far.
    bool Finish() {
        if (clock_ == NoClock) return true;
        if (isVoid_) ++summary_.Void;
        if (day_) point_.Time = static_cast<double>(*day_ * SecondsOfDay) + clock_;
        return isVoid_ || !point_.Position || order_.Add(point_);
    }

private:
    static constexpr double NoClock = -1;

    /// The sentence belongs to this time of day, and day where it tells one: a new point where they are others than
    /// before.
    bool Turn(double clock, std::optional<std::int64_t> day) {
        if (clock_ == clock && (!day || !isDayTold_ || day == day_)) {
            isDayTold_ = isDayTold_ || day;
            if (day) day_ = day;
            return true;
        }
        const bool goesOn = Finish();
        constexpr double HalfADay = 43200;
        if (day_ && clock_ - clock > HalfADay) ++*day_;
        if (day) day_ = day;
        isDayTold_ = day.has_value();
        clock_ = clock;
        point_ = {};
        isVoid_ = false;
        return goesOn;
    }

    bool TakeRmc(const Fields& fields, const char*& fault) {
        const bool isVoid = fields[2] != "A";
        const auto clock = PackedClock(fields[1]);
        const auto position = PositionAt(fields, 3);
        const auto day = DayOfDdmmyy(fields[9]);
        if (isVoid && fields[1].empty()) {
            ++summary_.Void;
            return true;
        }
        if (!clock || (!isVoid && (!position || (!day && !fields[9].empty())))) {
            fault = WrongFields;
            return true;
        }
        if (!Turn(*clock, day)) return false;
        isVoid_ = isVoid_ || isVoid;
        FillIn(point_.Position, position);
        // The speed over ground of this sentence is told in more digits than that of VTG.
        if (const auto speed = TrackSpeed(TrackNumber(fields[7]), MphOfKnots)) point_.Speed = speed;
        if (const auto course = TrackCourse(TrackNumber(fields[8]))) point_.Course = course;
        return true;
    }

    bool TakeGga(const Fields& fields, const char*& fault) {
        const int quality = DigitsOf(fields[6]);
        const bool isVoid = quality <= 0;
        const auto clock = PackedClock(fields[1]);
        const auto position = PositionAt(fields, 2);
        if (isVoid && fields[1].empty()) return true;
        if (!clock || (!isVoid && !position)) {
            fault = WrongFields;
            return true;
        }
        if (!Turn(*clock, std::nullopt)) return false;
        isVoid_ = isVoid_ || isVoid;
        FillIn(point_.Position, position);
        FillIn(point_.HDOP, TrackNumber(fields[8]));
        if (!isVoid) point_.FixQuality = quality;
        if (const int satellites = DigitsOf(fields[7]); satellites >= 0) point_.Satellites = satellites;
        return true;
    }

    /// It tells no time: it belongs to the sentences before it.
    bool TakeVtg(const Fields& fields) {
        if (clock_ == NoClock) return true;
        FillIn(point_.Course, TrackCourse(TrackNumber(fields[1])));
        FillIn(point_.Speed, TrackSpeed(TrackNumber(fields[5]), MphOfKnots));
        FillIn(point_.Speed, TrackSpeed(TrackNumber(fields[7]), MphOfKilometresPerHour));
        return true;
    }

    bool TakeZda(const Fields& fields, const char*& fault) {
        if (fields[1].empty()) return true;
        const auto clock = PackedClock(fields[1]);
        const auto day = DaysSince1970(DigitsOf(fields[4]), DigitsOf(fields[3]), DigitsOf(fields[2]));
        if (!clock || !day) {
            fault = WrongFields;
            return true;
        }
        return Turn(*clock, day);
    }

    TrackOrder& order_;
    TrackSummary& summary_;
    std::optional<std::int64_t> day_;
    double clock_ = NoClock;  ///< seconds of the day of `point_`
    TrackPoint point_;
    bool isVoid_ = false;
    bool isDayTold_ = false;  ///< by a sentence of `point_`
    bool hasSentences_ = false;
};

}  // namespace

bool LooksLikeNmea(std::string_view start, std::string_view) {
    const std::string text = Utf8Head(start);
    std::string_view head = text;
    while (!head.empty()) {
        const std::size_t end = head.find('\n');
        const Sentence sentence = SentenceIn(head.substr(0, end));
        if (sentence.Fault == nullptr && KindOf(sentence.Body) != SentenceKind::Other) return true;
        head.remove_prefix(end == std::string_view::npos ? head.size() : end + 1);
    }
    return false;
}

TrackSummary ReadNmea(const FileSystem& files, const std::string& path, const TrackSink& sink, const Progress& progress,
                      std::optional<std::int64_t> day) {
    TrackSummary summary;
    TrackOrder order(sink, summary);
    NmeaPoints points(order, summary, day);
    TrackLines lines(files.Open(path), progress);
    bool goesOn = true;
    for (std::string_view line; goesOn && lines.Next(line);) {
        if (line.empty()) continue;
        Sentence sentence = SentenceIn(line);
        if (sentence.Fault == nullptr) goesOn = points.Take(sentence.Body, sentence.Fault);
        if (sentence.Fault != nullptr) order.AddBroken(lines.Number(), sentence.Fault);
    }
    if (goesOn) points.Finish();
    summary.IsStopped = summary.IsStopped || lines.IsStopped();
    if (!points.HasSentences() && !summary.IsStopped)
        throw RunTimeError(ErrorNumber::TypeMismatch,
                           "The file is no NMEA log: none of its lines holds a whole sentence RMC, GGA, VTG or ZDA. "
                           "Choose another file, or log these sentences.\n" +
                               path + ", lines 1 to " + std::to_string(lines.Number()));
    return summary;
}

}  // namespace vantor
