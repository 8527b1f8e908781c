#pragma once

#include <cstddef>
#include <string>
#include <type_traits>
#include <variant>
#include <vector>

#include "core/ports/Spreadsheet.h"
#include "gpsobd/FieldLog.h"

namespace vantor {

/// How the cells of a column look.
enum class ColumnLook {
    Whole,        ///< a whole number
    Direction,    ///< the text of a direction's number
    Day,          ///< "mm/dd/yy"
    Time,         ///< "h:mm:ss AM/PM"
    Number,       ///< up to seven significant digits
    Speed,        ///< as OneDecimal, but "-1" where it is missing
    OneDecimal,   ///< "0.0", exact halves away from zero as in the next one
    SixDecimals,  ///< "0.000000"
    Text,
};

/// The field of a point that a column shows.
using PointField = std::variant<std::int16_t GpsPoint::*, float GpsPoint::*, double GpsPoint::*, Date GpsPoint::*,
                                std::int16_t ObdPoint::*, float ObdPoint::*, Date ObdPoint::*, std::string ObdPoint::*>;

struct ReviewColumn {
    std::string Caption;
    const char* Key;  ///< the field's name; the column of the times shares that of the dates
    ColumnLook Look;
    PointField Field;
};

/// The columns of a review screen, numbered from 1, and those that its repair of missing values works on.
struct ReviewLayout {
    std::vector<ReviewColumn> Columns;
    int RepairColumn = 1;
    int CompanionColumn = 0;  ///< filled along with the other; 0 for none
};
// Of the formats whose points have these halves.
ReviewLayout GpsReviewLayout();
ReviewLayout ObdReviewLayout();
ReviewLayout CombinedReviewLayout();

/// True for a field of the OBD half of a point.
bool IsOfObd(const PointField& field);

/// Calls `use` with what a point of the log holds in a field.
template <class Log, class Use>
decltype(auto) WithField(const PointField& field, Log& log, std::size_t index, Use use) {
    return std::visit(
        [&](auto member) -> decltype(auto) {
            if constexpr (std::is_invocable_v<decltype(member), const GpsPoint&>)
                return use(log.Gps[index].*member);
            else
                return use(log.Obd[index].*member);
        },
        field);
}

/// A cell as it is shown; empty for a value that is none.
std::string CellText(const ReviewColumn& column, const FieldLog& log, std::size_t index);
/// The same with all the digits of a speed.
std::string FullCellText(const ReviewColumn& column, const FieldLog& log, std::size_t index);
/// A number as a cell with that look shows it.
std::string ShownNumber(ColumnLook look, double value, int digits);
/// A cell with its type, for spreadsheets.
SheetCell CellValue(const ReviewColumn& column, const FieldLog& log, std::size_t index);
/// The look of a column in a spreadsheet.
SheetColumn SheetColumnOf(const ReviewColumn& column);

/// A value that is missing.
inline constexpr double MissingValue = -1;

/// The time of day as "h:mm:ss AM/PM"; empty for no valid date.
std::string ClockText(Date time);

/// Digits that a single, and a double, is shown with.
inline constexpr int SingleDigits = 7;
inline constexpr int DoubleDigits = 15;

}  // namespace vantor
