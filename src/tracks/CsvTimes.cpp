#include "tracks/CsvTimes.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>
#include <vector>

#include "core/Text.h"
#include "tracks/TrackTexts.h"

namespace vantor {
namespace {

constexpr std::array<std::string_view, 12> Months = {"jan", "feb", "mar", "apr", "may", "jun",
                                                     "jul", "aug", "sep", "oct", "nov", "dec"};
constexpr std::array<std::string_view, 7> Weekdays = {"mon", "tue", "wed", "thu", "fri", "sat", "sun"};

bool IsLetter(char character) {
    const char lower = static_cast<char>(character | 0x20);
    return lower >= 'a' && lower <= 'z';
}

/// Takes a text apart from its start.
class TimeParser {
public:
    TimeParser(std::string_view text, bool isDate) : rest_(Trim(text)), isDate_(isDate) {}

    bool Parse(DayOrder order) {
        while (!rest_.empty()) {
            const char first = rest_[0];
            const bool isRead = IsDigit(first) ? ReadNumber() : IsLetter(first) ? ReadWord() : ReadSeparator();
            if (!isRead) return false;
        }
        return SetDay(order) && SetHalfDay() && (Time.Day || Time.Clock);
    }

    CellTime Time;

private:
    std::string_view Digits() {
        std::size_t count = 0;
        while (count < rest_.size() && IsDigit(rest_[count])) ++count;
        const std::string_view digits = rest_.substr(0, count);
        rest_.remove_prefix(count);
        return digits;
    }

    bool ReadNumber() {
        const std::string_view digits = Digits();
        const bool isClock = !Time.Clock && rest_.starts_with(':');
        if (isClock) return ReadClock(DigitsOf(digits));
        const std::size_t yearDigits = digits.size() == 8 ? 4 : 2;
        if (dayNumbers_.empty() && (digits.size() == 8 || (digits.size() == 6 && isDate_))) {
            Time.Day = DaysSince1970(FourDigits({DigitsOf(digits.substr(0, yearDigits)), yearDigits}),
                                     DigitsOf(digits.substr(yearDigits, 2)), DigitsOf(digits.substr(yearDigits + 2)));
            return Time.Day.has_value();
        }
        if (digits.size() == 6 && !Time.Clock) return ReadPackedClock(digits);
        if (digits.size() > 4 || dayNumbers_.size() == 3) return false;
        dayNumbers_.emplace_back(DigitsOf(digits), digits.size());
        return true;
    }

    bool ReadPackedClock(std::string_view digits) {
        std::string_view part = digits;
        if (rest_.starts_with('.')) {
            rest_.remove_prefix(1);
            part = {digits.data(), digits.size() + 1 + Digits().size()};
        }
        Time.Clock = PackedClock(part);
        return Time.Clock.has_value();
    }

    bool ReadClock(int hour) {
        double seconds = hour * 3600.0;
        double unit = 60;
        if (hour < 0 || hour > 23) return false;
        for (; rest_.starts_with(':') && unit >= 1; unit /= 60) {
            rest_.remove_prefix(1);
            const std::string_view digits = Digits();
            const int number = DigitsOf(digits);
            if (digits.size() != 2 || number > 60 || (number == 60 && unit == 60)) return false;
            seconds += (number == 60 ? 59 : number) * unit;
        }
        if (rest_.size() > 1 && (rest_[0] == '.' || rest_[0] == ',') && IsDigit(rest_[1])) {
            const char* const point = rest_.data();
            rest_.remove_prefix(1);
            const std::string part = "." + std::string(point + 1, Digits().size());
            seconds += TrackNumber(part).value_or(0);
        }
        Time.Clock = seconds;
        return true;
    }

