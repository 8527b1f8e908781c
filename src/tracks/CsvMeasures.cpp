#include "tracks/CsvMeasures.h"

#include <cmath>
#include <cstddef>
#include <string>

#include "core/CsvCells.h"
#include "core/Text.h"
#include "tracks/CsvHead.h"
#include "tracks/TrackTexts.h"

namespace vantor {
namespace {

constexpr std::size_t LongestCell = 100;
constexpr std::string_view NorthOrSouth = "NSns";
constexpr std::string_view Sides = "NSEWnsew";

bool IsPartOfNumber(char character) { return IsDigit(character) || character == '.'; }

/// The signs of degrees, minutes and seconds, ASCII or not, and blanks.
bool IsBetweenNumbers(char character) {
    return (static_cast<unsigned char>(character) & 0x80) != 0 ||
           std::string_view(" '\":").find(character) != std::string_view::npos;
}

/// Degrees, minutes and seconds with their signs, of which only the last may have decimals. Rounding writes 60.
std::optional<double> SumOfParts(std::string_view text) {
    double sum = 0;
    double unit = 1;
    bool isLast = false;
    while (!text.empty()) {
        std::size_t length = 0;
        while (length < text.size() && IsPartOfNumber(text[length])) ++length;
        const std::string_view digits = text.substr(0, length);
        const auto number = TrackNumber(digits);
        if (!number || isLast || unit > 3600 || (unit > 1 && *number > 60)) return std::nullopt;
        isLast = digits.find('.') != std::string_view::npos;
        sum += *number / unit;
        unit *= 60;
        text.remove_prefix(length);
        while (!text.empty() && IsBetweenNumbers(text[0])) text.remove_prefix(1);
    }
    return unit > 1 ? std::optional(sum) : std::nullopt;
}

/// Where the longitude begins; npos where it does not tell.
std::size_t LongitudeIn(std::string_view cell) {
    const std::size_t side = cell.find_first_of(NorthOrSouth);
    if (side == 0) return cell.find_first_of("EWew");
    if (side != std::string_view::npos) return side + 1;
    const std::size_t comma = cell.find_first_of(",;");
    return comma != std::string_view::npos ? comma : cell.find(' ');
}

}  // namespace

std::optional<CsvSpeed> SpeedOfCell(std::string_view cell, bool decimalComma) {
    if (const auto number = NumberOfCell(cell, decimalComma)) return CsvSpeed{*number, std::nullopt};
    const std::size_t end = cell.find_last_of("0123456789");
    if (end == std::string_view::npos || cell.size() > LongestCell) return std::nullopt;
    const auto number = NumberOfCell(cell.substr(0, end + 1), decimalComma);
    const auto unit = SpeedUnitOf(cell.substr(end + 1));
    return number && unit ? std::optional(CsvSpeed{*number, unit}) : std::nullopt;
}

std::optional<double> DegreesOfCell(std::string_view cell, bool decimalComma) {
    if (const auto number = NumberOfCell(cell, decimalComma)) return number;
    std::string text(Trim(cell.substr(0, LongestCell)));
    char side = 0;
    const auto isSide = [](char character) { return Sides.find(character) != std::string_view::npos; };
    if (!text.empty() && isSide(text.back())) {
        side = text.back();
        text.pop_back();
    } else if (!text.empty() && isSide(text.front())) {
        side = text.front();
        text.erase(0, 1);
    }
    if (decimalComma)
        for (char& character : text)
            if (character == ',') character = '.';
    std::string_view rest = TrimLeft(text);
    const bool isNegative = rest.starts_with('-');
    if (isNegative) rest.remove_prefix(1);
    const auto degrees = SumOfParts(rest);
    const bool isOther = side != 0 && std::string_view("SWsw").find(side) != std::string_view::npos;
    return degrees ? std::optional(isNegative != isOther ? -*degrees : *degrees) : std::nullopt;
}

std::optional<TrackPosition> PositionOfCell(std::string_view cell, bool decimalComma) {
    cell = Trim(cell);
    const std::size_t at = LongitudeIn(cell);
    if (at == std::string_view::npos) return std::nullopt;
    std::string_view longitude = TrimLeft(cell.substr(at));
    if (longitude.starts_with(',') || longitude.starts_with(';')) longitude = TrimLeft(longitude.substr(1));
    return PositionOf(DegreesOfCell(cell.substr(0, at), decimalComma), DegreesOfCell(longitude, decimalComma));
}

}  // namespace vantor
