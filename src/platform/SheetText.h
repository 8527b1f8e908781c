#pragma once

#include <cmath>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "core/ports/Spreadsheet.h"

namespace vantor {

/// The longest text of a cell, in UTF-16 units.
inline constexpr std::size_t MostTextUnits = 32767;

// A text as a cell can hold it: cut behind `mostUnits` UTF-16 units, but never within a character; a control character
// other than a tab or a line feed is a blank; what is no character is U+FFFD.
std::string CellText(std::string_view utf8, std::size_t mostUnits = MostTextUnits);
std::u16string CellText16(std::string_view utf8, std::size_t mostUnits = MostTextUnits);

/// The look of a date in a column that has none.
inline constexpr const char* PlainDayFormat = "mm/dd/yy";

/// A name for each sheet, as spreadsheets allow them and no two alike.
std::vector<std::string> SheetNames(const std::vector<Sheet>& sheets);

/// Whether all spreadsheets show the same for that day number: a time of day alone, or a date from 1 March 1900 on.
constexpr bool IsSheetDate(Date date) {
    return (date.Days >= 0 && date.Days < 1) || (date.Days >= 61 && date.Days < 2958466);
}

/// Calls one of the two with what the cell shows; neither for an empty cell.
template <class OnText, class OnNumber>
void VisitCell(const SheetCell& cell, OnText onText, OnNumber onNumber) {
    if (const auto* number = std::get_if<double>(&cell)) {
        if (std::isfinite(*number)) onNumber(*number);
    } else if (const auto* text = std::get_if<std::string>(&cell)) {
        if (!text->empty()) onText(*text);
    } else if (const auto* date = std::get_if<Date>(&cell)) {
        if (IsSheetDate(*date))
            onNumber(date->Days);
        else if (const std::string iso = IsoDateTime(*date); !iso.empty())
            onText(iso);
    }
}

}  // namespace vantor