    bool ReadWord() {
        std::size_t count = 0;
        std::string word;
        while (count < rest_.size() && IsLetter(rest_[count])) word += static_cast<char>(rest_[count++] | 0x20);
        rest_.remove_prefix(count);
        if (word == "t") return true;
        if (word == "am" || word == "pm") return std::exchange(halfDay_, word[0]) == 0;
        if (word == "z" || word == "utc" || word == "gmt") {
            if (!Time.ZoneOffset) Time.ZoneOffset = 0;
            return true;
        }
        const std::string_view start = std::string_view(word).substr(0, 3);
        if (const auto found = std::ranges::find(Months, start); found != Months.end() && word.size() >= 3) {
            month_ = static_cast<int>(found - Months.begin()) + 1;
            return true;
        }
        return word.size() >= 3 && std::ranges::find(Weekdays, start) != Weekdays.end();
    }

    bool ReadSeparator() {
        const char separator = rest_[0];
        const bool isZone = Time.Clock && !hasZone_ && (separator == '+' || separator == '-');
        rest_.remove_prefix(1);
        if (!isZone) return std::string_view(" /.-,").find(separator) != std::string_view::npos;
        const std::string_view hours = Digits();
        if (rest_.starts_with(':')) rest_.remove_prefix(1);
        const std::string packed = std::string(hours) + std::string(Digits());
        const int number = DigitsOf(packed.size() == 2 ? packed + "00" : packed);
        if (packed.size() % 2 != 0 || packed.size() > 4 || number < 0 || number > 2359 || number % 100 > 59)
            return false;
        hasZone_ = true;
        Time.ZoneOffset = (separator == '-' ? -1 : 1) * (number / 100 * 3600 + number % 100 * 60);
        return true;
    }

    static int FourDigits(std::pair<int, std::size_t> year) {
        return year.second <= 2 ? 2000 + year.first : year.first;
    }

    bool SetDay(DayOrder order) {
        if (dayNumbers_.empty()) return month_ == 0;
        const auto number = [&](std::size_t i) { return dayNumbers_[i].first; };
        if (Time.Day || dayNumbers_.size() != (month_ != 0 ? 2U : 3U)) return false;
        if (month_ != 0) {
            const bool isYearFirst = dayNumbers_[0].second == 4;
            Time.Day = DaysSince1970(FourDigits(dayNumbers_[isYearFirst ? 0 : 1]), month_, number(isYearFirst ? 1 : 0));
        } else if (dayNumbers_[0].second == 4) {
            Time.Day = DaysSince1970(number(0), number(1), number(2));
        } else {
            const int year = FourDigits(dayNumbers_[2]);
            const auto byDay = DaysSince1970(year, number(1), number(0));
            const auto byMonth = DaysSince1970(year, number(0), number(1));
            if (!byDay != !byMonth) Time.Proves = byDay ? DayOrder::DayFirst : DayOrder::MonthFirst;
            Time.IsAmbiguous = byDay && byMonth && byDay != byMonth;
            Time.Day = order == DayOrder::DayFirst     ? byDay
                       : order == DayOrder::MonthFirst ? byMonth
                       : byMonth                       ? byMonth
                                                       : byDay;
        }
        return Time.Day.has_value();
    }

    bool SetHalfDay() {
        if (halfDay_ == 0) return true;
        constexpr double Noon = 43200;
        if (!Time.Clock || *Time.Clock >= Noon + 3600 || *Time.Clock < 3600) return false;
        const bool isTwelve = *Time.Clock >= Noon;
        *Time.Clock += (halfDay_ == 'p' ? Noon : 0) - (isTwelve ? Noon : 0);
        return true;
    }

    std::string_view rest_;
    std::vector<std::pair<int, std::size_t>> dayNumbers_;  ///< and how many digits each has
    int month_ = 0;                                        ///< where it has a name
    char halfDay_ = 0;
    bool hasZone_ = false;
    bool isDate_ = false;
};

}  // namespace

std::optional<CellTime> CellTimeOf(std::string_view text, DayOrder order, bool isDate) {
    TimeParser parser(text, isDate);
    if (!parser.Parse(order)) return std::nullopt;
    return parser.Time;
}

}  // namespace vantor
