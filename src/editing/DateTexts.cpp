#include "editing/DateTexts.h"

#include <array>
#include <cmath>
#include <vector>

#include "core/RunTimeError.h"
#include "core/Text.h"

namespace vantor {
namespace {

/// Whole numbers of up to four digits with one separator between each two; nothing for any other text.
std::optional<std::vector<int>> NumbersOf(std::string_view text, std::string_view separators) {
    constexpr int Most = 9999;
    std::vector<int> numbers;
    bool inNumber = false;
    for (const char character : Trim(text)) {
        if (!IsDigit(character)) {
            if (!inNumber || separators.find(character) == std::string_view::npos) return std::nullopt;
            inNumber = false;
            continue;
        }
        if (!inNumber) numbers.push_back(0);
        inNumber = true;
        numbers.back() = 10 * numbers.back() + (character - '0');
        if (numbers.back() > Most) return std::nullopt;
    }
    return inNumber ? std::optional(std::move(numbers)) : std::nullopt;
}

template <class Make>
std::optional<Date> Made(Make make) {
    try {
        return make();
    } catch (const RunTimeError&) {
        return std::nullopt;
    }
}

}  // namespace

std::optional<Date> DayOfText(std::string_view text) {
    const auto numbers = NumbersOf(text, "/-.");
    if (!numbers || numbers->size() != 3) return std::nullopt;
    const int year = (*numbers)[2];
    const auto date = Made([&] { return DateOf(year < 100 ? FullYear(year) : year, (*numbers)[0], (*numbers)[1]); });
    return date && IsValidDate(*date) ? date : std::nullopt;
}

std::optional<Date> ClockOfText(std::string_view text) {
    auto numbers = NumbersOf(text, ":");
    if (!numbers || numbers->size() < 2 || numbers->size() > 3) return std::nullopt;
    numbers->resize(3);
    return Made([&] { return TimeOf((*numbers)[0], (*numbers)[1], (*numbers)[2]); });
}

std::string WeekdayName(Date date) {
    constexpr int Days = 7;
    // Day 0 was a Saturday.
    constexpr std::array<const char*, Days> Names = {"Saturday",  "Sunday",   "Monday", "Tuesday",
                                                     "Wednesday", "Thursday", "Friday"};
    if (!IsValidDate(date)) return {};
    const int day = static_cast<int>(std::trunc(date.Days)) % Days;
    return Names[static_cast<std::size_t>(day < 0 ? day + Days : day)];
}

}  // namespace vantor
